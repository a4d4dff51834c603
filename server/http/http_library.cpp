#include "http/http_library.h"

#include "http/tls.h"
#include "users/password_file.h"
#include "users/remembered_logins.h"

namespace server {
namespace {

std::unique_ptr<HttpServer> httpServer(Service& service, HttpOptions options) {
    return std::make_unique<HttpServer>(service, std::move(options));
}

std::shared_ptr<const TlsContext> tlsContext(const std::string& certificateFile, const std::string& keyFile) {
    return std::make_shared<const TlsContext>(certificateFile, keyFile);
}

std::unique_ptr<Authentication> passwordFile(std::string file) {
    return std::make_unique<PasswordFile>(std::move(file));
}

std::shared_ptr<Authentication> rememberedLogins(std::unique_ptr<Authentication> asked) {
    return std::make_shared<RememberedLogins>(std::move(asked));
}

} // namespace
} // namespace server

const server::HttpLibrary PH_Http{.httpServer = server::httpServer,
                                  .tlsContext = server::tlsContext,
                                  .generateCertificate = server::generateCertificate,
                                  .passwordFile = server::passwordFile,
                                  .rememberedLogins = server::rememberedLogins};
