// The users of the BMC itself.
#pragma once

#include "http/authentication.h"
#include "ipmi/transport.h"

#include <functional>

namespace server {

// A user may log in who is enabled on the channel that the BMC is asked through; the privilege limit there
// says what for: user, operator, administrator (IPMI 2.0, 22.26 to 22.30).
class BmcUsers : public Authentication {
public:
    // `settings` names the BMC.
    explicit BmcUsers(std::function<ipmi::SessionSettings()> settings) : settings_(std::move(settings)) {}

    Access check(const std::string& user, const std::string& password) override;

private:
    const std::function<ipmi::SessionSettings()> settings_;
};

} // namespace server
