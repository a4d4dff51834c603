#include "delivery_fixture.h"

#include <cstdarg>
#include <cstring>

FakeDelivery delivery;

#pragma GCC visibility push(default)
extern "C" {

void IDBG_LINUXAPP_DbgOut(int level, const char* format, ...) {
    char line[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    delivery.debugLines.push_back(std::to_string(level) + ' ' + line);
}

int smtp_mail(const AlertMailRequest* request) {
    delivery.mail(*request);
    return 0;
}

// What the modules of this test call.
int testEventText(const char* entry, char* text) {
    delivery.eventQueries.emplace_back(entry);
    const auto known = delivery.eventTexts.find(entry);
    std::strcpy(text, known != delivery.eventTexts.end() ? known->second.c_str() : "");
    return known != delivery.eventTexts.end() ? 0 : 1;
}
int testGenerate(const CMPIInstance* indication, char** text) {
    return delivery.generate(indication, text);
}
int testSend(const char* url, const char* text) {
    delivery.send(url, text);
    return 1; // nobody looks at it
}

} // extern "C"
#pragma GCC visibility pop
