// The web host's sessions and its API handlers (named verb_resource).
#include "web/WebHost.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include <nlohmann/json.hpp>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/Database.h"
#include "data/fulltext/FtsWarm.h"
#include "items/ItemCatalogue.h"
#include "web/UiSession.h"
#include "web/Users.h"

namespace corvina20::web {

using json = nlohmann::ordered_json;
using Clock = std::chrono::steady_clock;

namespace {

constexpr const char* kCookie = "corvina_session";
// Sessions one user may hold at once (browsers, tabs that logged in again):
// a login beyond them ends that user's least recently used session.
constexpr std::size_t kMaxSessionsPerUser = 8;
// Addresses whose failed logins are remembered at once (a minute each).
constexpr std::size_t kMaxTrackedAddresses = 10000;
// Failed logins an address may have in a minute, whatever the users, as a
// multiple of those allowed for one user from it: many users behind one
// address log in at once, one address trying many names is still slowed.
constexpr int kAddressAttemptsFactor = 20;

Response Json(int status, const json& body) {
  Response r;
  r.status = status;
  r.body = body.dump();
  return r;
}

Response Fail(int status, const std::string& description) {
  return Json(status, {{"error", {{"number", nullptr}, {"source", "Corvina20.Web"}, {"description", description}}}});
}

// Deepest nesting of arrays and objects a request body may have. The API's
// bodies are a few levels deep; a body nested thousands of levels (a few KB,
// under the size limit) would overflow the stack in the recursive copies and
// comparisons of the parsed value, so it is refused before it is parsed.
constexpr int kMaxJsonDepth = 32;

// True when `text` nests arrays and objects deeper than `limit`: a scan of
// brackets outside strings, without building anything.
bool NestedDeeperThan(const std::string& text, int limit) {
  int depth = 0;
  bool inString = false, escaped = false;
  for (char c : text) {
    if (inString) {
      if (escaped) escaped = false;
      else if (c == '\\') escaped = true;
      else if (c == '"') inString = false;
    } else if (c == '"') {
      inString = true;
    } else if (c == '[' || c == '{') {
      if (++depth > limit) return true;
    } else if (c == ']' || c == '}') {
      --depth;
    }
  }
  return false;
}

// A request body as JSON; discarded (is_discarded()) when it is not JSON or
// nests too deep, which every handler answers with 400.
json ParseBody(const std::string& body) {
  if (NestedDeeperThan(body, kMaxJsonDepth)) return json(json::value_t::discarded);
  return json::parse(body, nullptr, false);
}

// The outcome of an action as the browser reads it, with the form's state
// when the action is over.
json Body(const Outcome& o) {
  json body = {{"events", o.events}};
  body["result"] = o.result ? *o.result : json(nullptr);
  body["dialog"] = o.dialog ? *o.dialog : json(nullptr);
  body["modal"] = o.modal ? *o.modal : json(nullptr);
  body["error"] = o.error ? *o.error : json(nullptr);
  return body;
}

// The form that showed the modal form `formId`, when the outcome's events
// say that the modal form closed.
std::optional<int> OpenerOf(const Outcome& o, int formId) {
  for (const auto& e : o.events)
    if (e.is_object() && e.contains("closed") && e.value("modal", false) && e["closed"] == formId)
      return e.value("opener", 0);
  return std::nullopt;
}

}  // namespace

bool ParseListenAddress(const std::string& text, std::string& host, int& port, std::string& why) {
  auto colon = text.rfind(':');
  if (colon == std::string::npos || colon == 0) {
    why = "serve host:porta, per esempio 127.0.0.1:8080";
    return false;
  }
  const std::string digits = text.substr(colon + 1);
  // Digits only: std::stoi would take "80abc" as 80 and "-1" as a number.
  bool numeric = !digits.empty() && digits.size() <= 5 &&
                 std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (!numeric || std::stoi(digits) > 65535) {
    why = "la porta «" + digits + "» non è un numero fra 0 e 65535";
    return false;
  }
  host = text.substr(0, colon);
  port = std::stoi(digits);
  return true;
}

bool IsLoopbackHost(const std::string& host) {
  return host == "localhost" || host == "::1" || host == "[::1]" || host.rfind("127.", 0) == 0;
}

std::string DefaultWebDirectory() {
  if (const char* dir = std::getenv("CORVINA_WEB_DIR"); dir != nullptr && *dir != '\0') return dir;
  return CORVINA_DEFAULT_WEB_DIR;
}

struct WebHost::Impl {
  struct Entry {
    std::shared_ptr<UiSession> ui;
    std::string csrf;
  };

