// Stands for the event-description library: the test program has the texts.
#include "test_symbol.h"

#include <cstdint>

namespace {

int text(const char* entry, const std::uint8_t* record, char* text) {
    return testSymbol<int (*)(const char*, const std::uint8_t*, char*)>("testEventText")(entry, record, text);
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {
int FindSensorType(const uint8_t* record, char* result) {
    return text("FindSensorType", record, result);
}
#ifndef WITHOUT_SEVERITY
int AlertSeverityLevel(const uint8_t* record, char* result) {
    return text("AlertSeverityLevel", record, result);
}
#endif
int SELLog(const uint8_t* record, char* result) {
    return text("SELLog", record, result);
}
}
#pragma GCC visibility pop
