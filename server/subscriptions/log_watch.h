// New records of the BMC's event log, for those who subscribed.
#pragma once

#include "ipmi/transport.h"
#include "subscriptions/subscription_store.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace server {

// Looks for new records once a second, as long as there are subscriptions. A BMC tells nobody that it has
// one: that is for its own event daemon, in whose place this stands.
class LogWatch {
public:
    using Settings = std::function<ipmi::SessionSettings()>;
    using Deliver = std::function<void(const SelEventMessage& message)>;
    using Log = std::function<void(const std::string& line)>;

    LogWatch(SubscriptionStore& store, Settings settings, Deliver deliver, Log log);
    ~LogWatch(); // ends it

    // Begins with what comes now. Again, nothing happens.
    void begin();

private:
    struct Record {
        std::uint8_t bytes[CIM_SEL_RECORD_SIZE];
    };
    void run(const std::stop_token& stop);
    void look();
    void deliver(const Record& record);

    SubscriptionStore& store_;
    const Settings settings_;
    const Deliver deliver_;
    const Log log_;
    std::unique_ptr<ipmi::Transport> bmc_;
    std::optional<Record> last_;
    std::string lastProblem_;
    std::mutex mutex_;
    std::condition_variable_any wake_;
    std::jthread thread_;
};

} // namespace server
