// serve: the providers behind CIM-XML over HTTP.
#include "alert_delivery.h"
#include "bmc_metrics.h"
#include "commands.h"
#include "database.h"
#include "errors.h"
#include "http/http_library.h"
#include "libraries.h"
#include "operations/interop_classes.h"
#include "provider_output.h"
#include "requests.h"
#include "schema/class_schema.h"
#include "subscriptions/subscription_class.h"
#include "users/bmc_users.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <iostream>
#include <malloc.h>
#include <memory>
#include <optional>
#include <thread>

namespace phctl {
namespace {

struct ServeOptions {
    std::string listen = "127.0.0.1:5988";
    std::string module;
    std::string certificate, key;
    bool generates = false;
    bool bmcUsers = false;
    std::string usersFile;
    unsigned metricsTimeout = 9; // seconds; Prometheus waits for 10 by default
};
using SharedServeOptions = std::shared_ptr<ServeOptions>;

// "127.0.0.1:5988", "[::1]:5988", "bmc:5988"
void readListen(const std::string& text, server::HttpOptions& http) {
    const std::size_t colon = text.rfind(':');
    const std::string digits = colon != std::string::npos ? text.substr(colon + 1) : "";
    if (digits.empty() || digits.size() > 5 || digits.find_first_not_of("0123456789") != std::string::npos ||
        std::stoi(digits) > 65535)
        throw UsageError("expected ADDRESS:PORT instead of " + text);
    http.port = std::stoi(digits);
    http.address = text.substr(0, colon);
    if (http.address.starts_with('[') && http.address.ends_with(']'))
        http.address = http.address.substr(1, http.address.size() - 2);
    if (http.address.empty())
        throw UsageError("--listen has no address");
}

bool isLoopback(const std::string& address) {
    in_addr v4;
    if (inet_pton(AF_INET, address.c_str(), &v4) == 1)
        return ntohl(v4.s_addr) >> 24 == 127;
    return address == "::1" || address == "localhost";
}

// The BMC that the requests go to.
ipmi::SessionSettings bmcSettings() {
    const auto row = sessionRow();
    if (!row)
        throw Failure("there is no BMC whose users could log in");
    return settingsOf(*row);
}

// It stays loaded: objects of its classes serve until the end.
const server::HttpLibrary& httpLibrary() {
    static constexpr char name[] = "libphctl-http.so";
    static const auto* const library = [] {
        void* const loaded = dlopen(installedLibrary(name).c_str(), RTLD_NOW);
        void* const found = loaded != nullptr ? dlsym(loaded, "PH_Http") : nullptr;
        if (found == nullptr)
            throw Failure(std::string("cannot serve: ") + (installedLibrary(name).empty()
                                                               ? std::string(name) + " is not installed"
                                                               : dlerror()));
        return static_cast<const server::HttpLibrary*>(found);
    }();
    return *library;
}

std::shared_ptr<server::Authentication> authentication(const ServeOptions& options) {
    std::unique_ptr<server::Authentication> asked;
    if (!options.usersFile.empty())
        asked = httpLibrary().passwordFile(options.usersFile);
    else if (options.bmcUsers)
        asked = std::make_unique<server::BmcUsers>(bmcSettings);
    else
        return nullptr;
    return httpLibrary().rememberedLogins(std::move(asked));
}

std::shared_ptr<const server::TlsContext> tls(const ServeOptions& options, const std::string& host) {
    if (options.certificate.empty())
        return nullptr;
    namespace fs = std::filesystem;
    if (options.generates && !fs::exists(options.certificate) && !fs::exists(options.key))
        httpLibrary().generateCertificate(options.certificate, options.key, host);
    return httpLibrary().tlsContext(options.certificate, options.key);
}

void log(const std::string& line) {
    std::cerr << line + '\n';
}

// Clients are told the types of the class. Of one that the schema does not know, another module's, any.
std::optional<CMPIType> declaredType(const std::string& className, std::string_view property) {
    const schema::Class* found = schema::find(className);
    if (found == nullptr)
        return CMPI_null;
    const schema::Property* declared = found->property(property);
    return declared != nullptr ? std::optional(declared->type) : std::nullopt;
}

server::HttpOptions httpOptions(const ServeOptions& options) {
    server::HttpOptions http;
    readListen(options.listen, http);
    http.authentication = authentication(options);
    http.tls = tls(options, http.address);
    if (!isLoopback(http.address)) {
        if (http.authentication == nullptr)
            throw UsageError(http.address + " can be reached from other machines: let users log in with "
                                            "--bmc-users or --users-file");
        if (http.tls == nullptr)
            std::cerr
                << "phctl: warning: passwords cross the network unencrypted without --tls-certificate\n";
    }
    http.log = log;
    return http;
}

// Until a signal ends it.
void answer(server::Service& service, const server::HttpOptions& http, const sigset_t& ending) {
    const auto server = httpLibrary().httpServer(service, http);
    std::jthread answering([&] { server->run(); });
    std::cerr << "Listening at " << (http.tls != nullptr ? "https://" : "http://")
              << (http.address.find(':') != std::string::npos ? '[' + http.address + ']' : http.address)
              << ':' << server->port() << std::endl;
    int signal = 0;
    sigwait(&ending, &signal);
    server->stop();
}

int serve(const SharedServeOptions& options) {
    // Connections have a thread each. Heaps of their own would cost 8 MB more once all have worked.
    mallopt(M_ARENA_MAX, 2);
    // Taken below, whichever thread of ours or a provider's runs.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    server::HttpOptions http = httpOptions(*options);
    const auto metrics = bmcMetrics(options->metricsTimeout);
    http.metrics = [&](server::MetricsFormat format, std::chrono::milliseconds patience) {
        return metrics
            ->collect(format == server::MetricsFormat::OpenMetrics ? view::MetricsFormat::OpenMetrics
                                                                   : view::MetricsFormat::Prometheus,
                      patience)
            .text;
    };
    const ProviderOutput redirected;
    auto broker = std::make_unique<broker::Broker>();
    broker->beStrict(declaredType);
    loadProviders(*broker, options->module);
    provideInstanceArrays();
    server::SubscriptionStore subscriptions;
    bool mustStay = false;
    {
        AlertDelivery delivery(subscriptions, *broker, log);
        server::Service service(*broker);
        service.add(std::make_unique<server::ObjectManagerClass>(*broker, PH_VERSION));
        service.add(std::make_unique<server::NameSpaceClass>(*broker));
        service.add(std::make_unique<server::SubscriptionClass>(
            subscriptions, [&](bool isWanted) { delivery.listen(isWanted); }));
        if (!subscriptions.all().empty())
            delivery.listen(true);
        answer(service, http, ending);
        mustStay = delivery.isInUse();
    }
    if (mustStay)
        std::_Exit(done); // nothing is tidied up under the provider's thread
    return done;
}

void addServeOptions(Command command) {
    const auto options = std::make_shared<ServeOptions>();
    command.option("--listen", options->listen, "Address and port; port 0 is one that is free")
        .showsDefault();
    Option certificate =
        command.option("--tls-certificate", options->certificate, "PEM file: answer over TLS alone");
    Option key = command.option("--tls-key", options->key, "PEM file with the certificate's key");
    certificate.needs(key);
    key.needs(certificate);
    command
        .flag("--generate", options->generates,
              "Make the two files, where they are missing, with a self-signed certificate")
        .needs(certificate);
    Option bmcUsers = command.flag(
        "--bmc-users", options->bmcUsers,
        "Users of the BMC log in; operators may call methods of power and log, administrators change all");
    command
        .option("--users-file", options->usersFile,
                "Users of a file log in: lines name:hash:access, the hash as of `openssl passwd -6`, the "
                "access read, operate or administer")
        .existingFile()
        .excludes(bmcUsers);
    command
        .option("--metrics-timeout", options->metricsTimeout,
                "Seconds after which /metrics says that the BMC does not answer")
        .range(1, 600)
        .showsDefault();
    command.option("--module", options->module, "Provider module to load instead of the installed one");
    command.footer("Without --bmc-users and --users-file everybody may do everything: on loopback only.\n"
                   "Example:\n  phctl serve &\n  wbemcli ein http://localhost:5988/root/cimv2:CIM_Sensor");
    command.action([options] { return serve(options); });
}

} // namespace

void addServeCommand(Command program) {
    program.subcommand("serve", "Answer WBEM clients, CIM-XML over HTTP, and Prometheus at /metrics",
                       addServeOptions);
}

} // namespace phctl