  WebOptions options;
  std::mutex mutex;                       // sessions and login attempts
  std::map<std::string, Entry> sessions;  // by session token
  // By remote address and user name: guesses at one user's password from one
  // address are what the limit slows down, while a whole staff behind one
  // address (a TLS proxy) logs in at once without refusing one another.
  std::map<std::string, std::deque<Clock::time_point>> failures;
  std::mutex usersMutex;                  // the users' connection (pooled, as the sessions')
  ConnectionPtr usersConnection;
  std::unique_ptr<HttpServer> server;
  std::thread serving;
  std::thread sweeper;
  // Makes the full-text copies every session shares while the server
  // already answers (FtsWarm.h); a search that comes first waits for it.
  std::thread warming;
  std::atomic<bool> stopping{false};

  // The session a request belongs to, or none.
  std::optional<Entry> Find(const Request& req) {
    std::string token = req.Cookie(kCookie);
    if (token.empty()) return std::nullopt;
    std::lock_guard lock(mutex);
    auto it = sessions.find(token);
    if (it == sessions.end()) return std::nullopt;
    return it->second;
  }

  // Wraps a handler: no valid session → 401 before anything else; a
  // state-changing request without the session's CSRF token → 403.
  Handler Authed(bool changesState, std::function<Response(const Request&, Entry&)> body) {
    return [this, changesState, body](const Request& req) {
      std::optional<Entry> entry = Find(req);
      if (!entry) return Fail(401, "Sessione assente o scaduta: accedere di nuovo");
      if (changesState && req.Header("x-csrf-token") != entry->csrf)
        return Fail(403, "Token CSRF mancante o errato");
      return body(req, *entry);
    };
  }

  // Takes one login attempt of `address` (an address, or an address and user
  // name: AttemptKey): none (refuse, 429) when it has used up the `allowed`
  // failures of the last minute. The attempt is counted before
  // the password is checked, so parallel guesses cannot all slip under the
  // limit; a login that succeeds gives its attempt back (ReturnAttempt).
  // Addresses beyond kMaxTrackedAddresses with a failure in the last minute
  // are refused too, so the table stays bounded under a flood.
  std::optional<Clock::time_point> TakeAttempt(const std::string& address, int allowed) {
    std::lock_guard lock(mutex);
    auto now = Clock::now();
    auto it = failures.find(address);
    if (it == failures.end()) {
      if (failures.size() >= kMaxTrackedAddresses) ForgetOldFailures(now);
      if (failures.size() >= kMaxTrackedAddresses) return std::nullopt;
      it = failures.emplace(address, std::deque<Clock::time_point>()).first;
    }
    auto& list = it->second;
    while (!list.empty() && list.front() < now - std::chrono::minutes(1)) list.pop_front();
    if (static_cast<int>(list.size()) >= allowed) return std::nullopt;
    list.push_back(now);
    return now;
  }

  void ReturnAttempt(const std::string& address, Clock::time_point taken) {
    std::lock_guard lock(mutex);
    auto it = failures.find(address);
    if (it == failures.end()) return;
    auto& list = it->second;
    for (auto at = list.begin(); at != list.end(); ++at)
      if (*at == taken) {
        list.erase(at);
        break;
      }
    if (list.empty()) failures.erase(it);
  }

  // Drops the addresses whose failures are all over a minute old (mutex held).
  void ForgetOldFailures(Clock::time_point now) {
    for (auto it = failures.begin(); it != failures.end();)
      if (it->second.empty() || it->second.back() < now - std::chrono::minutes(1)) it = failures.erase(it);
      else ++it;
  }

