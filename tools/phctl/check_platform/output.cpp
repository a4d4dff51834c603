#include "check_platform/output.h"

#include <algorithm>
#include <cstdlib>

namespace phctl::check {

Output::Output(std::string name, std::size_t size)
    : name_(std::move(name)), size_(size), bytes_(size + 2 * guardSize) {}

void Output::preset(const void* value) {
    const auto* const bytes = static_cast<const std::uint8_t*>(value);
    preset_.assign(bytes, bytes + size_);
}

void Output::fill(std::uint8_t pattern) {
    pattern_ = pattern;
    std::ranges::fill(bytes_, pattern);
    std::ranges::copy(preset_, bytes_.begin() + guardSize);
}

bool Output::areGuardsIntact() const {
    const auto isPattern = [this](std::uint8_t byte) { return byte == pattern_; };
    return std::all_of(bytes_.begin(), bytes_.begin() + guardSize, isPattern) &&
           std::all_of(bytes_.end() - guardSize, bytes_.end(), isPattern);
}

bool Output::isUntouched() const {
    return preset_.empty() && std::all_of(bytes_.begin() + guardSize, bytes_.end() - guardSize,
                                          [this](std::uint8_t byte) { return byte == pattern_; });
}

std::string OutText::fault() const {
    return faultOfText(name(), {static_cast<const char*>(data()), size_});
}

std::string faultOfText(const std::string& name, std::string_view field) {
    const std::size_t length = field.find('\0');
    if (length == std::string::npos)
        return name + " does not end within its " + std::to_string(field.size()) + " bytes";
    const std::string text(field.substr(0, length));
    if (std::mbstowcs(nullptr, text.c_str(), 0) == static_cast<std::size_t>(-1)) // see useUtf8
        return name + " is not UTF-8";
    return {};
}

} // namespace phctl::check
