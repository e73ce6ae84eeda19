// The web host's API on a real server in this process: the session rules
// (401 before anything without a session, 403 without the CSRF token, login
// attempts limited), an expired session whose pending save is never written,
// several sessions saving carriers at the same moment, and a save suspended
// on a modal form that the following requests drive.
#include <gtest/gtest.h>

#include <algorithm>
#include <httplib.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "corvina20/Error.h"
#include "corvina20/HostParameters.h"
#include "data/Database.h"
#include "data/text/TextFold.h"
#include "support/TestSupport.h"
#include "web/Users.h"
#include "web/WebHost.h"

namespace corvina20::test {
namespace {

using json = nlohmann::json;

class Browser {
 public:
  explicit Browser(int port) : client_("127.0.0.1", port) {
    // Generous: the suite may share two cores with other suites.
    client_.set_read_timeout(60, 0);
    client_.set_write_timeout(60, 0);
  }
  httplib::Result Post(const std::string& path, const json& body, bool withCsrf = true) {
    httplib::Headers headers;
    if (!cookie_.empty()) headers.emplace("Cookie", cookie_);
    if (withCsrf && !csrf_.empty()) headers.emplace("X-CSRF-Token", csrf_);
    auto r = client_.Post(path.c_str(), headers, body.dump(), "application/json");
    Remember(r);
    return r;
  }
  json Delete(const std::string& path) {
    httplib::Headers headers;
    if (!cookie_.empty()) headers.emplace("Cookie", cookie_);
    if (!csrf_.empty()) headers.emplace("X-CSRF-Token", csrf_);
    auto r = client_.Delete(path.c_str(), headers);
    return r ? json::parse(r->body) : json();
  }
  httplib::Result Get(const std::string& path) {
    httplib::Headers headers;
    if (!cookie_.empty()) headers.emplace("Cookie", cookie_);
    return client_.Get(path.c_str(), headers);
  }
  int Login(const std::string& user, const std::string& password) {
    auto r = Post("/api/login", {{"user", user}, {"password", password}});
    if (r && r->status == 200) csrf_ = json::parse(r->body)["csrf"];
    return r ? r->status : -1;
  }
  json Act(int form, const json& action) {
    auto r = Post("/api/forms/" + std::to_string(form) + "/actions", action);
    return r ? json::parse(r->body) : json();
  }
  json Answer(int form, int answer) {
    auto r = Post("/api/dialog", {{"answer", answer}, {"formId", form}});
    return r ? json::parse(r->body) : json();
  }
  int OpenCarriers() {
    auto r = Post("/api/forms", {{"open", "AnagraficaVettori"}, {"kind", "card"}});
    return json::parse(r->body)["state"]["formId"];
  }

 private:
  void Remember(const httplib::Result& r) {
    if (!r) return;
    auto it = r->headers.find("Set-Cookie");
    if (it != r->headers.end()) cookie_ = it->second.substr(0, it->second.find(';'));
  }
  httplib::Client client_;
  std::string cookie_, csrf_;
};

class WebApi : public ::testing::Test {
 protected:
  void StartServer(int timeoutSeconds = 1800, bool demo = false) {
    // On the backend the suite runs on (a PostgreSQL database for pg.*).
    database = std::make_unique<TestDatabase>(demo);
    db = database->connection;
    web::Users(db).Add("anna", "segreta1");
    web::Users(db).Add("bruno", "segreta2");
    web::WebOptions options;
    options.database = database->path;
    options.sessionTimeoutSeconds = timeoutSeconds;
    host = std::make_unique<web::WebHost>(options);
    port = host->Start();
    ASSERT_GT(port, 0);
  }
  void TearDown() override {
    if (host) host->Stop();
  }
  long Count(const std::string& where) {
    return QueryLong(db, "SELECT COUNT(*) FROM STDAnagrafiche WHERE " + where);
  }

