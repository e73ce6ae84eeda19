// cpp-httplib under the web host's own types: route matching with {params},
// static files, security headers and the single error boundary.
#include "web/Http.h"

#include <httplib.h>

#include <sys/socket.h>

#include <nlohmann/json.hpp>
#include <iostream>
#include <sstream>

#include "core/Text.h"
#include "web/WorkerPool.h"

namespace corvina20::web {
namespace {

// Matches "/api/forms/{id}" against a path, filling the named parameters.
bool Match(const std::string& pattern, const std::string& path, std::map<std::string, std::string>& params) {
  std::vector<std::string> a, b;
  auto split = [](const std::string& s, std::vector<std::string>& out) {
    std::stringstream in(s);
    std::string part;
    while (std::getline(in, part, '/'))
      if (!part.empty()) out.push_back(part);
  };
  split(pattern, a);
  split(path, b);
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i].size() > 2 && a[i].front() == '{' && a[i].back() == '}') params[a[i].substr(1, a[i].size() - 2)] = b[i];
    else if (a[i] != b[i]) return false;
  }
  return true;
}

// The one error shape of the API.
std::string ErrorBody(const std::string& description) {
  return nlohmann::json{{"error", {{"number", nullptr}, {"source", "Corvina20.Web"}, {"description", description}}}}.dump();
}

// Sized for ~50 users (see docs/performance.md). A connection holds a worker
// while it is open, so the pool grows (WorkerPool.h); these bound how long
// one that sends nothing keeps it.
constexpr std::size_t kInitialWorkers = 16;
// A read waiting longer than this ends the connection (it restarts with each
// line received: the library has no bound on a request's whole header).
constexpr int kReadTimeoutSeconds = 5;
// An idle keep-alive connection is closed after this; a busy one serves up
// to kKeepAliveRequests requests before the client must reconnect.
constexpr int kKeepAliveSeconds = 3;
constexpr std::size_t kKeepAliveRequests = 1000;
// Connections the kernel holds before the server accepts them: the
// library's 5 turned a burst of users into SYNs dropped and retried a
// second later.
constexpr int kListenBacklog = 256;

// Set once per response, by the post-routing handler only.
void Secure(httplib::Response& res) {
  res.set_header("X-Content-Type-Options", "nosniff");
  res.set_header("X-Frame-Options", "DENY");
  res.set_header("Referrer-Policy", "no-referrer");
  res.set_header("Content-Security-Policy",
                 "default-src 'self'; img-src 'self' data:; style-src 'self'; script-src 'self'");
}

}  // namespace

std::string Request::Cookie(const std::string& name) const {
  std::string all = Header("cookie");
  std::stringstream in(all);
  std::string part;
  while (std::getline(in, part, ';')) {
    std::string_view p = text::Trim(part);
    if (p.substr(0, name.size() + 1) == name + "=") return std::string(p.substr(name.size() + 1));
  }
  return "";
}

std::string Request::Header(const std::string& lowerName) const {
  auto it = headers.find(lowerName);
  return it == headers.end() ? "" : it->second;
}

struct HttpServer::Impl {
  httplib::Server server;
  std::vector<Route> routes;
  int listening = -1;  // the listening socket, once bound

  // The library listens with a backlog of 5; listening again on the bound
  // socket widens it.
  bool Widen(bool bound) {
    if (bound && listening >= 0) ::listen(listening, kListenBacklog);
    return bound;
  }
};

