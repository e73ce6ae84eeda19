// Many users on one register through the HTTP API: `corvina serve` started on
// a generated register, and N simulated users (1, 10, 50 by default), each
// with an account of its own, its own session and its own keep-alive
// connection, doing what a clerk does: it logs in (a refusal for too many
// logins in progress from one address, 429, is tried again 250 ms later and
// counted apart) and opens the customer card, then in rounds:
//   open    open the carrier card (POST /api/forms)
//   list    the first page of the customer card's record list, by name
//   search  the customer list searched for a word of a party's name
//   save    a new carrier: new, name typed, save with its duplicate search
//           (the carrier card checks its codes only), every dialog it asks
//           answered (all the requests, timed as one)
//   close   the carrier card closed (DELETE /api/forms/{id})
//   contact a new contact named as a registered party: the save runs the
//           full-text duplicate search (names ranked, FREETEXTTABLE), finds
//           the party and asks; answered yes, the contact is saved

// with a think time between actions (uniform in [0.5, 1.5] × --think-ms).
// Reported per user count: p50 and p99 of each action in milliseconds, the
// errors (a failed request, a refusal, an outcome with an error, a save not
// done), and the server's peak resident memory (VmHWM of /proc/<pid>/status,
// a fresh server per user count). Before the users start, one request
// searches once and waits for the server's full-text copies ("warm").
//
//   build-release/bin/load_bench [--sizes=1000000] [--users=1,10,50] [--rounds=10] [--think-ms=1000]
//
// LOAD_BENCH_SERVER and LOAD_BENCH_MODULE run another build's `corvina` and
// module (an older version, to compare). LOAD_BENCH_DB serves another
// database holding the same register and accounts (on PostgreSQL: `corvina
// copy load-1000000.db postgresql://…/load`).
//
// The register (PartyGenerator, seed 20: every party a customer, as the
// record-list benchmark's) is generated once into $CORVINA_BENCH_DIR (default
// <build>/bench-data) as load-<n>.db and reused; the carriers the runs save
// stay in it (a few hundred per run, nothing beside a million).
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <httplib.h>

#include <nlohmann/json.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <latch>
#include <map>
#include <mutex>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "BenchArgs.h"
#include "PartyGenerator.h"
#include "corvina20/Connection.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/Recordset.h"
#include "data/Database.h"
#include "data/schema/Schema.h"
#include "web/Users.h"