  TempDir dir;
  std::unique_ptr<TestDatabase> database;
  ConnectionPtr db;
  std::unique_ptr<web::WebHost> host;
  int port = 0;
};

TEST_F(WebApi, WithoutASessionEveryRouteButLoginAnswers401) {
  StartServer();
  Browser anonymous(port);
  EXPECT_EQ(anonymous.Get("/api/items")->status, 401);
  EXPECT_EQ(anonymous.Get("/api/me")->status, 401);
  EXPECT_EQ(anonymous.Get("/api/forms/1")->status, 401);
  EXPECT_EQ(anonymous.Post("/api/forms", {{"open", "AnagraficaVettori"}})->status, 401);
  EXPECT_EQ(anonymous.Post("/api/forms/1/actions", {{"press", "new"}})->status, 401);
  EXPECT_EQ(anonymous.Post("/api/dialog", {{"answer", 6}})->status, 401);
  EXPECT_EQ(anonymous.Post("/api/logout", json::object())->status, 401);
  EXPECT_EQ(host->SessionCount(), 0u);

  EXPECT_EQ(anonymous.Login("anna", "sbagliata"), 401);
  Browser anna(port);
  EXPECT_EQ(anna.Login("ANNA", "segreta1"), 200);  // names ignore case
  EXPECT_EQ(anna.Get("/api/items")->status, 200);
  // A state-changing request without the CSRF token is refused.
  EXPECT_EQ(anna.Post("/api/forms", {{"open", "AnagraficaVettori"}}, false)->status, 403);
  EXPECT_EQ(anna.Post("/api/forms", {{"open", "AnagraficaVettori"}})->status, 200);
  EXPECT_EQ(anna.Post("/api/logout", json::object())->status, 200);
  EXPECT_EQ(anna.Get("/api/items")->status, 401);
}

TEST_F(WebApi, TheRecordListComesInPagesAndItsSearchAndFilterNarrowIt) {
  StartServer(1800, true);
  Browser anna(port);
  ASSERT_EQ(anna.Login("anna", "segreta1"), 200);
  int form = anna.OpenCarriers();
  const long carriers = Count("Vettore = 1");
  ASSERT_GT(carriers, 2);

  // Pages of two, each after the last row of the one before, until none follows.
  std::vector<long> seen;
  json after = nullptr;
  do {
    json out = anna.Act(form, {{"list", {{"sort", "RagioneSociale"}, {"limit", 2}, {"after", after}}}});
    ASSERT_TRUE(out["error"].is_null()) << out.dump();
    const json& list = out["result"]["list"];
    EXPECT_EQ(list["columns"][1]["caption"], "Ragione Sociale");
    EXPECT_LE(list["rows"].size(), 2u);
    for (const auto& row : list["rows"]) seen.push_back(row["key"].get<long>());
    after = list["next"];
  } while (!after.is_null() && seen.size() < 1000);
  EXPECT_EQ(static_cast<long>(seen.size()), carriers);
  EXPECT_EQ(QueryLong(db, "SELECT TOP 1 IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1 "
                          "ORDER BY RagioneSociale, IdAnagrafica"), seen.front());

  // A town searched, then a column filter: only carriers of that town.
  json town = anna.Act(form, {{"list", {{"search", "milano"}}}})["result"]["list"];
  ASSERT_FALSE(town["rows"].empty());
  for (const auto& row : town["rows"]) EXPECT_EQ(row["values"][3], "Milano") << row.dump();
  EXPECT_EQ(anna.Act(form, {{"list", {{"filters", {{"Citta", "milano"}}}}}})["result"]["list"]["rows"], town["rows"]);
  // The card's moves now follow that list.
  json moved = anna.Act(form, {{"press", "first"}});
  EXPECT_EQ(moved["result"]["key"], town["rows"][0]["key"]);

  json wrong = anna.Act(form, {{"list", {{"sort", "Note"}}}});
  EXPECT_EQ(wrong["error"]["number"], kErrHost);
}

// The search box's rows, read through the list search index, are exactly
// those of the plain search (key equal, or a searched column LIKE '%text%'
// with the module's case folding), on the index path and on the scan it
// falls back to (short texts, common texts), and after rows change.
TEST_F(WebApi, TheListSearchFindsWhatThePlainSearchFinds) {
  StartServer();
  struct Row { int id; const char* name; const char* vat; const char* town; const char* phone; int carrier; };
  const Row rows[] = {
      {11, "Trasporti Città Alta", "01234567890", "Bergamo", "035 123456", 1},
      {12, "CITTÀ DEL CAPO srl", "09876543210", "Brescia", "030 999000", 1},
      {13, "Citta Nuova", "11111111111", "Bari", "080 555", 1},
      {14, "Sconti 100% Veri", "", "Roma", "", 1},
      {15, "A_B Logistica", "", "Pisa", "", 1},
      {16, "[Blu] Spedizioni", "", "Città di Castello", "", 1},
      {17, "Οδός Ταχεία", "", "Atene", "", 1},
      {18, "Città Vecchia (non vettore)", "", "Bergamo", "", 0},
      {4242, "Nessun Numero", "", "Udine", "", 1},
      {20, "Il \"Faro\" * Trasporti", "", "Ancona", "", 1},
  };
  for (const Row& r : rows)
    db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, PartitaIva, Citta, Telefono, Vettore) "
                "VALUES (?, ?, ?, ?, ?, ?)",
                {Variant(r.id), Variant(r.name), Variant(r.vat), Variant(r.town), Variant(r.phone), Variant(r.carrier)});
  Browser anna(port);
  ASSERT_EQ(anna.Login("anna", "segreta1"), 200);
  int form = anna.OpenCarriers();

