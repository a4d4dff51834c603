// Who sent a request.
#include "provider_helper/utility.h"

#include <cmpimacs.h>

int GetUserForAuthentication(const void*, const CMPIContext* context, const char** user) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData principal = CMGetContextEntry(context, "CMPIPrincipal", &status);
    const char* text = nullptr;
    if (status.rc == CMPI_RC_OK && principal.type == CMPI_string && principal.value.string != nullptr)
        text = CMGetCharsPtr(principal.value.string, nullptr);
    else if (status.rc == CMPI_RC_OK && principal.type == CMPI_chars)
        text = principal.value.chars;
    if (text == nullptr)
        return -1;
    *user = text;
    return 0;
}
