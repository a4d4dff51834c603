#include "delivery_watch.h"

#include "errors.h"
#include "instance_output.h"

#include <atomic>
#include <cstdlib>
#include <dlfcn.h>
#include <sstream>
#include <utility>

namespace phctl {
namespace {

std::atomic<DeliveryWatch*> currentWatch{nullptr};

// The SONAME is how the loader knows the library, wherever it was found.
constexpr const char* providerHelper = "libProviderHelper.so.0";

// Finds a symbol of a library that a provider has brought into the process; nullptr when there is none.
template <class Symbol>
Symbol* symbolOf(const char* library, const char* name) {
    void* loaded = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    return loaded != nullptr ? reinterpret_cast<Symbol*>(dlsym(loaded, name)) : nullptr;
}

// Makes the library call `replacement` from now on; returns what it called before.
template <class Function>
Function replace(const char* variable, Function replacement) {
    auto* const place = symbolOf<Function>(providerHelper, variable);
    if (place == nullptr || *place == nullptr)
        throw Failure(std::string("the provider has not linked ") + variable);
    return std::exchange(*place, replacement);
}

int generate(const CMPIInstance* indication, char** text) {
    DeliveryWatch* const current = currentWatch;
    return current != nullptr ? current->generate(indication, text) : -1;
}

int send(const char* url, const char* text) {
    DeliveryWatch* const current = currentWatch;
    return current != nullptr ? current->send(url, text) : -1;
}

Delivery toDelivery(const std::string& url, const broker::Instance& indication) {
    std::ostringstream properties;
    printInstance(properties, indication);
    return {url, false, {{"indication", toJson(indication)}}, properties.str()};
}

} // namespace

DeliveryWatch::DeliveryWatch(Report report) : report_(std::move(report)) {
    auto* const link = symbolOf<void()>(providerHelper, "PH_Init_Indication");
    if (link == nullptr)
        throw Failure("the provider module is not one of libProviderHelper");
    link();
    currentWatch = this;
    generate_ = replace("GenerateCIMXML", phctl::generate);
    send_ = replace("DeliverIndication", phctl::send);
}

// Reports the result of a delivery, which `describe` puts into words.
template <class Describe>
int DeliveryWatch::report(int result, Describe describe) const noexcept {
    try {
        Delivery delivery = describe();
        delivery.isDelivered = result == 0;
        report_(delivery);
    } catch (...) { // NOLINT(bugprone-empty-catch): without memory an alert is delivered, but not reported
    }
    return result;
}

int DeliveryWatch::generate(const CMPIInstance* indication, char** text) noexcept try {
    indication_ = broker::toInstance(indication);
    return generate_(indication, text);
} catch (...) {
    return -1;
}

int DeliveryWatch::send(const char* url, const char* text) noexcept {
    return report(send_(url, text), [&] { return toDelivery(url, indication_); });
}

void DeliveryWatch::post(const std::string& url, const CMPIInstance* indication) const noexcept {
    char* text = nullptr;
    const int result = generate_(indication, &text) == 0 ? send_(url.c_str(), text) : -1;
    std::free(text);
    report(result, [&] { return toDelivery(url, broker::toInstance(indication)); });
}

int DeliveryWatch::mail(const AlertMailRequest& request) noexcept {
    auto* const deliver = symbolOf<decltype(smtp_mail)>("libsmtp.so", "smtp_mail");
    return report(deliver != nullptr ? deliver(&request) : -1, [&] {
        return Delivery{std::string(request.recipient) + " through " + request.server + ':' +
                            std::to_string(request.port),
                        false,
                        {{"subject", request.subject}, {"body", request.body}},
                        std::string(request.subject) + '\n'};
    });
}

} // namespace phctl

// The library finds this one before the mail library's.
extern "C" __attribute__((visibility("default"))) int smtp_mail(const AlertMailRequest* request) {
    phctl::DeliveryWatch* const watch = phctl::currentWatch;
    return watch != nullptr ? watch->mail(*request) : -1;
}
