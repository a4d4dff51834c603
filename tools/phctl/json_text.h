// JSON as it is written. Texts of a BMC may be no UTF-8: what is none is replaced.
#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace phctl {

void printJson(std::ostream& out, const nlohmann::ordered_json& json);
// Returns it on one line, without the line's end.
std::string jsonLine(const nlohmann::ordered_json& json);

} // namespace phctl
