// What the library says now, for own properties that no element has the value of.
#pragma once

#include "associations/association.h"

#include <map>
#include <string>

namespace associations {

// The texts of one request. Each is read when it is asked for first.
class LiveState {
public:
    // Throws Failure when it cannot be read and nothing can do without it.
    const std::string& get(Live what);

private:
    std::map<Live, std::string> texts_;
};

} // namespace associations
