// How many of many like cases are tried: all of them natively, each nth (PH_SAMPLING) where a program takes ten times as
// long, sanitized or on an emulated processor.
#pragma once

#include <algorithm>
#include <cstdlib>

inline unsigned sampling() {
    const char* text = std::getenv("PH_SAMPLING");
    return text != nullptr ? std::max(1U, static_cast<unsigned>(std::strtoul(text, nullptr, 10))) : 1;
}
