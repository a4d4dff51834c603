#include "http/tls.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

namespace server {
namespace {

[[noreturn]] void fail(const std::string& what) {
    const unsigned long code = ERR_get_error();
    const char* const reason =
        ERR_SYSTEM_ERROR(code) ? std::strerror(ERR_GET_REASON(code)) : ERR_reason_error_string(code);
    throw std::runtime_error(what + (reason != nullptr ? std::string(": ") + reason : ""));
}

template <auto release>
struct Release {
    template <class Object>
    void operator()(Object* object) const {
        release(object);
    }
};

void closeFile(FILE* file) {
    std::fclose(file);
}

using File = std::unique_ptr<FILE, Release<closeFile>>;
using Key = std::unique_ptr<EVP_PKEY, Release<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Release<X509_free>>;
using Session = std::unique_ptr<SSL, Release<SSL_free>>;

class TlsConnection : public Connection {
public:
    TlsConnection(int socket, int stopping, const ConnectionLimits& limits, SSL_CTX* context)
        : Connection(socket, stopping, limits), session_(SSL_new(context)) {
        if (session_ == nullptr || SSL_set_fd(session_.get(), socket) != 1)
            fail("TLS");
    }
    ~TlsConnection() override {
        if (isOpen_)
            SSL_shutdown(session_.get());
    }
    TlsConnection(const TlsConnection&) = delete;
    TlsConnection& operator=(const TlsConnection&) = delete;

    bool handshake() {
        const Deadline deadline = within(limits_.request);
        for (;;) {
            short events = 0;
            ERR_clear_error();
            const int result = SSL_accept(session_.get());
            isOpen_ = result == 1;
            if (isOpen_ || !mustWait(result, events) || !wait(events, deadline))
                return isOpen_;
        }
    }

protected:
    ssize_t receive(char* data, std::size_t size, short& events) override {
        return run([&](std::size_t& count) { return SSL_read_ex(session_.get(), data, size, &count); },
                   events);
    }
    ssize_t send(const char* data, std::size_t size, short& events) override {
        return run([&](std::size_t& count) { return SSL_write_ex(session_.get(), data, size, &count); },
                   events);
    }

private:
    bool mustWait(int result, short& events) {
        const int error = SSL_get_error(session_.get(), result);
        if (error == SSL_ERROR_WANT_READ)
            events = POLLIN;
        else if (error == SSL_ERROR_WANT_WRITE)
            events = POLLOUT;
        else {
            isOpen_ = isOpen_ && error == SSL_ERROR_ZERO_RETURN;
            return false;
        }
        return true;
    }
    template <class Transfer>
    ssize_t run(Transfer transfer, short& events) {
        std::size_t count = 0;
        ERR_clear_error();
        const int result = transfer(count);
        if (result == 1)
            return static_cast<ssize_t>(count);
        const bool again = mustWait(result, events);
        errno = again ? EAGAIN : ECONNRESET;
        return -1;
    }

    Session session_;
    bool isOpen_ = false;
};

constexpr long secondsOfYears = 10L * 365 * 24 * 3600;

void addExtension(X509* certificate, int kind, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Release<X509_EXTENSION_free>> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    if (extension == nullptr || X509_add_ext(certificate, extension.get(), -1) != 1)
        fail("certificate");
}

bool isAddress(const std::string& host) {
    in6_addr address;
    return inet_pton(AF_INET, host.c_str(), &address) == 1 ||
           inet_pton(AF_INET6, host.c_str(), &address) == 1;
}

Certificate makeCertificate(EVP_PKEY* key, const std::string& host) {
    Certificate certificate(X509_new());
    X509* const made = certificate.get();
    if (made == nullptr || X509_set_version(made, X509_VERSION_3) != 1 || X509_set_pubkey(made, key) != 1 ||
        X509_gmtime_adj(X509_getm_notBefore(made), 0) == nullptr ||
        X509_gmtime_adj(X509_getm_notAfter(made), secondsOfYears) == nullptr)
        fail("certificate");
    const std::unique_ptr<BIGNUM, Release<BN_free>> serial(BN_new());
    if (serial == nullptr || BN_rand(serial.get(), 127, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) != 1 ||
        BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(made)) == nullptr)
        fail("certificate");
    X509_NAME* name = X509_get_subject_name(made);
    if (X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                                   reinterpret_cast<const unsigned char*>(host.c_str()), -1, -1, 0) != 1 ||
        X509_set_issuer_name(made, name) != 1)
        fail("certificate for " + host);
    addExtension(made, NID_basic_constraints, "critical,CA:TRUE");
    addExtension(made, NID_subject_alt_name, (isAddress(host) ? "IP:" : "DNS:") + host);
    if (X509_sign(made, key, EVP_sha256()) == 0)
        fail("certificate");
    return certificate;
}

File create(const std::string& name, mode_t mode) {
    const int descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    File file(descriptor != -1 ? fdopen(descriptor, "w") : nullptr);
    if (file == nullptr)
        throw std::runtime_error("cannot write " + name + ": " + std::strerror(errno));
    return file;
}

} // namespace

TlsContext::TlsContext(const std::string& certificateFile, const std::string& keyFile)
    : context_(SSL_CTX_new(TLS_server_method())) {
    SSL_CTX* const context = context_.get();
    if (context == nullptr || SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION) != 1)
        fail("TLS");
    SSL_CTX_set_options(context, SSL_OP_NO_RENEGOTIATION | SSL_OP_IGNORE_UNEXPECTED_EOF);
    SSL_CTX_set_mode(context, SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    if (SSL_CTX_use_certificate_chain_file(context, certificateFile.c_str()) != 1)
        fail("certificate " + certificateFile);
    if (SSL_CTX_use_PrivateKey_file(context, keyFile.c_str(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(context) != 1)
        fail("key " + keyFile);
}

std::unique_ptr<Connection> TlsContext::accept(int socket, int stopping,
                                               const ConnectionLimits& limits) const {
    auto connection = std::make_unique<TlsConnection>(socket, stopping, limits, context_.get());
    if (!connection->handshake())
        return nullptr;
    return connection;
}

void generateCertificate(const std::string& certificateFile, const std::string& keyFile,
                         const std::string& host) {
    const Key key(EVP_EC_gen("P-256"));
    if (key == nullptr)
        fail("key");
    const Certificate certificate = makeCertificate(key.get(), host);
    const File keyOutput = create(keyFile, 0600);
    const File certificateOutput = create(certificateFile, 0644);
    if (PEM_write_PrivateKey(keyOutput.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1 ||
        PEM_write_X509(certificateOutput.get(), certificate.get()) != 1 ||
        std::fflush(keyOutput.get()) != 0 || std::fflush(certificateOutput.get()) != 0)
        fail("cannot write " + keyFile + " and " + certificateFile);
}

} // namespace server
