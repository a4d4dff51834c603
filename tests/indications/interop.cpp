// Stands for the interop library: the test program renders and sends.
#include "platform/interop.h"

#pragma GCC visibility push(default)
extern "C" {
// Weak, so that the linker does not look for them here.
__attribute__((weak)) int testGenerate(const CMPIInstance* indication, char** text);
__attribute__((weak)) int testSend(const char* url, const char* text);

int qom_generate_indication_response(const CMPIInstance* indication, char** text) {
    return testGenerate(indication, text);
}
int qom_send_indications(const char* url, const char* text) {
    return testSend(url, text);
}
}
#pragma GCC visibility pop
