// The web host: users log in, each browser session gets its own UI thread
// (UiSession) on its own database connection, and the JSON API under /api/
// carries the same actions as `corvina script` to it. Sessions are a cookie
// (HttpOnly, SameSite=Strict) plus a CSRF token that every state-changing
// request repeats in the X-CSRF-Token header; idle sessions expire and their
// open card edits are cancelled. Every route under /api/ but login answers 401
// to a request without a valid session before doing anything else.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "web/Http.h"

namespace corvina20::web {

struct WebOptions {
  std::string database;               // SQLite file, shared by every session
  std::string host = "127.0.0.1";     // loopback unless told otherwise
  int port = 8080;
  int sessionTimeoutSeconds = 1800;   // idle time after which a session ends
  int loginAttemptsPerMinute = 5;     // failed logins allowed per user from one address (20 times as many per address)
  std::string staticDir;              // the browser client; "" = the build's host/web
  bool secureCookie = false;          // behind a TLS proxy: the session cookie carries Secure
};

class WebHost {
 public:
  explicit WebHost(WebOptions options);
  ~WebHost();

  // The route table (one place for every route).
  std::vector<Route> Routes();
  // Binds the options' address and returns the port bound (the free one
  // chosen when the options say 0); -1 when it cannot be bound.
  int Bind();
  // After Bind: serves until Stop().
  void Serve();
  // Serves on a background thread on a free port of the host; returns it.
  int Start();
  void Stop();
  // Sessions alive now.
  std::size_t SessionCount();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// Reads `text` as "host:port" for --listen: a host that is not empty and a
// port of digits only, 0 (any free port) to 65535. Returns false and says why
// in `why` (Italian, for the user) otherwise; host and port unchanged then.
bool ParseListenAddress(const std::string& text, std::string& host, int& port, std::string& why);

// True for an address only this machine reaches: 127.0.0.0/8, ::1,
// "localhost". False for any other (0.0.0.0 and "::" listen on every interface).
bool IsLoopbackHost(const std::string& host);

// $CORVINA_WEB_DIR, else the source tree's host/web.
std::string DefaultWebDirectory();

}  // namespace corvina20::web
