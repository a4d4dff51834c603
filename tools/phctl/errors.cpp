#include "errors.h"

#include "text_layout.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace phctl {
namespace {

bool isJson = false;

// Texts of a BMC may be no UTF-8.
void print(const nlohmann::ordered_json& json) {
    std::cerr << json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

} // namespace

void complainInJson() {
    isJson = true;
}

int complain(const std::string& text, int status) {
    if (isJson)
        print({{"error", text}, {"status", status}});
    else
        std::cerr << "phctl: " << printable(text) << '\n';
    return status;
}

void warn(const std::string& text) {
    if (isJson)
        print({{"warning", text}});
    else
        std::cerr << "phctl: warning: " << printable(text) << '\n';
}

} // namespace phctl
