// monitor: hosts the indication provider, and prints what it delivers.
#include "broker/object_manager.h"
#include "commands.h"
#include "delivery_watch.h"
#include "errors.h"
#include "event_pipe.h"
#include "indication_host.h"
#include "instance_output.h"
#include "json_text.h"
#include "provider_output.h"
#include "requests.h"
#include "text_layout.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <unistd.h>

namespace phctl {
namespace {

using nlohmann::ordered_json;

struct MonitorOptions : RequestOptions {
    unsigned count = 0;   // 0: any
    unsigned seconds = 0; // 0: until it is interrupted
    bool subscribe = false;
};
using SharedMonitorOptions = std::shared_ptr<MonitorOptions>;

std::string toLine(const Delivery& delivery) {
    ordered_json json{{"to", delivery.to}, {"delivered", delivery.isDelivered}};
    json.update(delivery.content);
    return jsonLine(json) + '\n';
}

std::string toText(const Delivery& delivery) {
    return (delivery.isDelivered ? "Delivered to " : "Could not deliver to ") + printable(delivery.to) +
           '\n' + delivery.text;
}

Delivery toSubscriber(const broker::Instance& indication) {
    std::ostringstream properties;
    printInstance(properties, indication);
    return {"the subscriber", true, {{"indication", toJson(indication)}}, properties.str()};
}

// The object manager that hosts the provider. The provider's thread goes on until the process ends, wherever
// it is then: what it uses is never taken away.
class Host {
public:
    explicit Host(const MonitorOptions& options)
        : options_(options),
          requester_(options_),
          objectManager_(requester_.broker()),
          watch_(*new DeliveryWatch([this](const Delivery& delivery) { report(delivery); })) {}
    ~Host() = delete;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void begin() {
        broker::Broker& broker = requester_.broker();
        broker.setIndicationHandler(
            [this](const auto&, const auto& indication) { report(toSubscriber(indication)); });
        beginDelivery(broker, options_.subscribe ? Listening::Subscribed : Listening::No);
    }
    bool canWrite() const { return canWrite_; }
    unsigned reported() const { return reported_; }

private:
    // Called by the monitor's thread, and by the one that watches the log.
    void report(const Delivery& delivery) {
        const std::lock_guard lock(reporting_);
        try {
            output_.write(options_.json ? toLine(delivery) : toText(delivery));
        } catch (const Failure&) {
            canWrite_ = false;
        }
        if (++reported_ == options_.count || !canWrite_)
            end();
    }
    // Stops the deliveries.
    [[noreturn]] static void end() {
        kill(getpid(), SIGTERM);
        for (;;)
            pause();
    }

    const MonitorOptions options_;
    Requester requester_;
    const broker::ObjectManager objectManager_;
    const ProviderOutput output_;
    std::mutex reporting_;
    std::atomic<unsigned> reported_ = 0;
    std::atomic<bool> canWrite_ = true;
    DeliveryWatch& watch_;
};

// Waits for one of the signals, and so many seconds at most. Returns false when none came.
bool waitFor(const sigset_t& signals, unsigned seconds) {
    using Clock = std::chrono::steady_clock;
    int signal = 0;
    if (seconds == 0)
        return sigwait(&signals, &signal) == 0;
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    do {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        const timespec time{.tv_sec = left / 1000, .tv_nsec = static_cast<long>(left % 1000 * 1'000'000)};
        signal = sigtimedwait(&signals, nullptr, &time);
    } while (signal == -1 && errno == EINTR && Clock::now() < end);
    return signal != -1;
}

int resultOf(const Host& host, const MonitorOptions& options, bool isEnded) {
    if (!host.canWrite())
        return complain("cannot write the output", failed);
    if (isEnded || host.reported() >= options.count)
        return done;
    return complain("there was not enough time: " + std::to_string(host.reported()) + " of " +
                        std::to_string(options.count) + " alerts came within " +
                        std::to_string(options.seconds) + " s (--timeout)",
                    failed);
}

int monitor(const SharedMonitorOptions& options) {
    // The signals are waited for below, whichever thread of ours or of a provider runs.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    std::optional<EventPipeClaim> pipe(std::in_place);
    provideDelivery();
    static Host& host = *new Host(*options);
    host.begin();
    std::cerr << "Delivering alerts from " << pipe->path()
              << (options->seconds > 0 ? ", for " + std::to_string(options->seconds) + " s at most"
                                       : ", until interrupted")
              << std::endl;
    const bool isEnded = waitFor(ending, options->seconds);
    pipe.reset();
    // The process ends without tidying up what the provider's thread may use.
    std::_Exit(resultOf(host, *options, isEnded));
}

void addMonitorOptions(Command command) {
    const auto options = std::make_shared<MonitorOptions>();
    command.flag("--json", options->json, "Print a line of JSON for each alert");
    command.option("--module", options->module, "Provider module to load instead of the installed one");
    command.option("--count", options->count, "End after so many alerts").range(1, 1000000);
    command.option("--timeout", options->seconds, "End after so many seconds; short of --count, it fails")
        .range(1, 86400);
    command.flag("--subscribe", options->subscribe,
                 "Print what a client of the object manager gets that subscribes to alerts, too: all new "
                 "events of the BMC's log");
    command.footer("Examples:\n  phctl monitor\n  phctl monitor --subscribe\n"
                   "  phctl bmc event 'CPU1 Temp' 9   # in another shell");
    command.action([options] { return monitor(options); });
}

} // namespace

void addMonitorCommand(Command program) {
    program.subcommand("monitor", "Deliver the BMC's alerts, and print them", addMonitorOptions);
}

} // namespace phctl
