// libsmtp. What sends is loaded for the first mail: libcurl brings some thirty libraries along, which every
// program with libProviderHelper would load at its start.
#include "platform/mail.h"

#include <dlfcn.h>

int smtp_mail(const AlertMailRequest* request) {
    using Send = decltype(&smtp_mail);
    static void* const client = dlopen("libsmtp_client.so", RTLD_NOW);
    static const auto send = client != nullptr ? reinterpret_cast<Send>(dlsym(client, "smtp_mail")) : nullptr;
    return send != nullptr ? send(request) : -1;
}