namespace {

using corvina20::Variant;
using json = nlohmann::json;
using Clock = std::chrono::steady_clock;

std::string CacheDirectory() {
  const char* env = std::getenv("CORVINA_BENCH_DIR");
  return env && *env ? env : CORVINA_BENCH_CACHE;
}

std::vector<long> TakeList(std::vector<char*>& args, const std::string& name, std::vector<long> defaults) {
  for (auto it = args.begin(); it != args.end(); ++it) {
    std::string a = *it;
    if (a.rfind("--" + name + "=", 0) != 0) continue;
    defaults.clear();
    std::stringstream list(a.substr(name.size() + 3));
    for (std::string item; std::getline(list, item, ',');) defaults.push_back(std::stol(item));
    args.erase(it);
    break;
  }
  return defaults;
}

// The register of n parties with kMaxUsers accounts, and words to search.
constexpr int kMaxUsers = 64;

struct Register {
  std::string path;
  std::vector<std::string> names;  // of parties sampled over the register
};

Register Prepare(long n) {
  std::filesystem::create_directories(CacheDirectory());
  Register r;
  r.path = CacheDirectory() + "/load-" + std::to_string(n) + ".db";
  if (!std::filesystem::exists(r.path)) {
    std::fprintf(stderr, "load_bench: generating %ld parties into %s\n", n, r.path.c_str());
    const std::string partial = r.path + ".partial";
    std::filesystem::remove(partial);
    {
      corvina20::ConnectionPtr c = corvina20::OpenDatabase(partial);
      corvina20::data::ApplySchema(*c, corvina20::DataDirectory() + "/schema");
      corvina20::bench::InsertParties(*c, corvina20::bench::GenerateParties(static_cast<std::size_t>(n)));
      c->ExecuteNative("ANALYZE");
    }
    std::filesystem::rename(partial, r.path);
  }
  corvina20::ConnectionPtr c = corvina20::OpenDatabase(r.path);
  corvina20::InitDatabase(*c, false);  // reference data, the full-text indexes
  // The demo's duplicate search (as the duplicates benchmark's): the name and
  // the codes identify a party, full text at 30, no city check.
  corvina20::HostParameters params(c, corvina20::DateTime::FromParts(2025, 6, 30));
  params.WriteParameter("Identificativo1", Variant(std::string("RagioneSociale")));
  params.WriteParameter("Identificativo2", Variant(std::string("PartitaIva")));
  params.WriteParameter("Identificativo3", Variant(std::string("CodiceFiscale")));
  params.WriteParameter("ModalitaRicercaAnagrafica", Variant(std::string("30")));
  params.WriteParameter("PrecisioneFullText", Variant(std::string("0")));
  params.WriteParameter("VerificaParitaCitta", Variant(std::string("0")));
  corvina20::web::Users users(c);
  std::vector<std::string> have;
  for (const auto& u : users.List()) have.push_back(u.name);
  for (int i = 1; i <= kMaxUsers; ++i) {
    std::string name = "carico" + std::to_string(i);
    if (std::find(have.begin(), have.end(), name) == have.end()) users.Add(name, "password" + std::to_string(i));
  }
  for (auto rs = c->OpenRecordset("SELECT RagioneSociale FROM STDAnagrafiche WHERE IdAnagrafica % " +
                                  std::to_string(std::max<long>(1, n / 500)) + " = 7");
       !rs->IsEOF(); rs->MoveNext())
    r.names.push_back(rs->Fields("RagioneSociale").Value().ToString());
  return r;
}

// `corvina serve` on the register, as a child process.
class Server {
 public:
  Server(const std::string& db, int port) : port_(port) {
    pid_ = fork();
    if (pid_ == 0) {
      const char* server = std::getenv("LOAD_BENCH_SERVER");
      const char* module = std::getenv("LOAD_BENCH_MODULE");
      setenv("CORVINA_MODULE", module && *module ? module : CORVINA_BENCH_MODULE, 1);
      std::string listen = "127.0.0.1:" + std::to_string(port);
      execl(server && *server ? server : CORVINA_BENCH_SERVER, "corvina", "serve", "--db", db.c_str(), "--listen", listen.c_str(),
            static_cast<char*>(nullptr));
      _exit(127);
    }
    httplib::Client probe("127.0.0.1", port);
    for (int i = 0; i < 600; ++i) {  // up to a minute
      if (auto r = probe.Get("/api/me"); r && r->status == 401) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    std::fprintf(stderr, "load_bench: the server did not answer\n");
    std::exit(1);
  }
  ~Server() {
    kill(pid_, SIGTERM);
    int status = 0;
    waitpid(pid_, &status, 0);
  }
  // The server's peak resident memory so far, in MB.
  double PeakMB() const { return StatusMB("VmHWM:"); }
  // What it holds resident now, in MB.
  double ResidentMB() const { return StatusMB("VmRSS:"); }
  int Port() const { return port_; }

 private:
  double StatusMB(const std::string& field) const {
    std::ifstream in("/proc/" + std::to_string(pid_) + "/status");
    for (std::string line; std::getline(in, line);)
      if (line.rfind(field, 0) == 0) return std::stod(line.substr(field.size())) / 1024.0;
    return 0;
  }

  pid_t pid_ = -1;
  int port_;
};

// One user's browser: a session cookie, the CSRF token, one keep-alive
// connection.
class User {
 public:
  explicit User(int port) : client_("127.0.0.1", port) {
    client_.set_keep_alive(true);
    client_.set_tcp_nodelay(true);  // as browsers do
    client_.set_read_timeout(120, 0);
  }
  // The answer's JSON; null after a failed request or a refusal.
  json Post(const std::string& path, const json& body) {
    httplib::Headers headers{{"Cookie", cookie_}, {"X-CSRF-Token", csrf_}};
    auto r = client_.Post(path.c_str(), headers, body.dump(), "application/json");
    if (!r || r->status != 200) return json();
    if (std::string set = r->get_header_value("Set-Cookie"); !set.empty()) cookie_ = set.substr(0, set.find(';'));
    return json::parse(r->body, nullptr, false);
  }
  json Delete(const std::string& path) {
    httplib::Headers headers{{"Cookie", cookie_}, {"X-CSRF-Token", csrf_}};
    auto r = client_.Delete(path.c_str(), headers);
    if (!r || r->status != 200) return json();
    return json::parse(r->body, nullptr, false);
  }
  // Logs in; a 429 is tried again a little later. The server counts every
  // login in progress from one address against its limit of failures until
  // it succeeds, and all the users come from the loopback address.
  bool Login(const std::string& name, const std::string& password, int* refused = nullptr) {
    for (int tries = 0; tries < 40; ++tries) {
      auto r = client_.Post("/api/login", json{{"user", name}, {"password", password}}.dump(), "application/json");
      if (r && r->status == 429) {
        if (refused) ++*refused;
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
        continue;
      }
      if (!r || r->status != 200) return false;
      std::string set = r->get_header_value("Set-Cookie");
      cookie_ = set.substr(0, set.find(';'));
      csrf_ = json::parse(r->body)["csrf"];
      return true;
    }
    return false;
  }
  // An action's outcome, null when it failed or reported an error.
  json Act(int form, const json& action) { return Checked(Post("/api/forms/" + std::to_string(form) + "/actions", action)); }
  // Answers every dialog of an outcome with its first affirmative button
  // and closes a modal form it opens, until the action is over.
  json Settle(int form, json out) {
    for (int i = 0; i < 8 && !out.is_null(); ++i) {
      if (out.contains("dialog") && out["dialog"].is_object()) {
        int buttons = out["dialog"]["style"].get<int>() & 0x0F;
        int answer = buttons == 3 || buttons == 4 ? 6 : buttons == 5 ? 4 : 1;
        out = Checked(Post("/api/dialog", {{"answer", answer}, {"formId", form}}));
      } else if (out.contains("modal") && out["modal"].is_object()) {
        out = Checked(Delete("/api/forms/" + std::to_string(out["modal"]["formId"].get<int>())));
      } else {
        return out;
      }
    }
    return json();
  }

