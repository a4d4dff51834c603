// Who may log in, and what they may do then.
#pragma once

#include "operations/caller.h"

#include <string>

namespace server {

class Authentication {
public:
    virtual ~Authentication() = default;
    // Access::None where the password does not fit. From several threads at once.
    virtual Access check(const std::string& user, const std::string& password) = 0;
};

} // namespace server
