// A request as CMPI hands it over, and the keys of its object.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cstddef>
#include <span>

namespace ph {

// A request that changes something. What it has no use for is NULL.
struct Request {
    const CMPIBroker* broker = nullptr;
    const CMPIContext* context = nullptr;
    const CMPIResult* result = nullptr;
    const CMPIObjectPath* ref = nullptr;
    const CMPIInstance* instance = nullptr; // modify, create
    const char** properties = nullptr;      // modify
    const char* method = nullptr;           // invoke
    const CMPIArgs* in = nullptr;           // invoke
    CMPIArgs* out = nullptr;                // invoke
};
using RequestHandler = CMPIStatus (*)(const Request& request);

inline constexpr std::size_t maxKeys = 8;

// Values of keys in the order of a key list; NULL for a key that is a number.
class KeyValues {
public:
    // Success, or the status of CheckForValidObjectPath.
    CMPIStatus read(const CMPIBroker* broker, const CMPIObjectPath* ref, std::span<const char* const> keys);
    // For requests that do not tell their client which key is wrong.
    bool areRead(const CMPIBroker* broker, const CMPIObjectPath* ref, std::span<const char* const> keys);

    // The caller of an exported function has read them, or passes none.
    void assign(CMPIString* const* values, std::size_t count);

    operator CMPIString**() { return values_; }

private:
    CMPIString* values_[maxKeys] = {};
};

} // namespace ph
