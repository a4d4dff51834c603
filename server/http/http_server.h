// CIM-XML over HTTP (DSP0200, 6 and 7).
#pragma once

#include "http/authentication.h"
#include "http/limits.h"
#include "http/metrics.h"
#include "operations/service.h"

#include <functional>
#include <memory>
#include <string>

namespace server {

class TlsContext;

// CIM-XML at /cimom, metrics at /metrics.
struct HttpOptions {
    std::string address = "127.0.0.1";
    int port = 5988; // 0: one that is free
    std::size_t connections = 32;
    std::size_t requestSize = 1024 * 1024;
    ConnectionLimits limits = {};                        // of its own size
    std::shared_ptr<Authentication> authentication = {}; // none: everybody may do everything
    std::shared_ptr<const TlsContext> tls = {};          // none: plain
    Metrics metrics = {};                                // none: there is no /metrics
    std::function<void(const std::string& line)> log = {};
};

// Its functions are virtual for programs that load it as a library (http_library.h).
class HttpServer {
public:
    // The constructor listens at once. It throws std::runtime_error.
    HttpServer(Service& service, HttpOptions options);
    virtual ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    virtual int port() const;
    // Answers until it is stopped.
    virtual void run();
    // Takes no more requests, and lets those end that are under way. Any thread may call it.
    virtual void stop();

private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

} // namespace server
