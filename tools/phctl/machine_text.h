// The virtual BMC's description as text.
#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>

namespace phctl {

// Prints an object per part: its plain values as "name = value", and each array of objects as a table.
void printMachine(std::ostream& out, const nlohmann::ordered_json& machine);

} // namespace phctl