  auto listed = [&](const std::string& search) {
    std::vector<long> keys;
    json after = nullptr;
    do {
      json out = anna.Act(form, {{"list", {{"search", search}, {"limit", 40}, {"after", after}}}});
      EXPECT_TRUE(out["error"].is_null()) << out.dump();
      for (const auto& row : out["result"]["list"]["rows"]) keys.push_back(row["key"].get<long>());
      after = out["result"]["list"]["next"];
    } while (!after.is_null() && keys.size() < 5000);
    return keys;
  };
  auto plain = [&](const std::string& search) {
    const std::string like = "%" + data::text::LikeLiteral(search) + "%";
    auto rs = db->OpenRecordset(
        "SELECT IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1 AND (IdAnagrafica = ? OR RagioneSociale LIKE ? "
        "OR PartitaIva LIKE ? OR CodiceFiscale LIKE ? OR Citta LIKE ? OR Telefono LIKE ?) ORDER BY IdAnagrafica",
        {Variant(search), Variant(like), Variant(like), Variant(like), Variant(like), Variant(like)});
    std::vector<long> keys;
    for (; !rs->IsEOF(); rs->MoveNext()) keys.push_back(rs->Fields(std::size_t{0}).Value().ToLong());
    return keys;
  };
  const std::vector<std::string> searches = {
      "città", "CITTÀ", "citta", "100%", "a_b", "[blu]", "ΔΌΣ", "5 123", "2345678", "09876543210", "bergamo", "4242",
      "nessun", "zz", "ci", "nessunoqui", "0", "\"faro\" *", "o\" "};
  for (const auto& s : searches) EXPECT_EQ(listed(s), plain(s)) << s;
  EXPECT_EQ(listed("città"), (std::vector<long>{11, 12, 16}));  // accents count, case does not
  EXPECT_EQ(listed("4242"), (std::vector<long>{4242}));         // the key, though no column holds it
  EXPECT_EQ(listed("\"faro\" *"), (std::vector<long>{20}));      // quotes and stars are text

