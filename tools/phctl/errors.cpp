#include "errors.h"

#include "json_text.h"
#include "text_layout.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace phctl {
namespace {

bool isJson = false;

} // namespace

void complainInJson() {
    isJson = true;
}

int complain(const std::string& text, int status) {
    if (isJson)
        std::cerr << jsonLine({{"error", text}, {"status", status}}) << '\n';
    else
        std::cerr << "phctl: " << printable(text) << '\n';
    return status;
}

void warn(const std::string& text) {
    if (isJson)
        std::cerr << jsonLine({{"warning", text}}) << '\n';
    else
        std::cerr << "phctl: warning: " << printable(text) << '\n';
}

} // namespace phctl
