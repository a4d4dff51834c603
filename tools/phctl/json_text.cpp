#include "json_text.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace phctl {
namespace {

std::string toText(const nlohmann::ordered_json& json, int indentation) {
    return json.dump(indentation, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

void printJson(std::ostream& out, const nlohmann::ordered_json& json) {
    out << toText(json, 2) << '\n';
}

std::string jsonLine(const nlohmann::ordered_json& json) {
    return toText(json, -1);
}

} // namespace phctl
