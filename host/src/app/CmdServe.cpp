// `corvina serve` (the web host) and `corvina users` (its accounts).
#include <malloc.h>
#include <signal.h>

#include <filesystem>
#include <iostream>
#include <thread>

#include "app/Commands.h"
#include "corvina20/HostParameters.h"
#include "data/Database.h"
#include "session/HostSession.h"
#include "web/Users.h"
#include "web/WebHost.h"

namespace corvina20::app {
namespace {

constexpr const char* kDemoUser = "demo";
constexpr const char* kDemoPassword = "demo";

// The address "host:port" given to --listen.
void SplitListen(const std::string& listen, std::string& host, int& port) {
  std::string why;
  if (!web::ParseListenAddress(listen, host, port, why)) throw CLI::ValidationError("--listen", why);
}

}  // namespace

void AddServeCommand(CLI::App& app) {
  auto* cmd = app.add_subcommand("serve", "Avvia il server web sul database");
  auto db = std::make_shared<std::string>(DefaultDatabase());
  auto listen = std::make_shared<std::string>("127.0.0.1:8080");
  auto timeout = std::make_shared<int>(1800);
  auto tlsProxy = std::make_shared<bool>(false);
  auto remoteDemo = std::make_shared<bool>(false);
  cmd->add_option("--db", *db, "File del database (creato con i dati dimostrativi se manca)");
  cmd->add_option("--listen", *listen, "Indirizzo e porta (solo loopback se non indicato)");
  cmd->add_option("--session-timeout", *timeout, "Secondi di inattività dopo cui una sessione scade");
  cmd->add_flag("--tls-proxy", *tlsProxy,
                "Il server sta dietro un proxy TLS: il cookie di sessione viaggia solo su HTTPS (Secure)");
  cmd->add_flag("--allow-demo-remote", *remoteDemo,
                "Ammette l'utente dimostrativo anche su un indirizzo non di loopback");
  cmd->callback([db, listen, timeout, tlsProxy, remoteDemo] {
    // A server runs a thread per connection and per session, and glibc gives
    // threads up to eight heaps per core: at fifty users each heap kept its
    // own freed memory: at fifty users the heaps held 105 MB for 45 MB in
    // use, and the server peaked at 169 MB; with two heaps at 147 MB, the
    // request times the same. MALLOC_ARENA_MAX, when set, wins.
    if (!std::getenv("MALLOC_ARENA_MAX")) mallopt(M_ARENA_MAX, 2);
    web::WebOptions options;
    options.database = *db;
    options.sessionTimeoutSeconds = *timeout;
    SplitListen(*listen, options.host, options.port);
    options.secureCookie = *tlsProxy;
    const bool remote = !web::IsLoopbackHost(options.host);
    // Other machines reach this address: passwords and cookies cross the
    // network, in clear unless a TLS proxy stands in front.
    if (remote && !*tlsProxy)
      std::cerr << "corvina: ATTENZIONE: " << options.host << " è raggiungibile da altre macchine e il server "
                << "parla HTTP in chiaro: metterlo dietro un proxy TLS e avviarlo con --tls-proxy\n";
    // A file made here gets the demo data; a server's database (an address)
    // is made by its administrator and never filled with them unasked.
    std::filesystem::path p(*db);
    const bool server = db->find("://") != std::string::npos;
    bool fresh = !server && !std::filesystem::exists(p);
    if (!server && p.has_parent_path()) std::filesystem::create_directories(p.parent_path());
    {
      auto connection = OpenDatabase(*db);
      InitDatabase(*connection, fresh);
      web::Users users(connection);
      bool demo = HostParameters(connection, Today()).ReadFlagParameter("DatiDimostrativi");
      if (users.Empty()) {
        if (!demo) {
          std::cerr << "corvina: nessun utente; crearne uno con: corvina users add --db " << *db << " NOME\n";
          std::exit(2);
        }
        users.Add(kDemoUser, kDemoPassword);
      }
      // The demo user's password is public: off loopback it would let anyone in.
      bool demoUser = !users.Verify(kDemoUser, kDemoPassword).empty();
      if (demoUser && remote && !*remoteDemo) {
        std::cerr << "corvina: l'utente dimostrativo (" << kDemoUser << " / " << kDemoPassword
                  << ") non è ammesso su " << options.host << ", raggiungibile da altre macchine: cambiarne la "
                  << "password (corvina users passwd) o avviare con --allow-demo-remote\n";
        std::exit(2);
      }
      if (demoUser) std::cout << "Utente dimostrativo: " << kDemoUser << " / password " << kDemoPassword << "\n";
    }
    // Signals end the server from a thread of their own.
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    web::WebHost host(options);
    std::thread waiter([&] {
      int sig = 0;
      sigwait(&set, &sig);
      host.Stop();
    });
    // The line comes after the bind, with the port really bound, so whoever
    // waits for it (a script, a test) can connect at once.
    int port = host.Bind();
    if (port < 0) {
      std::cerr << "corvina: impossibile ascoltare su " << *listen
                << ": l'indirizzo è già in uso (un altro corvina serve?) o non è di questa macchina\n";
      pthread_kill(waiter.native_handle(), SIGTERM);
      waiter.join();
      std::exit(1);
    }
    std::cout << "Corvina in ascolto su http://" << options.host << ":" << port << "/ (database " << *db << ")\n"
              << std::flush;
    host.Serve();
    waiter.join();
  });
}

void AddUsersCommand(CLI::App& app) {
  auto* cmd = app.add_subcommand("users", "Gestisce gli utenti del server web");
  cmd->require_subcommand(1);
  auto db = std::make_shared<std::string>(DefaultDatabase());
  auto name = std::make_shared<std::string>();
  auto password = std::make_shared<std::string>();
  auto readPassword = [password] {
    if (!password->empty()) return;
    std::cerr << "Password: ";
    std::getline(std::cin, *password);
  };
  auto* add = cmd->add_subcommand("add", "Aggiunge un utente");
  add->add_option("--db", *db, "File del database");
  add->add_option("NAME", *name, "Nome utente")->required();
  add->add_option("--password", *password, "Password (altrimenti letta dallo standard input)");
  add->callback([db, name, password, readPassword] {
    readPassword();
    auto connection = OpenDatabase(*db);
    InitDatabase(*connection, false);
    web::Users(connection).Add(*name, *password);
    std::cout << "Utente " << *name << " aggiunto\n";
  });
  auto* passwd = cmd->add_subcommand("passwd", "Cambia la password di un utente");
  passwd->add_option("--db", *db, "File del database");
  passwd->add_option("NAME", *name, "Nome utente")->required();
  passwd->add_option("--password", *password, "Password (altrimenti letta dallo standard input)");
  passwd->callback([db, name, password, readPassword] {
    readPassword();
    auto connection = OpenDatabase(*db);
    web::Users(connection).SetPassword(*name, *password);
    std::cout << "Password di " << *name << " cambiata\n";
  });
  auto* list = cmd->add_subcommand("list", "Elenca gli utenti");
  list->add_option("--db", *db, "File del database");
  list->callback([db] {
    auto connection = OpenDatabase(*db);
    InitDatabase(*connection, false);
    for (const auto& u : web::Users(connection).List())
      std::cout << u.name << (u.active ? "" : " (disattivato)") << "\n";
  });
}

}  // namespace corvina20::app