  // The index follows the rows: a renamed, a deleted and a new carrier.
  db->Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'Autolinee Rossi' WHERE IdAnagrafica = 13");
  db->Execute("DELETE FROM STDAnagrafiche WHERE IdAnagrafica = 15");
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Vettore) VALUES (19, 'Rossi & Figli', 1)");
  for (const auto& s : {"citta", "nuova", "a_b", "rossi", "logistica"}) EXPECT_EQ(listed(s), plain(s)) << s;
  EXPECT_EQ(listed("rossi"), (std::vector<long>{13, 19}));

  // A text in more rows than the index hands out: the list scans, same rows.
  db->BeginTrans();
  for (int i = 0; i < 2100; ++i)
    db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Vettore) VALUES (?, ?, 1)",
                {Variant(10000 + i * 2), Variant("Comune Trasporti " + std::to_string(i))});
  db->CommitTrans();
  for (const auto& s : {"comune", "trasporti", "Trasporti 2099", "sporti 1"}) EXPECT_EQ(listed(s), plain(s)) << s;
  EXPECT_EQ(listed("Trasporti 2099"), (std::vector<long>{10000 + 2099 * 2}));
}

TEST_F(WebApi, RepeatedFailedLoginsAreSlowedDown) {
  StartServer();
  Browser guesser(port);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(guesser.Login("anna", "tentativo" + std::to_string(i)), 401);
  EXPECT_EQ(guesser.Login("anna", "segreta1"), 429);  // even the right one, for a minute
  // Another user at the same address (colleagues behind one proxy) is not held up.
  EXPECT_EQ(guesser.Login("bruno", "segreta2"), 200);
}

TEST_F(WebApi, ColleaguesBehindOneAddressLogInAtOnce) {
  StartServer();
  constexpr int kUsers = 12;  // more than one user's allowance of attempts in progress
  for (int i = 0; i < kUsers; ++i) web::Users(db).Add("utente" + std::to_string(i), "parola" + std::to_string(i));
  std::vector<int> statuses(kUsers, 0);
  std::vector<std::thread> logins;
  for (int i = 0; i < kUsers; ++i)
    logins.emplace_back([&, i] {
      Browser b(port);
      statuses[static_cast<std::size_t>(i)] = b.Login("utente" + std::to_string(i), "parola" + std::to_string(i));
    });
  for (auto& t : logins) t.join();
  EXPECT_EQ(std::count(statuses.begin(), statuses.end(), 200), kUsers);
}

TEST_F(WebApi, AnExpiredSessionsPendingSaveIsNeverWritten) {
  StartServer(1);
  Browser anna(port);
  ASSERT_EQ(anna.Login("anna", "segreta1"), 200);
  int form = anna.OpenCarriers();
  anna.Act(form, {{"press", "new"}});
  anna.Act(form, {{"set", "txtRagioneSociale1"}, {"value", "Mai Salvato"}});
  json saving = anna.Act(form, {{"press", "save"}});
  ASSERT_EQ(saving["dialog"]["number"], 386);  // parked on the warning, nobody answers

  std::this_thread::sleep_for(std::chrono::seconds(3));
  EXPECT_EQ(host->SessionCount(), 0u);
  EXPECT_EQ(Count("RagioneSociale = 'Mai Salvato'"), 0);
  auto late = anna.Post("/api/dialog", {{"answer", 6}, {"formId", form}});
  EXPECT_EQ(late->status, 401);
  EXPECT_EQ(Count("RagioneSociale = 'Mai Salvato'"), 0);
}

