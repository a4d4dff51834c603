// Options that name a BMC and how to reach it.
#pragma once

#include "ipmi/transport.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

namespace phctl {

class SessionOptions {
public:
    void addTo(CLI::App& command);

    bool isGiven() const { return isLocal_ || virtual_->count() > 0 || lan_->count() > 0; }
    // Returns the BMC that the options name, if they name one. Throws UsageError.
    std::optional<ipmi::SessionSettings> settings() const;

private:
    std::string password() const;

    CLI::Option* virtual_ = nullptr;
    CLI::Option* lan_ = nullptr;
    std::string stateFile_, host_, user_, password_, passwordFile_, passwordVariable_;
    std::string workarounds_, privilege_ = "administrator";
    bool isLocal_ = false;
    int cipherSuite_ = 3;
    int retransmission_ = 0;
};

} // namespace phctl