HttpServer::HttpServer(std::vector<Route> routes, std::string staticDir) : impl_(new Impl) {
  impl_->routes = std::move(routes);
  impl_->server.set_mount_point("/", staticDir);
  impl_->server.set_payload_max_length(1 << 20);
  impl_->server.set_read_timeout(kReadTimeoutSeconds, 0);
  impl_->server.set_keep_alive_timeout(kKeepAliveSeconds);
  impl_->server.set_keep_alive_max_count(kKeepAliveRequests);
  impl_->server.new_task_queue = [] { return new WorkerPool(kInitialWorkers); };
  // An answer goes out as headers and body in two writes: with Nagle's rule
  // the body waited for the client's delayed acknowledgement of the
  // headers, 40 ms on every request.
  impl_->server.set_tcp_nodelay(true);
  // The library's default shares the port (SO_REUSEPORT): a second server on
  // the same address would start silently and split the traffic. Only
  // SO_REUSEADDR, so a restart need not wait for old connections to time
  // out, and a second server's bind fails.
  impl_->server.set_socket_options([impl = impl_](int sock) {
    impl->listening = sock;
    int yes = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
  });
  auto dispatch = [this](const httplib::Request& hreq, httplib::Response& hres) {
    Request req;
    req.method = hreq.method;
    req.path = hreq.path;
    req.body = hreq.body;
    req.remoteAddress = hreq.remote_addr;
    for (const auto& [k, v] : hreq.headers) req.headers[text::Lower(k)] = v;
    for (const auto& [k, v] : hreq.params) req.params[k] = v;
    Response res;
    bool found = false;
    for (const Route& route : impl_->routes) {
      std::map<std::string, std::string> params;
      if (route.method != req.method || !Match(route.pattern, req.path, params)) continue;
      for (auto& [k, v] : params) req.params[k] = v;
      found = true;
      try {
        res = route.handler(req);
      } catch (const std::exception& e) {
        // A library's own text (a JSON type error…) means nothing to the
        // user: it goes to the log, the answer says the failure is ours.
        std::cerr << "corvina: " << req.method << " " << req.path << ": " << e.what() << "\n";
        res.status = 500;
        res.body = ErrorBody("Errore interno del server");
      }
      break;
    }
    if (!found) {
      res.status = 404;
      res.body = ErrorBody("Risorsa inesistente: " + req.path);
    }
    hres.status = res.status;
    for (const auto& [k, v] : res.headers) hres.set_header(k, v);
    hres.set_header("Cache-Control", "no-store");
    hres.set_content(res.body, res.contentType);
  };
  for (const char* method : {"GET", "POST", "DELETE"}) {
    std::string m = method;
    auto handler = [dispatch](const httplib::Request& a, httplib::Response& b) { dispatch(a, b); };
    if (m == "GET") impl_->server.Get(R"(/api/.*)", handler);
    else if (m == "POST") impl_->server.Post(R"(/api/.*)", handler);
    else impl_->server.Delete(R"(/api/.*)", handler);
  }
  // What the library refuses itself (a body over the limit: 413, a request it
  // cannot read: 400, a method it has no route for) answers the same shape.
  impl_->server.set_error_handler([](const httplib::Request& req, httplib::Response& res) {
    if (!res.body.empty()) return;
    std::string description = res.status == 413   ? "Richiesta troppo grande"
                              : res.status == 404 ? "Risorsa inesistente: " + req.path
                              : res.status == 405 ? "Metodo non ammesso: " + req.method
                                                  : "Richiesta non valida";
    res.set_content(ErrorBody(description), "application/json; charset=utf-8");
  });
  impl_->server.set_post_routing_handler([](const httplib::Request&, httplib::Response& res) { Secure(res); });
}

HttpServer::~HttpServer() { delete impl_; }

int HttpServer::Bind(const std::string& host, int port) {
  if (port == 0) return BindAnyPort(host);
  return impl_->Widen(impl_->server.bind_to_port(host, port)) ? port : -1;
}

int HttpServer::BindAnyPort(const std::string& host) {
  int port = impl_->server.bind_to_any_port(host);
  impl_->Widen(port > 0);
  return port;
}

void HttpServer::ServeBound() { impl_->server.listen_after_bind(); }

void HttpServer::Stop() { impl_->server.stop(); }

}  // namespace corvina20::web