TEST_F(WebApi, SessionsSavingAtTheSameMomentEachLandTheirOwnRecord) {
  StartServer();
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, PartitaIva, Vettore) VALUES (1, 'Uno', '01114601006', 1)");
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, PartitaIva, Vettore) VALUES (2, 'Due', '00743110157', 1)");
  Browser anna(port), bruno(port);
  ASSERT_EQ(anna.Login("anna", "segreta1"), 200);
  ASSERT_EQ(bruno.Login("bruno", "segreta2"), 200);
  int fa = anna.OpenCarriers(), fb = bruno.OpenCarriers();

  // Each session's module talks to its own user: Anna's warning reaches Anna,
  // although Bruno logged in after her.
  anna.Act(fa, {{"press", "new"}});
  json warned = anna.Act(fa, {{"press", "save"}});
  ASSERT_EQ(warned["dialog"]["number"], 386) << warned.dump();
  EXPECT_EQ(anna.Answer(fa, 7)["result"]["done"], false);
  EXPECT_EQ(bruno.Get("/api/me")->body.find("\"dialog\":null") != std::string::npos, true);
  anna.Act(fa, {{"press", "cancel"}});

  // Editing different carriers at once.
  anna.Act(fa, {{"load", 1}});
  bruno.Act(fb, {{"load", 2}});
  anna.Act(fa, {{"press", "edit"}});
  bruno.Act(fb, {{"press", "edit"}});
  anna.Act(fa, {{"set", "txtCitta"}, {"value", "Torino"}});
  bruno.Act(fb, {{"set", "txtCitta"}, {"value", "Bari"}});
  json sa, sb;
  std::thread ta([&] { sa = anna.Act(fa, {{"press", "save"}}); });
  std::thread tb([&] { sb = bruno.Act(fb, {{"press", "save"}}); });
  ta.join();
  tb.join();
  EXPECT_EQ(sa["result"]["done"], true) << sa.dump();
  EXPECT_EQ(sb["result"]["done"], true) << sb.dump();
  EXPECT_EQ(Count("IdAnagrafica = 1 AND Citta = 'Torino'"), 1);
  EXPECT_EQ(Count("IdAnagrafica = 2 AND Citta = 'Bari'"), 1);

  // Both propose id 3 for a new carrier; saving at once, each gets its own.
  anna.Act(fa, {{"press", "new"}});
  bruno.Act(fb, {{"press", "new"}});
  anna.Act(fa, {{"set", "txtRagioneSociale1"}, {"value", "Nuovo di Anna"}});
  bruno.Act(fb, {{"set", "txtRagioneSociale1"}, {"value", "Nuovo di Bruno"}});
  anna.Act(fa, {{"set", "txtPartitaIva"}, {"value", "02238460220"}});
  bruno.Act(fb, {{"set", "txtPartitaIva"}, {"value", "03325080962"}});
  std::thread tc([&] { sa = anna.Act(fa, {{"press", "save"}}); });
  std::thread td([&] { sb = bruno.Act(fb, {{"press", "save"}}); });
  tc.join();
  td.join();
  ASSERT_EQ(sa["result"]["done"], true) << sa.dump();
  ASSERT_EQ(sb["result"]["done"], true) << sb.dump();
  EXPECT_NE(sa["result"]["key"], sb["result"]["key"]);
  EXPECT_EQ(Count("RagioneSociale IN ('Nuovo di Anna', 'Nuovo di Bruno') AND Vettore = 1"), 2);
  EXPECT_EQ(Count("IdAnagrafica IN (3, 4)"), 2);
}

// Customer 1 of the demo data with history snapshots on: editing its
// address and saving (the duplicate warning answered Yes) shows the snapshot
// dialog modally.
class WebModal : public WebApi {
 protected:
  void SetUp() override {
    StartServer(1800, true);
    anna = std::make_unique<Browser>(port);
    HostParameters(db, DateTime::FromParts(2026, 1, 1)).WriteParameter("AbilitaStoricoAnagrafiche", Variant(1));
    ASSERT_EQ(anna->Login("anna", "segreta1"), 200);
    auto r = anna->Post("/api/forms", {{"open", "AnagraficaClienti"}});
    card = json::parse(r->body)["state"]["formId"];
    anna->Act(card, {{"load", 1}});
  }
  // Edits the address and saves; returns the outcome that shows the dialog.
  json SaveNewAddress(const std::string& address) {
    anna->Act(card, {{"press", "edit"}});
    anna->Act(card, {{"set", "txtIndirizzo"}, {"value", address}});
    json warned = anna->Act(card, {{"press", "save"}});
    EXPECT_EQ(warned["dialog"]["number"], 386) << warned.dump();
    return anna->Answer(card, 6);
  }
  long Snapshots() { return QueryLong(db, "SELECT COUNT(*) FROM STDAnagraficheStorico WHERE IdAnagrafica = 1"); }
  static bool HasEvent(const json& outcome, const json& event) {
    for (const auto& e : outcome["events"])
      if (e == event) return true;
    return false;
  }