  // Keeps at most kMaxSessionsPerUser sessions of `user`, ending the ones
  // used least recently (mutex held; the caller closes what it gets back).
  std::vector<std::shared_ptr<UiSession>> TrimSessionsOf(const std::string& user) {
    std::vector<std::map<std::string, Entry>::iterator> mine;
    for (auto it = sessions.begin(); it != sessions.end(); ++it)
      if (it->second.ui->User() == user) mine.push_back(it);
    std::vector<std::shared_ptr<UiSession>> ended;
    if (mine.size() <= kMaxSessionsPerUser) return ended;
    std::sort(mine.begin(), mine.end(),
              [](const auto& a, const auto& b) { return a->second.ui->LastUse() < b->second.ui->LastUse(); });
    for (std::size_t i = 0; i + kMaxSessionsPerUser < mine.size(); ++i) {
      ended.push_back(mine[i]->second.ui);
      sessions.erase(mine[i]);
    }
    return ended;
  }

  // The limiter's key of a login: the address and the user name as typed,
  // in capitals (names ignore case).
  static std::string AttemptKey(const std::string& address, const std::string& user) {
    return address + '\n' + text::Upper(user);
  }

  Response post_login(const Request& req) {
    json body = ParseBody(req.body);
    if (!body.is_object()) return Fail(400, "Servono utente e password");
    std::string user = body.value("user", ""), password = body.value("password", "");
    const std::string key = AttemptKey(req.remoteAddress, user);
    const auto tooMany = [] { return Fail(429, "Troppi tentativi di accesso: riprovare fra un minuto"); };
    std::optional<Clock::time_point> fromAddress =
        TakeAttempt(req.remoteAddress, options.loginAttemptsPerMinute * kAddressAttemptsFactor);
    if (!fromAddress) return tooMany();
    std::optional<Clock::time_point> attempt = TakeAttempt(key, options.loginAttemptsPerMinute);
    if (!attempt) {
      ReturnAttempt(req.remoteAddress, *fromAddress);  // no password was checked
      return tooMany();
    }
    std::string name;
    {
      std::lock_guard lock(usersMutex);
      name = Users(usersConnection).Verify(user, password);
      usersConnection->ReleaseBackend();
    }
    if (name.empty()) return Fail(401, "Utente o password errati");  // the attempt stays counted
    ReturnAttempt(key, *attempt);
    ReturnAttempt(req.remoteAddress, *fromAddress);
    auto ui = std::make_shared<UiSession>(name, options.database);
    std::string token = RandomToken(), csrf = RandomToken();
    std::vector<std::shared_ptr<UiSession>> ended;
    {
      std::lock_guard lock(mutex);
      sessions[token] = {ui, csrf};
      ended = TrimSessionsOf(name);
    }
    for (auto& old : ended) old->Close();  // outside the lock: closing waits for its thread
    Response r = Json(200, {{"user", name}, {"csrf", csrf}});
    r.headers.push_back({"Set-Cookie", std::string(kCookie) + "=" + token + CookieAttributes()});
    return r;
  }

  // Behind a TLS proxy the browser must never send the cookie over plain HTTP.
  std::string CookieAttributes() const {
    return std::string("; HttpOnly; SameSite=Strict; Path=/") + (options.secureCookie ? "; Secure" : "");
  }

  Response post_logout(const Request& req, Entry& entry) {
    std::shared_ptr<UiSession> ui = entry.ui;
    {
      std::lock_guard lock(mutex);
      sessions.erase(req.Cookie(kCookie));
    }
    ui->Close();
    Response r = Json(200, {{"loggedOut", true}});
    r.headers.push_back({"Set-Cookie", std::string(kCookie) + "=" + CookieAttributes() + "; Max-Age=0"});
    return r;
  }

  Response get_me(const Request&, Entry& entry) {
    json pending = nullptr, modal = nullptr;
    if (auto d = entry.ui->PendingDialog()) pending = *d;
    if (auto m = entry.ui->PendingModal()) modal = *m;
    return Json(200, {{"user", entry.ui->User()}, {"csrf", entry.csrf}, {"dialog", pending}, {"modal", modal}});
  }

  Response get_items(const Request&, Entry&) {
    static const std::pair<const char*, const char*> kinds[] = {
        {"card", "Schede"}, {"report", "Stampe"}, {"activeform", "Maschere attive"}};
    std::vector<CatalogueItem> catalogue = ReadItemCatalogue();
    json groups = json::array();
    for (auto [kind, caption] : kinds) {
      json items = json::array();
      for (const auto& item : catalogue)
        if (item.kind == kind) items.push_back({{"name", item.name}, {"caption", item.caption}});
      groups.push_back({{"kind", kind}, {"caption", caption}, {"items", items}});
    }
    return Json(200, {{"groups", groups}});
  }

