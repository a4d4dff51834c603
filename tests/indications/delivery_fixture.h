// Delivery of alerts with every neighbour of the library replaced: platform, mail, interop and description
// libraries. Sensors and sessions are those of fake_platform.h.
#pragma once

#include "broker/broker.h"
#include "fake_platform.h"
#include "provider_helper/alert_delivery.h"

#include <functional>
#include <gmock/gmock.h>
#include <sysroot_fixture.h>

struct FakeServer {
    bool isReadable = true;
    CIM_SMTPInfo info{};
    std::string address;
    std::uint8_t addressV6[16] = {};
};

struct FakeDelivery {
    // Mail hooks, by the secondary server's turn.
    FakeServer servers[2];
    std::map<int, std::uint8_t> users;             // of e-mail destinations, by selector
    std::map<int, std::string> addresses;          // by user
    std::map<std::string, std::string> listeners;  // URLs by name
    std::map<std::string, int> messageIds;         // by description
    std::map<std::string, std::string> eventTexts; // by entry of the description library
    std::vector<std::string> eventQueries;         // entries that were called

    std::function<int(const CMPIInstance*, char**)> generate;
    std::function<void(const std::string& url, const std::string& text)> send;
    std::function<void(const AlertMailRequest&)> mail;
    std::vector<std::string> debugLines; // "<level> <text>"
};
extern FakeDelivery delivery;

class DeliveryFixture : public SysrootFixture {
protected:
    DeliveryFixture();
    ~DeliveryFixture() override;

    // Lays a module of this test at a place where the library looks for one.
    void install(const char* module, const char* absolutePath) const;
    void installEventTexts() const;

    static broker::ObjectPath path(const char* nameSpace, const char* className) {
        return {.host = {}, .nameSpace = nameSpace, .className = className, .keys = {}};
    }

    broker::Broker broker;
};

// A threshold event, 2024-05-01 12:00:00 UTC: upper critical of sensor 1Ah, a temperature.
inline SelEventMessage thresholdEvent() {
    return {{0x2A, 0x01, 0x02, 0xC0, 0x2E, 0x32, 0x66, 0x20, 0x00, 0x04, 0x01, 0x1A, 0x01, 0x59, 0x50, 0x46},
            7,
            1,
            SEL_EVENT_TO_CIMXML};
}

// A sensor's row with this ElementName's parts.
CompactSdr sensorRow(const char* name, int number);
