// Faults of the web host under hostile or clumsy use: a session closed by
// several requests at once (a double click on the logout), bodies nested too
// deep, dialog answers no button gives, slow senders and idle keep-alive
// connections beside a normal request, wildcards typed into searches, raced
// and repeated logins, listen addresses and a second server on one port, the
// cookie behind TLS, and the one error shape of every refusal. Each case runs
// on a real database and, where the HTTP path matters, a real server on the
// loopback address.
#include <gtest/gtest.h>
#include <httplib.h>

#include <nlohmann/json.hpp>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "data/Database.h"
#include "support/TestSupport.h"
#include "web/UiSession.h"
#include "web/Users.h"
#include "web/WebHost.h"

namespace corvina20::test {
namespace {

using json = nlohmann::ordered_json;

TEST(UiSessionClose, SeveralCallersAtOnceAllReturnAndTheParkedSaveWritesNothing) {
  TempDir dir;
  auto db = OpenDatabase(dir.File("close.db"));
  InitDatabase(*db, false);
  for (int round = 0; round < 3; ++round) {
    web::UiSession ui("anna", dir.File("close.db"));
    ASSERT_FALSE(ui.Submit({{"open", "AnagraficaVettori"}, {"kind", "card"}}).error);
    ui.Submit({{"press", "new"}});
    ui.Submit({{"set", "txtRagioneSociale1"}, {"value", "Mai Salvato"}});
    ASSERT_TRUE(ui.Submit({{"press", "save"}}).dialog.has_value());  // parked on the warning
    // Eight logouts of the same session at the same moment: each returns,
    // none throws, and the destructor closes once more without harm.
    std::vector<std::thread> closers;
    for (int i = 0; i < 8; ++i) closers.emplace_back([&ui] { ui.Close(); });
    for (auto& t : closers) t.join();
    EXPECT_TRUE(ui.Submit({{"state", true}}).error.has_value());  // closed
  }
  EXPECT_EQ(QueryLong(db, "SELECT COUNT(*) FROM STDAnagrafiche WHERE RagioneSociale = 'Mai Salvato'"), 0);
}

// A server on a free loopback port with one user, and a logged-in client.
class HardenedServer : public ::testing::Test {
 protected:
  void SetUp() override {
    db = OpenDatabase(dir.File("web.db"));
    InitDatabase(*db, false);
    web::Users(db).Add("anna", "segreta1");
    web::WebOptions options;
    options.database = dir.File("web.db");
    host = std::make_unique<web::WebHost>(options);
    port = host->Start();
    ASSERT_GT(port, 0);
    client = std::make_unique<httplib::Client>("127.0.0.1", port);
    client->set_read_timeout(60, 0);
    auto r = client->Post("/api/login", R"({"user":"anna","password":"segreta1"})", "application/json");
    ASSERT_TRUE(r && r->status == 200);
    std::string cookie = r->get_header_value("Set-Cookie");
    headers = {{"Cookie", cookie.substr(0, cookie.find(';'))},
               {"X-CSRF-Token", json::parse(r->body)["csrf"].get<std::string>()}};
  }
  void TearDown() override {
    if (host) host->Stop();
  }
  httplib::Result Post(const std::string& path, const std::string& body) {
    return client->Post(path, headers, body, "application/json");
  }

