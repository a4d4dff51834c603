// The server's HTTP, TLS and passwords as a library of their own, which is loaded to serve. It brings OpenSSL and
// more: to load all of that takes longer than most commands of a program run that serves now and then.
#pragma once

#include "http/authentication.h"
#include "http/http_server.h"

#include <memory>
#include <string>

namespace server {

struct HttpLibrary {
    // Each does what the constructor or function of its name does.
    std::unique_ptr<HttpServer> (*httpServer)(Service& service, HttpOptions options);
    std::shared_ptr<const TlsContext> (*tlsContext)(const std::string& certificateFile,
                                                    const std::string& keyFile);
    void (*generateCertificate)(const std::string& certificateFile, const std::string& keyFile,
                                const std::string& host);
    std::unique_ptr<Authentication> (*passwordFile)(std::string file);
    std::shared_ptr<Authentication> (*rememberedLogins)(std::unique_ptr<Authentication> asked);
};

} // namespace server

// What the library exports.
extern "C" __attribute__((visibility("default"))) const server::HttpLibrary PH_Http;
