// What the library's monitor thread delivers, seen from the object manager that hosts it.
#pragma once

#include "broker/broker.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <platform/interop.h>
#include <platform/mail.h>
#include <string>

namespace phctl {

// Tells what became of one alert.
struct Delivery {
    std::string to; // "http://192.0.2.1:5988/", "admin@example.org through 192.0.2.2:25"
    bool isDelivered = false;
    nlohmann::ordered_json content;
    std::string text; // the same for people
};

// Stands between the library and those who deliver for it: the interop library, whose functions the library
// calls through variables, and the mail library, whose function it finds in this program first. At most one
// exists. It never ends, because the monitor thread that calls it never does.
class DeliveryWatch {
public:
    // Called by the monitor thread, which goes on when it throws.
    using Report = std::function<void(const Delivery&)>;

    // Has the library link the interop library first: the provider's monitor thread then finds it linked, and
    // no alert passes unseen. Throws Failure when the library cannot.
    explicit DeliveryWatch(Report report);
    ~DeliveryWatch() = delete;
    DeliveryWatch(const DeliveryWatch&) = delete;
    DeliveryWatch& operator=(const DeliveryWatch&) = delete;

    int generate(const CMPIInstance* indication, char** text) noexcept;
    int send(const char* url, const char* text) noexcept;
    int mail(const AlertMailRequest& request) noexcept;

private:
    template <class Describe>
    int report(int result, Describe describe) const noexcept;

    Report report_;
    GenerateIndicationResponse generate_ = nullptr;
    SendIndications send_ = nullptr;
    broker::Instance indication_; // between generate and send
};

} // namespace phctl