  TempDir dir;
  ConnectionPtr db;
  std::unique_ptr<web::WebHost> host;
  int port = 0;
  std::unique_ptr<httplib::Client> client;
  httplib::Headers headers;
};

TEST_F(HardenedServer, ADeeplyNestedBodyIsRefusedWith400AndTheServerGoesOn) {
  auto opened = Post("/api/forms", R"({"open":"AnagraficaVettori","kind":"card"})");
  ASSERT_TRUE(opened && opened->status == 200);
  const int form = json::parse(opened->body)["state"]["formId"];
  const std::string actions = "/api/forms/" + std::to_string(form) + "/actions";
  // About 24 KB, well under the body limit, 12,000 levels deep.
  const std::string deep = std::string(12000, '[') + std::string(12000, ']');
  for (const std::string& path : {actions, std::string("/api/forms"), std::string("/api/dialog")}) {
    auto r = Post(path, R"({"set":"txtNote","value":)" + deep + "}");
    ASSERT_TRUE(r) << path;
    EXPECT_EQ(r->status, 400) << path;
    EXPECT_EQ(json::parse(r->body)["error"]["source"], "Corvina20.Web") << r->body;
  }
  // Brackets inside a string are text, not nesting.
  auto typed = Post(actions, R"({"set":"txtRagioneSociale1","value":")" + std::string(40, '[') + R"("})");
  ASSERT_TRUE(typed);
  EXPECT_EQ(typed->status, 200) << typed->body;
  EXPECT_EQ(json::parse(typed->body)["result"]["value"], std::string(40, '[')) << typed->body;
}

TEST_F(HardenedServer, ADialogTakesOnlyTheButtonsItShows) {
  auto opened = Post("/api/forms", R"({"open":"AnagraficaVettori","kind":"card"})");
  ASSERT_TRUE(opened && opened->status == 200);
  const std::string actions = "/api/forms/" + std::to_string(json::parse(opened->body)["state"]["formId"].get<int>()) + "/actions";
  Post(actions, R"({"press":"new"})");
  Post(actions, R"({"set":"txtRagioneSociale1","value":"Risposta Sbagliata"})");
  json warned = json::parse(Post(actions, R"({"press":"save"})")->body);
  ASSERT_EQ(warned["dialog"]["number"], 386) << warned.dump();
  ASSERT_EQ(warned["dialog"]["style"].get<int>() & 0x0F, 4);  // Yes/No

  for (int answer : {99, -1, 0, 1, 2}) {
    json refused = json::parse(Post("/api/dialog", R"({"answer":)" + std::to_string(answer) + "}")->body);
    EXPECT_NE(refused["error"], nullptr) << answer << ": " << refused.dump();
    EXPECT_EQ(refused["dialog"]["number"], 386) << answer;  // still waiting
    EXPECT_EQ(refused["result"], nullptr) << answer;
  }
  EXPECT_EQ(QueryLong(db, "SELECT COUNT(*) FROM STDAnagrafiche WHERE RagioneSociale = 'Risposta Sbagliata'"), 0);
  json no = json::parse(Post("/api/dialog", R"({"answer":7})")->body);
  EXPECT_EQ(no["result"]["done"], false) << no.dump();
  EXPECT_EQ(QueryLong(db, "SELECT COUNT(*) FROM STDAnagrafiche WHERE RagioneSociale = 'Risposta Sbagliata'"), 0);
}

TEST_F(HardenedServer, PercentAndUnderscoreTypedIntoASearchAreText) {
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Vettore) VALUES "
              "(1, 'Sconto 100% Trasporti', 1), (2, 'Via 1000 Trasporti', 1), "
              "(3, 'Alfa_Beta', 1), (4, 'AlfaXBeta', 1)");
  db->Execute("INSERT INTO STDNazioni (CodNazione, Descrizione) VALUES ('IT', 'Italia'), ('FR', 'Francia')");
  auto opened = Post("/api/forms", R"({"open":"AnagraficaVettori","kind":"card"})");
  ASSERT_TRUE(opened && opened->status == 200);
  const std::string actions = "/api/forms/" + std::to_string(json::parse(opened->body)["state"]["formId"].get<int>()) + "/actions";
  auto keys = [](const json& rows) {
    std::vector<long> out;
    for (const auto& r : rows) out.push_back(r["key"].get<long>());
    return out;
  };
  auto act = [&](const json& action) { return json::parse(Post(actions, action.dump())->body); };

  EXPECT_EQ(keys(act({{"find", "100%"}})["result"]["found"]), std::vector<long>{1});
  EXPECT_EQ(keys(act({{"find", "Alfa_Beta"}})["result"]["found"]), std::vector<long>{3});
  EXPECT_EQ(keys(act({{"list", {{"search", "Alfa_Beta"}}}})["result"]["list"]["rows"]), std::vector<long>{3});
  EXPECT_EQ(keys(act({{"list", {{"filters", {{"RagioneSociale", "%"}}}}}})["result"]["list"]["rows"]), std::vector<long>{1});
  // Neither nation's code nor its name holds an underscore.
  json nations = act({{"lookup", "cdoNazione"}, {"search", "_"}});
  ASSERT_EQ(nations["error"], nullptr) << nations.dump();
  EXPECT_TRUE(nations["result"]["rows"].empty()) << nations.dump();
  EXPECT_EQ(act({{"lookup", "cdoNazione"}, {"search", "ital"}})["result"]["rows"].size(), 1u);
}

