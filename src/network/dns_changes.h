// How clients modify settings of DNS: they are read, all values that the request changes are checked and put into them, and
// then they are written at once.
#pragma once

#include "network/dns_values.h"
#include "Utility/requests/request.h"

#include <provider_helper/utility.h>

namespace ph::dns {

// Settings of the BMC that a request changes.
class Changeable {
public:
    virtual bool read() = 0;
    virtual bool write() = 0;
    // Shows them as bytes, by which it is told whether they were changed.
    virtual std::span<const std::uint8_t> bytes() const = 0;

protected:
    ~Changeable() = default;
};

// A property that may be changed. `set` returns nullptr, or what is wrong with the value.
struct Settable {
    const char* name;
    const char* (*set)(Changeable& settings, const CMPIData& value);
};

// Carries the changes of a request into the settings.
CMPIStatus modify(const Request& request, const PHPropertyList& changes, std::span<const Settable> settables,
                  Changeable& settings);

// A property without a value is cleared: it becomes an empty text or list.
bool isCleared(const CMPIData& value);
// Returns nullptr for what is no text.
const char* textOrCleared(const CMPIData& value);
// Returns whether it is a boolean.
bool readFlag(const CMPIData& value, std::uint8_t& flag);

} // namespace ph::dns
