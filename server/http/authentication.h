// Who may log in, and what they may do then.
#pragma once

#include "operations/caller.h"

#include <string>

namespace server {

class Authentication {
public:
    virtual ~Authentication() = default;
    // Returns Access::None where the password does not fit. Several threads may call it at once.
    virtual Access check(const std::string& user, const std::string& password) = 0;
};

} // namespace server
