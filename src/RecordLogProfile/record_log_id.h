// What names the BMC's one event log, and erasing it.
#pragma once

#include <cstddef>

namespace ph {

inline constexpr const char* logName = "IPMI SEL";

// Writes "IPMI:<system name of the service processor> SEL Log". Returns false when that name cannot be had.
bool writeLogInstanceId(char* text, std::size_t size);

// Erases the log, and returns whether that was done.
bool eraseLog();

} // namespace ph
