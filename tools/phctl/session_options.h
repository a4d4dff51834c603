// Options that name a BMC and how to reach it.
#pragma once

#include "command_line.h"
#include "ipmi/transport.h"

#include <optional>
#include <string>

namespace phctl {

class SessionOptions {
public:
    void addTo(Command command);

    bool isGiven() const { return isLocal_ || virtual_.isGiven() || lan_.isGiven(); }
    // Returns the BMC that the options name, if they name one. Throws UsageError.
    std::optional<ipmi::SessionSettings> settings() const;

private:
    std::string password() const;

    Option virtual_;
    Option lan_;
    std::string stateFile_, host_, user_, password_, passwordFile_, passwordVariable_;
    std::string workarounds_, privilege_ = "administrator";
    bool isLocal_ = false;
    int cipherSuite_ = 3;
    int retransmission_ = 0;
};

} // namespace phctl