  // Runs an action and, when it is over, reads the form's state too.
  Response Act(UiSession& ui, json action, std::optional<int> formId) {
    if (formId) action["formId"] = *formId;
    Outcome o = ui.Submit(action);
    return Finish(ui, o, formId);
  }

  // The state of a form (the one opened last when none is named); null when
  // it cannot be read.
  json StateOf(UiSession& ui, std::optional<int> formId) {
    json stateAction = {{"state", true}};
    if (formId) stateAction["formId"] = *formId;
    Outcome s = ui.Submit(stateAction);
    return s.result ? (*s.result)["state"] : json(nullptr);
  }

  // The outcome with the state the client draws next: nothing while a
  // dialog waits; the modal form's own state inside `modal` while one waits;
  // the named form's state, or, when the action closed that form as a modal
  // one, the state of the form that showed it (its suspended action is over).
  Response Finish(UiSession& ui, const Outcome& o, std::optional<int> formId) {
    json body = Body(o);
    if (!o.dialog) {
      std::optional<int> modalId;
      if (o.modal) {
        modalId = (*o.modal)["formId"].get<int>();
        body["modal"]["state"] = StateOf(ui, modalId);
      }
      std::optional<int> opener = formId ? OpenerOf(o, *formId) : std::nullopt;
      if (modalId && formId == modalId) body["state"] = body["modal"]["state"];  // read once
      else body["state"] = StateOf(ui, opener ? opener : formId);
    }
    return Json(200, body);
  }

  Response post_forms(const Request& req, Entry& entry) {
    json action = ParseBody(req.body);
    if (!action.is_object() || !action.contains("open")) return Fail(400, "Serve {\"open\":\"NomeElemento\",\"kind\":\"card\"}");
    Outcome o = entry.ui->Submit(action);
    if (o.result && (*o.result)["form"].is_null()) {
      json body = Body(o);
      body["state"] = nullptr;
      return Json(200, body);  // the item is not installed: told plainly, nothing opened
    }
    return Finish(*entry.ui, o, std::nullopt);
  }

  std::optional<int> FormId(const Request& req) {
    auto it = req.params.find("id");
    if (it == req.params.end()) return std::nullopt;
    // Digits only: std::stoi would read "1abc" as form 1.
    const std::string& id = it->second;
    if (id.empty() || id.size() > 9 || !std::all_of(id.begin(), id.end(), [](char c) { return c >= '0' && c <= '9'; }))
      return std::nullopt;
    return std::stoi(id);
  }

  Response get_form(const Request& req, Entry& entry) {
    auto id = FormId(req);
    if (!id) return Fail(404, "Maschera non aperta");
    Outcome o = entry.ui->Submit({{"formId", *id}, {"state", true}});
    if (o.error) return Json(404, {{"error", *o.error}});
    return Json(200, {{"state", (*o.result)["state"]}, {"dialog", o.dialog ? *o.dialog : json(nullptr)}});
  }

  Response post_action(const Request& req, Entry& entry) {
    auto id = FormId(req);
    json action = ParseBody(req.body);
    if (!id) return Fail(404, "Maschera non aperta");
    if (!action.is_object()) return Fail(400, "Serve un'azione JSON su una maschera aperta");
    for (const char* refused : {"open", "answers", "param", "query"})
      if (action.contains(refused)) return Fail(400, std::string("Azione non ammessa qui: ") + refused);
    return Act(*entry.ui, action, id);
  }

  Response delete_form(const Request& req, Entry& entry) {
    auto id = FormId(req);
    if (!id) return Fail(404, "Maschera non aperta");
    Outcome o = entry.ui->Submit({{"formId", *id}, {"close", true}});
    if (o.error) return Json(404, Body(o));
    // Closing a modal form resumes the action that showed it: its outcome,
    // as for any action. An ordinary form has no state left to show.
    if (OpenerOf(o, *id)) return Finish(*entry.ui, o, id);
    return Json(200, Body(o));
  }

