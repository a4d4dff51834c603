// The entry points of the interop library.
#include "interop/export_message.h"
#include "interop/listener.h"
#include "platform/interop.h"

#include <cstring>

extern "C" {
int qom_generate_indication_response(const CMPIInstance* indication, char** text);
int qom_send_indications(const char* url, const char* text);
}

int qom_generate_indication_response(const CMPIInstance* indication, char** text) {
    if (text == nullptr)
        return -1;
    *text = nullptr;
    try {
        if (indication != nullptr)
            *text = strdup(interop::exportMessage(indication).c_str());
    } catch (...) {
        return -1;
    }
    return *text != nullptr ? 0 : -1;
}

int qom_send_indications(const char* url, const char* text) {
    try {
        return url != nullptr && text != nullptr && interop::deliver(url, text) ? 0 : -1;
    } catch (...) {
        return -1;
    }
}
