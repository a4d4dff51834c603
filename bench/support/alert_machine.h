// The monitor thread with the libraries that it opens, on a virtual BMC.
#pragma once

#include "broker/broker.h"
#include "broker/object_manager.h"
#include "provider_helper/alert_delivery.h"
#include "support/contest.h"

#include <string>
#include <vector>

namespace bench {

// It is never destroyed: the monitor works on it until the process ends.
class AlertMachine {
public:
    static AlertMachine& only();

    // Makes the BMC and its database, with listeners CIMXML-1, CIMXML-2 and so on at these URLs.
    void make(int sensors, const std::vector<std::string>& listeners) const;
    // Hands the monitor an upper critical event of sensor 1, a temperature. Waits while the pipe is full.
    bool write(int listener, std::uint16_t recordId) const;
    static SelEventMessage event(int listener, std::uint16_t recordId);

private:
    AlertMachine();

    PrivateRoot root_;
    broker::Broker broker_;
    broker::ObjectManager objectManager_{broker_};
    int pipe_ = -1;
};

} // namespace bench
