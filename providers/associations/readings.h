// What own properties of associations are read from.
#pragma once

#include "associations/association.h"

#include <map>

namespace associations {

// What a request has read, each once.
class Readings {
public:
    // None where the BMC does not tell.
    const Numbers& read(Reading reading);

private:
    std::map<Reading, Numbers> read_;
};

} // namespace associations
