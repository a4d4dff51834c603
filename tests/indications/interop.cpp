// Stands for the interop library: the test program renders and sends.
#include "platform/interop.h"
#include "test_symbol.h"

#pragma GCC visibility push(default)
extern "C" {
int qom_generate_indication_response(const CMPIInstance* indication, char** text) {
    return testSymbol<GenerateIndicationResponse>("testGenerate")(indication, text);
}
int qom_send_indications(const char* url, const char* text) {
    return testSymbol<SendIndications>("testSend")(url, text);
}
}
#pragma GCC visibility pop