TEST_F(HardenedServer, ParallelWrongLoginsCheckNoMorePasswordsThanTheLimit) {
  std::vector<int> statuses(40, 0);
  std::vector<std::thread> guessers;
  for (int i = 0; i < 40; ++i)
    guessers.emplace_back([&, i] {
      httplib::Client c("127.0.0.1", port);
      c.set_read_timeout(60, 0);
      // A connection the listening queue turns away is tried again (a few
      // times): what counts is the answer to each attempt that arrives.
      for (int tries = 0; tries < 10 && statuses[i] <= 0; ++tries) {
        auto r = c.Post("/api/login", R"({"user":"anna","password":"tentativo)" + std::to_string(i) + R"("})",
                        "application/json");
        statuses[i] = r ? r->status : -1;
        if (!r) std::this_thread::sleep_for(std::chrono::milliseconds(100));
      }
    });
  for (auto& t : guessers) t.join();
  EXPECT_EQ(std::count(statuses.begin(), statuses.end(), 401), 5);
  EXPECT_EQ(std::count(statuses.begin(), statuses.end(), 429), 35);
}

TEST_F(HardenedServer, AUserLoggingInAgainAndAgainKeepsAtMostEightSessions) {
  // The session of SetUp is the first; nine more logins of the same user.
  for (int i = 0; i < 9; ++i) {
    httplib::Client c("127.0.0.1", port);
    auto r = c.Post("/api/login", R"({"user":"anna","password":"segreta1"})", "application/json");
    ASSERT_TRUE(r && r->status == 200);
  }
  EXPECT_EQ(host->SessionCount(), 8u);
  EXPECT_EQ(client->Get("/api/me", headers)->status, 401);  // the least recently used ended
}

TEST(ListenAddress, OnlyAHostAndAPortOfDigitsWithinRangeAreTaken) {
  std::string host, why;
  int port = -1;
  EXPECT_TRUE(web::ParseListenAddress("127.0.0.1:8080", host, port, why));
  EXPECT_EQ(host, "127.0.0.1");
  EXPECT_EQ(port, 8080);
  EXPECT_TRUE(web::ParseListenAddress("localhost:0", host, port, why));  // any free port
  EXPECT_EQ(port, 0);
  for (const char* bad : {"127.0.0.1", "127.0.0.1:", ":8080", "127.0.0.1:80abc", "127.0.0.1:http",
                          "127.0.0.1:-1", "127.0.0.1:65536", "127.0.0.1:99999999999", "127.0.0.1: 80"}) {
    port = 1234;
    why.clear();
    EXPECT_FALSE(web::ParseListenAddress(bad, host, port, why)) << bad;
    EXPECT_FALSE(why.empty()) << bad;
    EXPECT_EQ(port, 1234) << bad;
  }
}

TEST(ListenAddress, BindingPortZeroGivesTheRealPortAndASecondServerCannotShareIt) {
  TempDir dir;
  { InitDatabase(*OpenDatabase(dir.File("bind.db")), false); }
  web::WebOptions options;
  options.database = dir.File("bind.db");
  options.port = 0;
  web::WebHost host(options);
  const int port = host.Bind();
  ASSERT_GT(port, 0);
  std::thread serving([&host] { host.Serve(); });
  httplib::Client c("127.0.0.1", port);
  auto r = c.Get("/api/me");
  EXPECT_TRUE(r && r->status == 401);
  // A second server on the same address cannot bind it (no port sharing).
  options.port = port;
  web::WebHost second(options);
  EXPECT_EQ(second.Bind(), -1);
  host.Stop();
  serving.join();
}

TEST(ListenAddress, OnlyLoopbackAddressesCountAsThisMachinesOwn) {
  for (const char* own : {"127.0.0.1", "127.1.2.3", "localhost", "::1"}) EXPECT_TRUE(web::IsLoopbackHost(own)) << own;
  for (const char* open : {"0.0.0.0", "::", "192.168.1.10", "10.0.0.1", "ditta.example"})
    EXPECT_FALSE(web::IsLoopbackHost(open)) << open;
}

TEST(SessionCookie, BehindATlsProxyTheCookieIsSecure) {
  TempDir dir;
  {
    auto db = OpenDatabase(dir.File("tls.db"));
    InitDatabase(*db, false);
    web::Users(db).Add("anna", "segreta1");
  }
  for (bool tls : {false, true}) {
    web::WebOptions options;
    options.database = dir.File("tls.db");
    options.secureCookie = tls;
    web::WebHost host(options);
    const int port = host.Start();
    ASSERT_GT(port, 0);
    httplib::Client c("127.0.0.1", port);
    auto r = c.Post("/api/login", R"({"user":"anna","password":"segreta1"})", "application/json");
    ASSERT_TRUE(r && r->status == 200);
    const std::string cookie = r->get_header_value("Set-Cookie");
    EXPECT_EQ(cookie.find("; Secure") != std::string::npos, tls) << cookie;
    EXPECT_NE(cookie.find("HttpOnly; SameSite=Strict; Path=/"), std::string::npos) << cookie;
    host.Stop();
  }
}

