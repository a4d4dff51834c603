#include "Utility/requests/request_texts.h"

#include "provider_helper/utility.h"

#include <cmpimacs.h>
#include <strings.h>

namespace ph {

const char* textOf(const CMPIString* string) {
    return string != nullptr ? CMGetCharsPtr(string, nullptr) : nullptr;
}

const char* textOf(const CMPIData& value) {
    CMPIString* string = nullptr;
    return (value.state & CMPI_nullValue) == 0 && GetStringValue(value, &string) == 0 ? textOf(string)
                                                                                      : nullptr;
}

const char* propertyText(const CMPIInstance* instance, const char* name) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = CMGetProperty(instance, name, &status);
    return status.rc == CMPI_RC_OK ? textOf(data) : nullptr;
}

const char* keyText(const CMPIObjectPath* path, const char* name) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData key = CMGetKey(path, name, &status);
    return status.rc == CMPI_RC_OK && key.type == CMPI_string ? textOf(key.value.string) : nullptr;
}

bool isOfClass(const CMPIObjectPath* path, const char* className) {
    const char* name = textOf(CMGetClassName(path, nullptr));
    return name != nullptr && strcasecmp(name, className) == 0;
}

} // namespace ph
