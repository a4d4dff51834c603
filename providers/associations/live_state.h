// What the library says now, for own properties that no element has the value of.
#pragma once

#include "associations/association.h"

#include <optional>
#include <string>

namespace associations {

// Of one request: each text is read when it is asked for first.
class LiveState {
public:
    // Throws Failure when it cannot be read.
    const std::string& get(Live what);

private:
    std::optional<std::string> bootChoice_;
};

} // namespace associations