TEST_F(HardenedServer, EveryRefusalHasTheOneErrorShapeAndTheSecurityHeadersOnce) {
  auto shaped = [](const httplib::Result& r, int status) {
    ASSERT_TRUE(r);
    EXPECT_EQ(r->status, status) << r->body;
    json body = json::parse(r->body, nullptr, false);
    ASSERT_TRUE(body.is_object()) << r->body;
    EXPECT_EQ(body["error"]["source"], "Corvina20.Web") << r->body;
    EXPECT_TRUE(body["error"]["description"].is_string()) << r->body;
    EXPECT_EQ(r->get_header_value_count("X-Frame-Options"), 1u);
    EXPECT_EQ(r->get_header_value_count("Content-Security-Policy"), 1u);
  };
  shaped(client->Get("/api/forms/1abc", headers), 404);
  shaped(client->Get("/api/forms/-1", headers), 404);
  shaped(client->Delete("/api/forms/1abc", headers), 404);
  shaped(Post("/api/forms/1abc/actions", R"({"state":true})"), 404);
  shaped(Post("/api/forms", std::string(2 << 20, ' ')), 413);
  shaped(client->Put("/api/forms", headers, "{}", "application/json"), 404);  // no route takes PUT
  shaped(client->Get("/api/nothing", headers), 404);
}

}  // namespace
}  // namespace corvina20::test

namespace corvina20::test {
namespace {

// A raw TCP connection to the loopback port; -1 when it cannot connect.
int ConnectRaw(int port) {
  int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_port = htons(static_cast<std::uint16_t>(port));
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) != 0) {
    ::close(fd);
    fd = -1;
  }
  return fd;
}

void SendAll(int fd, const std::string& text) {
  for (std::size_t sent = 0; sent < text.size();) {
    ssize_t n = ::send(fd, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
    if (n <= 0) return;
    sent += static_cast<std::size_t>(n);
  }
}

TEST_F(HardenedServer, SlowHeaderSendersAndIdleKeepAliveConnectionsDoNotHoldUpOtherRequests) {
  // Eight connections that send a header line every two seconds and never
  // finish, and eight browsers that asked once and keep their connection
  // open: more than the few workers a server starts with by default.
  std::vector<int> slow, idle;
  for (int i = 0; i < 8; ++i) {
    slow.push_back(ConnectRaw(port));
    ASSERT_GE(slow.back(), 0);
    SendAll(slow.back(), "GET /api/me HTTP/1.1\r\nHost: 127.0.0.1\r\n");
  }
  for (int i = 0; i < 8; ++i) {
    idle.push_back(ConnectRaw(port));
    ASSERT_GE(idle.back(), 0);
    SendAll(idle.back(), "GET /api/me HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: keep-alive\r\n\r\n");
  }
  std::atomic<bool> done{false};
  std::thread dripping([&] {
    for (int line = 0; !done; ++line) {
      for (int fd : slow) SendAll(fd, "X-Slow-" + std::to_string(line) + ": a\r\n");
      for (int waited = 0; waited < 20 && !done; ++waited) std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(500));  // every one of them connected and read from
  // A normal request on a new connection, and another on the logged-in one,
  // are both answered well within the bound (generous, not a timing test).
  std::vector<int> statuses;
  std::vector<double> seconds;
  for (int round = 0; round < 2; ++round) {
    auto start = std::chrono::steady_clock::now();
    httplib::Client fresh("127.0.0.1", port);
    fresh.set_read_timeout(30, 0);
    auto r = round == 0 ? fresh.Get("/api/me") : client->Get("/api/me", headers);
    statuses.push_back(r ? r->status : -1);
    seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  done = true;
  dripping.join();
  for (int fd : slow) ::close(fd);
  for (int fd : idle) ::close(fd);
  EXPECT_EQ(statuses, (std::vector<int>{401, 200}));
  for (double s : seconds) EXPECT_LT(s, 2.0);
}

}  // namespace
}  // namespace corvina20::test
