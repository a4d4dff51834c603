// Delivery of alerts on a virtual BMC, with mail, interop and description libraries of the test's.
#pragma once

#include "managed_bmc.h"
#include "paths.h"
#include "provider_helper/alert_delivery.h"
#include "sensor_rows.h"

#include <functional>

struct FakeDelivery {
    std::map<std::string, std::string> eventTexts; // by entry of the description library
    std::vector<std::string> eventQueries;         // entries that were called

    std::function<int(const CMPIInstance*, char**)> generate;
    std::function<void(const std::string& url, const std::string& text)> send;
    std::function<void(const AlertMailRequest&)> mail;
    std::vector<std::string> debugLines; // "<level> <text>"
};
extern FakeDelivery delivery;

class DeliveryFixture : public ManagedBmc, protected SensorRows {
protected:
    explicit DeliveryFixture(const std::string& model = "{}") : ManagedBmc(model) {
        delivery = {};
        setenv("TZ", "UTC", 1);
    }
    ~DeliveryFixture() override { EXPECT_EQ(handle, nullptr) << "the description library is closed"; }

    // Lays a module of this test at a place where the library looks for one.
    void install(const char* module, const char* absolutePath) const {
        std::filesystem::create_symlink(module, sysroot.place(absolutePath));
    }
    void installEventTexts(const char* module = paths::standInEventTexts) const {
        install(module, "/usr/local/lib/libEventLogDes.so");
    }

    const broker::ObjectPath indicationClass = path("CIM_AlertIndication", {}, "root/interop");
};

// A threshold event, 2024-05-01 12:00:00 UTC: upper critical of sensor 1Ah, a temperature.
inline SelEventMessage thresholdEvent() {
    return {{0x2A, 0x01, 0x02, 0xC0, 0x2E, 0x32, 0x66, 0x20, 0x00, 0x04, 0x01, 0x1A, 0x01, 0x59, 0x50, 0x46},
            7,
            1,
            SEL_EVENT_TO_CIMXML};
}
inline CompactSdr temperature(const char* name, int number = 0x1A) {
    return makeCompactSdr(name, number, 0x01, 0x01);
}
