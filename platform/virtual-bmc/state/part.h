// What a part of the machine is made of: fields in JSON, and commands as rows of a table. See parts.h.
#pragma once

#include "ipmi/command.h"
#include "ipmi/message.h"

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <span>

namespace vbmc {

using Json = nlohmann::ordered_json; // members in the order in which they were written

class Fields;
class State;
struct Place;

// Reads the request and writes the answer behind its completion code, which is the result. A handler that
// succeeds may have edited parts of the state; what one that fails has edited is undone.
using Handler = std::uint8_t (*)(State& state, ipmi::Reader request, ipmi::Writer& answer);

// Privileges of sessions (IPMI 2.0, table 22-18).
constexpr std::uint8_t userLevel = 2, administratorLevel = 4;

struct Command {
    ipmi::CommandCode code;
    std::size_t leastRequest; // bytes; a shorter one is answered with C7h
    Handler handler;
    std::uint8_t leastPrivilege = 0; // of the session; one with less is answered with D4h
};

} // namespace vbmc