 private:
  static json Checked(json out) {
    if (out.is_null() || !out.is_object() || (out.contains("error") && !out["error"].is_null())) return json();
    return out;
  }
  httplib::Client client_;
  std::string cookie_, csrf_;
};

struct Results {
  std::mutex mutex;
  std::map<std::string, std::vector<double>> ms;
  std::map<std::string, int> errors;
  int refusedLogins = 0;  // 429s tried again
  void Add(const std::string& action, double millis, bool ok) {
    std::lock_guard lock(mutex);
    ms[action].push_back(millis);
    if (!ok) ++errors[action];
  }
};

// One user's rounds.
// Every user's rounds are over (or the user gave up) while all are still
// logged in: the server's resident memory is read then, before the logouts.
struct Finish {
  explicit Finish(int users) : done(users) {}
  std::latch done;
  std::latch measured{1};
};

void Drive(int port, int index, int rounds, int thinkMs, const Register& reg, Results& results, Finish& finish) {
  // A user who gives up early arrives as it leaves.
  struct Arrive {
    Finish& finish;
    bool arrived = false;
    void operator()() {
      if (!arrived) finish.done.count_down();
      arrived = true;
    }
    ~Arrive() { (*this)(); }
  } arrive{finish};
  std::mt19937 random(static_cast<unsigned>(1000 + index));
  std::uniform_real_distribution<double> think(0.5 * thinkMs, 1.5 * thinkMs);
  auto pause = [&] { std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(think(random))); };
  auto timed = [&](const char* action, auto&& body) {
    auto start = Clock::now();
    bool ok = body();
    results.Add(action, std::chrono::duration<double, std::milli>(Clock::now() - start).count(), ok);
    pause();
  };
  User user(port);
  pause();  // the users do not all start at the same instant
  int refused = 0;
  auto start = Clock::now();
  bool in = user.Login("carico" + std::to_string(index), "password" + std::to_string(index), &refused);
  {
    std::lock_guard lock(results.mutex);
    results.ms["login"].push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    results.refusedLogins += refused;
  }
  if (!in) {
    std::fprintf(stderr, "load_bench: user %d could not log in\n", index);
    std::lock_guard lock(results.mutex);
    ++results.errors["login"];
    return;
  }
  json customers = user.Post("/api/forms", {{"open", "AnagraficaClienti"}, {"kind", "card"}});
  if (customers.is_null() || !customers["state"].is_object()) {
    std::fprintf(stderr, "load_bench: user %d could not open the customer card: %s\n", index, customers.dump().c_str());
    std::lock_guard lock(results.mutex);
    ++results.errors["login"];
    return;
  }
  const int list = customers["state"]["formId"];
  json contacts = user.Post("/api/forms", {{"open", "AnagraficaContatti"}, {"kind", "card"}});
  if (contacts.is_null() || !contacts["state"].is_object()) {
    std::fprintf(stderr, "load_bench: user %d could not open the contact card: %s\n", index, contacts.dump().c_str());
    std::lock_guard lock(results.mutex);
    ++results.errors["login"];
    return;
  }
  const int contact = contacts["state"]["formId"];
  for (int round = 0; round < rounds; ++round) {
    const std::string& name = reg.names[random() % reg.names.size()];
    int form = -1;
    timed("open", [&] {
      json out = user.Post("/api/forms", {{"open", "AnagraficaVettori"}, {"kind", "card"}});
      if (out.is_null() || !out["state"].is_object()) return false;
      form = out["state"]["formId"];
      return true;
    });
    if (form < 0) continue;
    timed("list", [&] {
      json out = user.Act(list, {{"list", {{"sort", "RagioneSociale"}, {"limit", 50}}}});
      return !out.is_null() && out["result"]["list"]["rows"].size() == 50;
    });
    timed("search", [&] {
      json out = user.Act(list, {{"list", {{"search", name.substr(0, name.find(' '))}, {"limit", 50}}}});
      return !out.is_null() && !out["result"]["list"]["rows"].empty();
    });
    timed("save", [&] {
      // A name like a registered party's: the duplicate search has rows to rank.
      if (user.Act(form, {{"press", "new"}}).is_null()) return false;
      if (user.Act(form, {{"set", "txtRagioneSociale1"},
                          {"value", name + " " + std::to_string(index) + "-" + std::to_string(round)}})
              .is_null())
        return false;
      json out = user.Settle(form, user.Post("/api/forms/" + std::to_string(form) + "/actions", {{"press", "save"}}));
      return !out.is_null() && out["result"].is_object() && out["result"].value("done", false);
    });
    timed("close", [&] { return !user.Delete("/api/forms/" + std::to_string(form)).is_null(); });
    timed("contact", [&] {
      if (user.Act(contact, {{"press", "new"}}).is_null()) return false;
      if (user.Act(contact, {{"set", "txtRagioneSociale1"}, {"value", name}}).is_null()) return false;
      json out =
          user.Settle(contact, user.Post("/api/forms/" + std::to_string(contact) + "/actions", {{"press", "save"}}));
      return !out.is_null() && out["result"].is_object() && out["result"].value("done", false);
    });
  }
  arrive();
  finish.measured.wait();
  user.Post("/api/logout", json::object());
}

void Run(const Register& reg, long size, int users, int rounds, int thinkMs, int port) {
  const char* served = std::getenv("LOAD_BENCH_DB");
  Server server(served && *served ? std::string(served) : reg.path, port);
  // One search before the users: the first waits for the server's copies.
  auto start = Clock::now();
  {
    User warm(port);
    warm.Login("carico" + std::to_string(kMaxUsers), "password" + std::to_string(kMaxUsers));
    json v = warm.Post("/api/forms", {{"open", "AnagraficaContatti"}, {"kind", "card"}});
    int form = v["state"]["formId"];
    warm.Act(form, {{"press", "new"}});
    warm.Act(form, {{"set", "txtRagioneSociale1"}, {"value", reg.names.front()}});
    warm.Settle(form, warm.Post("/api/forms/" + std::to_string(form) + "/actions", {{"press", "save"}}));
    warm.Post("/api/logout", json::object());
  }
  const double warmMs = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  const double idleMB = server.PeakMB();
  Results results;
  std::vector<std::thread> threads;
  start = Clock::now();
  Finish finish(users);
  for (int i = 1; i <= users; ++i)
    threads.emplace_back([&, i] { Drive(port, i, rounds, thinkMs, reg, results, finish); });
  finish.done.wait();
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  const double residentMB = server.ResidentMB();
  finish.measured.count_down();
  for (auto& t : threads) t.join();
  std::printf("\n%ld parties, %d users x %d rounds (think %d ms), %.0f s; warm-up search %.0f ms; "
              "server peak %.0f MB (%.0f MB after the warm-up, %.0f MB resident with every user in at the end)\n",
              size, users, rounds, thinkMs, seconds, warmMs, server.PeakMB(), idleMB, residentMB);
  std::printf("| action | n | p50 ms | p99 ms | max ms | errors |\n|---|---|---|---|---|---|\n");
  for (const char* action : {"login", "open", "list", "search", "save", "close", "contact"}) {
    std::vector<double>& ms = results.ms[action];
    if (ms.empty()) continue;
    std::sort(ms.begin(), ms.end());
    std::printf("| %s | %zu | %.1f | %.1f | %.1f | %d |\n", action, ms.size(), corvina20::bench::Percentile(ms, 0.5),
                corvina20::bench::Percentile(ms, 0.99), ms.back(), results.errors[action]);
  }
  if (results.refusedLogins > 0) std::printf("(logins refused with 429 and tried again: %d)\n", results.refusedLogins);
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> args;
  std::vector<long> sizes = corvina20::bench::TakeSizes(argc, argv, {1000000}, args);
  std::vector<long> users = TakeList(args, "users", {1, 10, 50});
  const int rounds = static_cast<int>(TakeList(args, "rounds", {10}).front());
  const int thinkMs = static_cast<int>(TakeList(args, "think-ms", {1000}).front());
  const int port = static_cast<int>(TakeList(args, "port", {18431}).front());
  for (long size : sizes) {
    Register reg = Prepare(size);
    for (long n : users) Run(reg, size, static_cast<int>(std::min<long>(n, kMaxUsers - 1)), rounds, thinkMs, port);
  }
  return 0;
}