  std::unique_ptr<Browser> anna;
  int card = 0;
};

TEST_F(WebModal, TheSavePausesOnTheDialogAndTheRequestThatClosesItBringsItsResult) {
  long before = Snapshots();
  json shown = SaveNewAddress("Via Nuova 1");
  ASSERT_TRUE(shown["modal"].is_object()) << shown.dump();
  const int modal = shown["modal"]["formId"];
  EXPECT_EQ(shown["modal"]["opened"], "SalvaStoricoAnagrafiche");
  EXPECT_EQ(shown["modal"]["modal"], true);
  EXPECT_EQ(shown["modal"]["state"]["form"], "SalvaStoricoAnagrafiche");
  EXPECT_EQ(shown["result"], nullptr);  // the save is suspended
  EXPECT_EQ(json::parse(anna->Get("/api/me")->body)["modal"]["formId"], modal);

  // The card is held; the dialog takes the actions.
  json refused = anna->Act(card, {{"press", "cancel"}});
  EXPECT_NE(refused["error"]["description"].get<std::string>().find("modale"), std::string::npos) << refused.dump();
  EXPECT_EQ(refused["modal"]["formId"], modal);
  json typed = anna->Act(modal, {{"set", "dteDataStoricizzazione"}, {"value", "15/03/2026"}});
  EXPECT_EQ(typed["result"]["value"], "2026-03-15");
  EXPECT_EQ(typed["state"]["formId"], modal);

  json done = anna->Act(modal, {{"click", "cmdConferma"}});
  EXPECT_EQ(done["result"], json({{"pressed", "save"}, {"done", true}, {"mode", 0}, {"key", 1}})) << done.dump();
  EXPECT_TRUE(HasEvent(done, {{"clicked", "cmdConferma"}, {"done", true}})) << done.dump();
  EXPECT_TRUE(HasEvent(done, {{"closed", modal}, {"modal", true}, {"opener", card}})) << done.dump();
  EXPECT_EQ(done["modal"], nullptr);
  EXPECT_EQ(done["state"]["formId"], card);  // the card is drawn again
  EXPECT_EQ(Snapshots(), before + 1);

  // Closing the dialog's window (DELETE) is a cancel: saved, no snapshot.
  json again = SaveNewAddress("Via Seconda 2");
  json closed = anna->Delete("/api/forms/" + std::to_string(again["modal"]["formId"].get<int>()));
  EXPECT_EQ(closed["result"]["pressed"], "save") << closed.dump();
  EXPECT_EQ(closed["state"]["formId"], card);
  EXPECT_EQ(Snapshots(), before + 1);
  EXPECT_EQ(Count("IdAnagrafica = 1 AND Indirizzo = 'Via Seconda 2'"), 1);
}

TEST_F(WebModal, ASessionThatEndsWithTheDialogOpenWritesNothing) {
  long before = Snapshots();
  json shown = SaveNewAddress("Via Mai Salvata 9");
  ASSERT_TRUE(shown["modal"].is_object()) << shown.dump();
  EXPECT_EQ(anna->Post("/api/logout", json::object())->status, 200);
  EXPECT_EQ(host->SessionCount(), 0u);
  EXPECT_EQ(Count("Indirizzo = 'Via Mai Salvata 9'"), 0);
  EXPECT_EQ(Snapshots(), before);
}

}  // namespace
}  // namespace corvina20::test