  Response post_dialog(const Request& req, Entry& entry) {
    json body = ParseBody(req.body);
    if (!body.is_object() || !body.contains("answer") || !body["answer"].is_number_integer())
      return Fail(400, "Serve {\"answer\":6}");
    std::optional<int> formId;
    if (body.contains("formId") && body["formId"].is_number_integer()) formId = body["formId"].get<int>();
    Outcome o = entry.ui->Answer(body["answer"].get<int>());
    return Finish(*entry.ui, o, formId);
  }

  void Sweep() {
    while (!stopping) {
      std::this_thread::sleep_for(std::chrono::milliseconds(250));
      std::vector<std::shared_ptr<UiSession>> expired;
      {
        std::lock_guard lock(mutex);
        auto limit = Clock::now() - std::chrono::seconds(options.sessionTimeoutSeconds);
        ForgetOldFailures(Clock::now());
        for (auto it = sessions.begin(); it != sessions.end();) {
          if (it->second.ui->LastUse() < limit) {
            expired.push_back(it->second.ui);
            it = sessions.erase(it);
          } else {
            ++it;
          }
        }
      }
      for (auto& ui : expired) ui->Close();  // aborts a parked dialog, cancels edits
    }
  }
};

WebHost::WebHost(WebOptions options) : impl_(std::make_unique<Impl>()) {
  impl_->options = std::move(options);
  if (impl_->options.staticDir.empty()) impl_->options.staticDir = DefaultWebDirectory();
  // Pooled, as the sessions' are: it holds the pool for the server's life.
  impl_->usersConnection = OpenPooledDatabase(impl_->options.database);
  impl_->server = std::make_unique<HttpServer>(Routes(), impl_->options.staticDir);
}

WebHost::~WebHost() { Stop(); }

std::vector<Route> WebHost::Routes() {
  Impl* m = impl_.get();
  auto bind = [m](Response (Impl::*f)(const Request&, Impl::Entry&)) {
    return [m, f](const Request& r, Impl::Entry& e) { return (m->*f)(r, e); };
  };
  return {
      {"POST", "/api/login", [m](const Request& r) { return m->post_login(r); }},
      {"POST", "/api/logout", m->Authed(true, bind(&Impl::post_logout))},
      {"GET", "/api/me", m->Authed(false, bind(&Impl::get_me))},
      {"GET", "/api/items", m->Authed(false, bind(&Impl::get_items))},
      {"POST", "/api/forms", m->Authed(true, bind(&Impl::post_forms))},
      {"GET", "/api/forms/{id}", m->Authed(false, bind(&Impl::get_form))},
      {"POST", "/api/forms/{id}/actions", m->Authed(true, bind(&Impl::post_action))},
      {"DELETE", "/api/forms/{id}", m->Authed(true, bind(&Impl::delete_form))},
      {"POST", "/api/dialog", m->Authed(true, bind(&Impl::post_dialog))},
  };
}

int WebHost::Bind() { return impl_->server->Bind(impl_->options.host, impl_->options.port); }

void WebHost::Serve() {
  impl_->warming = std::thread([database = impl_->options.database] { data::fulltext::WarmFullText(database); });
  impl_->sweeper = std::thread([m = impl_.get()] { m->Sweep(); });
  impl_->server->ServeBound();
}

int WebHost::Start() {
  int port = impl_->server->BindAnyPort(impl_->options.host);
  if (port < 0) return -1;
  impl_->warming = std::thread([database = impl_->options.database] { data::fulltext::WarmFullText(database); });
  impl_->sweeper = std::thread([m = impl_.get()] { m->Sweep(); });
  impl_->serving = std::thread([m = impl_.get()] { m->server->ServeBound(); });
  return port;
}

void WebHost::Stop() {
  if (impl_->stopping.exchange(true)) return;
  impl_->server->Stop();
  if (impl_->serving.joinable()) impl_->serving.join();
  if (impl_->sweeper.joinable()) impl_->sweeper.join();
  if (impl_->warming.joinable()) impl_->warming.join();
  std::map<std::string, Impl::Entry> sessions;
  {
    std::lock_guard lock(impl_->mutex);
    sessions.swap(impl_->sessions);
  }
  for (auto& [token, entry] : sessions) entry.ui->Close();
}

std::size_t WebHost::SessionCount() {
  std::lock_guard lock(impl_->mutex);
  return impl_->sessions.size();
}

}  // namespace corvina20::web
