// monitor: hosts the indication provider, and prints what it delivers.
#include "broker/object_manager.h"
#include "commands.h"
#include "delivery_watch.h"
#include "errors.h"
#include "provider_output.h"
#include "requests.h"
#include "text_layout.h"

#include <platform/sel_event_message.h>
#include <platform/sysroot.h>

#include <csignal>
#include <cstring>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

struct MonitorOptions : RequestOptions {
    unsigned count = 0; // 0: until it is interrupted
};
using Options = std::shared_ptr<MonitorOptions>;

constexpr const char* interopLibrary = "/usr/local/lib/libinterop_provider.so";
constexpr const char* descriptionLibrary = "/usr/local/lib/libEventLogDes.so";

fs::path place(const char* absolutePath) {
    char path[4096];
    if (PH_SysrootPath(absolutePath, path, sizeof(path)) != 0)
        throw Failure("PH_SYSROOT is too long");
    return path;
}

// The library that is to lie at this path. Below PH_SYSROOT it is linked to the installed one.
void provideLibrary(const char* absolutePath) {
    const fs::path path = place(absolutePath);
    if (exists(path))
        return;
    const fs::path installed = installedLibrary(path.filename().c_str());
    if (secure_getenv("PH_SYSROOT") == nullptr || installed.empty())
        throw Failure(path.string() + " is missing: alerts cannot be delivered without it");
    create_directories(path.parent_path());
    create_symlink(installed, path);
}

// The library ends a process that cannot have the pipe.
void requirePipe() {
    const fs::path pipe = place(SEL_EVENT_PIPE);
    std::error_code error;
    create_directories(pipe.parent_path(), error);
    if (exists(pipe, error) && !is_fifo(pipe, error))
        throw Failure(pipe.string() + " is not a pipe");
    if (access(exists(pipe, error) ? pipe.c_str() : pipe.parent_path().c_str(), R_OK | W_OK) != 0)
        throw Failure(pipe.string() + ": " + std::strerror(errno));
}

std::string toLine(const Delivery& delivery) {
    ordered_json json{{"to", delivery.to}, {"delivered", delivery.isDelivered}};
    json.update(delivery.content);
    return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + '\n';
}

std::string toText(const Delivery& delivery) {
    return (delivery.isDelivered ? "Delivered to " : "Could not deliver to ") + printable(delivery.to) +
           '\n' + delivery.text;
}

int monitor(const Options& options) {
    requirePipe();
    provideLibrary(interopLibrary);
    provideLibrary(descriptionLibrary);
    // Taken below, whichever thread of ours or a provider's runs.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    Requester requester(*options);
    const broker::ObjectManager objectManager(requester.broker());
    const ProviderOutput output;
    unsigned reported = 0;
    const DeliveryWatch watch([&](const Delivery& delivery) {
        output.write(options->json ? toLine(delivery) : toText(delivery));
        if (++reported == options->count)
            kill(getpid(), SIGTERM);
    });
    const broker::ObjectPath source{
        .host = {}, .nameSpace = "root/interop", .className = "CIM_AlertIndication", .keys = {}};
    const std::string query = "select * from CIM_AlertIndication";
    const broker::Reply begun = requester.broker().subscribe(query, source);
    if (!begun.ok())
        throw Failure("the indication provider refuses: " + broker::codeName(begun.code) + ' ' +
                      begun.message);
    std::cerr << "Delivering alerts from " << place(SEL_EVENT_PIPE).string() << ", until interrupted"
              << std::endl;
    int signal = 0;
    sigwait(&ending, &signal);
    requester.broker().unsubscribe(query, source);
    return done;
}

} // namespace

void addMonitorCommand(CLI::App& app, Chosen& chosen) {
    CLI::App* command = app.add_subcommand("monitor", "Deliver the BMC's alerts, and print them");
    const auto options = std::make_shared<MonitorOptions>();
    command->add_flag("--json", options->json, "Print a line of JSON for each alert");
    command->add_option("--module", options->module, "Provider module to load instead of the installed one");
    command->add_option("--count", options->count, "End after so many alerts")->check(CLI::Range(1, 1000000));
    command->footer("Examples:\n  phctl monitor --count 1\n"
                    "  phctl bmc event ... (in another shell)");
    command->callback([&chosen, options] { chosen = [options] { return monitor(options); }; });
}

} // namespace phctl
