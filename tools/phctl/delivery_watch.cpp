#include "delivery_watch.h"

#include "errors.h"
#include "instance_output.h"

#include <atomic>
#include <csignal>
#include <dlfcn.h>
#include <sstream>
#include <unistd.h>
#include <utility>

namespace phctl {
namespace {

std::atomic<DeliveryWatch*> watch{nullptr};

// A symbol of a library that a provider has brought into the process; nullptr when it has not.
template <class Symbol>
Symbol* symbolOf(const char* library, const char* name) {
    void* loaded = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    return loaded != nullptr ? reinterpret_cast<Symbol*>(dlsym(loaded, name)) : nullptr;
}

// The library calls `replacement` from now on; returns what it called before.
template <class Function>
Function replace(const char* variable, Function replacement) {
    auto* const place = symbolOf<Function>("libProviderHelper.so", variable);
    if (place == nullptr || *place == nullptr)
        throw Failure(std::string("the provider has not linked ") + variable);
    return std::exchange(*place, replacement);
}

int generate(const CMPIInstance* indication, char** text) {
    DeliveryWatch* const current = watch;
    return current != nullptr ? current->generate(indication, text) : -1;
}

int send(const char* url, const char* text) {
    DeliveryWatch* const current = watch;
    return current != nullptr ? current->send(url, text) : -1;
}

} // namespace

DeliveryWatch::DeliveryWatch(Report report) : report_(std::move(report)) {
    auto* const link = symbolOf<void()>("libProviderHelper.so", "PH_Init_Indication");
    if (link == nullptr)
        throw Failure("the provider module is not one of libProviderHelper");
    link();
    watch = this;
    generate_ = replace("GenerateCIMXML", phctl::generate);
    send_ = replace("DeliverIndication", phctl::send);
}

DeliveryWatch::~DeliveryWatch() {
    replace("GenerateCIMXML", generate_);
    replace("DeliverIndication", send_);
    watch = nullptr;
}

// The library's thread takes no exceptions.
int DeliveryWatch::generate(const CMPIInstance* indication, char** text) try {
    indication_ = broker::toInstance(indication);
    return generate_(indication, text);
} catch (const std::exception&) {
    return -1;
}

int DeliveryWatch::send(const char* url, const char* text) {
    std::ostringstream properties;
    printInstance(properties, indication_, {});
    return report({url, false, {{"indication", toJson(indication_)}}, properties.str()}, send_(url, text));
}

int DeliveryWatch::mail(const AlertMailRequest& request) {
    auto* const deliver = symbolOf<decltype(smtp_mail)>("libsmtp.so", "smtp_mail");
    Delivery delivery;
    delivery.to =
        std::string(request.recipient) + " through " + request.server + ':' + std::to_string(request.port);
    delivery.content = {{"subject", request.subject}, {"body", request.body}};
    delivery.text = std::string(request.subject) + '\n';
    return report(std::move(delivery), deliver != nullptr ? deliver(&request) : -1);
}

int DeliveryWatch::report(Delivery delivery, int result) const try {
    delivery.isDelivered = result == 0;
    report_(delivery);
    return result;
} catch (const std::exception&) {
    kill(getpid(), SIGTERM); // nobody reads what is printed
    return result;
}

} // namespace phctl

// The library finds this one before the mail library's.
extern "C" __attribute__((visibility("default"))) int smtp_mail(const AlertMailRequest* request) {
    phctl::DeliveryWatch* const watch = phctl::watch;
    return watch != nullptr ? watch->mail(*request) : -1;
}
