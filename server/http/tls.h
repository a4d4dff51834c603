// TLS over a connection.
#pragma once

#include "http/connection.h"

#include <memory>
#include <openssl/ssl.h>
#include <string>

namespace server {

// A certificate with its key.
class TlsContext {
public:
    // Reads PEM files. Throws std::runtime_error.
    TlsContext(const std::string& certificateFile, const std::string& keyFile);

    // Makes the socket a connection; nullptr when the client does not agree on a session.
    std::unique_ptr<Connection> accept(int socket, int stopping, const ConnectionLimits& limits) const;

private:
    struct Free {
        void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
    };
    std::unique_ptr<SSL_CTX, Free> context_;
};

// Writes a new key, for nobody else to read, and a certificate that it signs itself, for a host's name or
// address; both PEM. Files that are there are not touched. Throws std::runtime_error.
void generateCertificate(const std::string& certificateFile, const std::string& keyFile,
                         const std::string& host);

} // namespace server
