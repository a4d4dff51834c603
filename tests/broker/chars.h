// A text as CMPI_chars values are passed.
#pragma once

#include <cmpidt.h>

inline const CMPIValue* chars(const char* value) {
    return reinterpret_cast<const CMPIValue*>(value);
}
