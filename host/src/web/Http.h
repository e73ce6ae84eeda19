// The web host's own request and response types and its route table, so the
// handlers never see the HTTP library underneath (HttpServer.cpp is the only
// file that does).
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace corvina20::web {

struct Request {
  std::string method;
  std::string path;
  std::map<std::string, std::string> params;   // path parameters ({id}) and query parameters
  std::map<std::string, std::string> headers;  // names lower-cased
  std::string body;
  std::string remoteAddress;
  std::string Cookie(const std::string& name) const;
  std::string Header(const std::string& lowerName) const;
};

struct Response {
  int status = 200;
  std::string contentType = "application/json; charset=utf-8";
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;
};

using Handler = std::function<Response(const Request&)>;

struct Route {
  std::string method;   // GET, POST, DELETE
  std::string pattern;  // "/api/forms/{id}/actions"
  Handler handler;
};

// Serves `routes` and, for any other GET, the static files under `staticDir`.
// Blocks until Stop() is called from another thread. Every exception a
// handler lets out becomes a 500 with the one JSON error shape.
class HttpServer {
 public:
  HttpServer(std::vector<Route> routes, std::string staticDir);
  ~HttpServer();
  // Binds `host`:`port` (0: any free port) and returns the port bound; -1
  // when the address cannot be bound. Serve with ServeBound.
  int Bind(const std::string& host, int port);
  // Binds to any free port on `host` and returns it (tests); -1 on failure.
  int BindAnyPort(const std::string& host);
  void ServeBound();  // after BindAnyPort
  void Stop();

 private:
  struct Impl;
  Impl* impl_;
};

}  // namespace corvina20::web
