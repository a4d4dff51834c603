// Switches, address texts and event texts of the platform.
#include "check_platform/probe.h"
#include "check_platform/rows.h"

#include <algorithm>
#include <cstring>
#include <platform/event_descriptions.h>
#include <platform/support.h>
#include <type_traits>

namespace phctl::check {
namespace {

void getFeatures(Probe& probe) {
    Out<CoreFeatures> features("the table");
    if (auto call = probe.call<decltype(RetrieveCoreFeatures)>("", features))
        call.expect(
            std::ranges::none_of(features->words, [](std::uint32_t word) { return word == 0xA5A5A5A5; }),
            "it leaves words of the table as they were");
}

void getFunctions(Probe& probe) {
    Out<PlatformFunctions> table("the table");
    if (auto call = probe.call<decltype(Get_Function_Pointer)>("", table))
        call.expect(table->isFeatureEnabled != nullptr && table->getMacrodefineInt != nullptr &&
                        table->debugOut != nullptr && table->runtimeDebugOut != nullptr,
                    "an entry is NULL");
}

void convertIpv4(Probe& probe) {
    constexpr std::uint8_t longest[4] = {255, 255, 255, 255};
    OutText text("the text", 16);
    if (auto call = probe.call<decltype(ConvertIPnumToStr)>("255.255.255.255", longest, text))
        call.expect(std::strcmp(text, "255.255.255.255") == 0, "the text is another address");
    probe.call<decltype(ConvertIPnumToStr)>("no address", nullptr, text).expectFailure("no address");
}

void convertIpv6(Probe& probe) {
    constexpr std::uint8_t address[16] = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    OutText text("the text", 46);
    if (auto call = probe.call<decltype(ConvertIP6numToStr)>("2001:db8::1", address, text))
        call.expect(std::strcmp(text, "2001:db8::1") == 0, "the text is another one than RFC 5952 has");
    probe.call<decltype(ConvertIP6numToStr)>("no address", nullptr, text).expectFailure("no address");
}

// What nobody knows is not enabled.
void isFeatureEnabled(Probe& probe) {
    auto call = probe.call<decltype(IsFeatureEnabled)>("an unknown name", "PHCTL_CHECKS_THIS");
    call.expect(!call.isMade() || call, "it is not 0");
}

void getNumber(Probe& probe) {
    constexpr int otherwise = 0;
    auto call =
        probe.call<decltype(GetMacrodefine_getint)>("an unknown name", "PHCTL_CHECKS_THIS", otherwise);
    call.expect(!call.isMade() || call, "it is not the default value");
}

// ---- Event texts

constexpr const char* severities[] = {"Ok", "Warning", "Critical", "Non-Recoverable", "Unspecified"};

struct Event {
    const char* words;
    std::uint8_t sensorType, eventType, data;
};
constexpr Event events[] = {
    {"temperature, upper critical going high", 0x01, 0x01, 0x59},
    {"temperature, its end", 0x01, 0x81, 0x59},
    {"severity, to critical from less severe", 0x07, 0x07, 0x02},
    {"a sensor type that is reserved", 0x7F, 0x6F, 0x00},
};

template <class Judge>
void describe(Probe& probe, Judge judge) {
    for (const auto& [words, sensorType, eventType, data] : events) {
        const std::uint8_t record[16] = {1, 0, 0x02,       0, 0,         0,    0, 0x20,
                                         0, 4, sensorType, 1, eventType, data, 0, 0};
        OutText text("the text", EVENT_TEXT_SIZE);
        auto call = probe.call<std::remove_pointer_t<EventText>>(words, record, text);
        if (call)
            judge(call, static_cast<const char*>(text));
        else if (call.isMade())
            call.expect(*static_cast<const char*>(text) == '\0', "it fails and leaves a text");
    }
}

void describeEvent(Probe& probe) {
    describe(probe, [](Call&, const char*) {});
}

void describeSeverity(Probe& probe) {
    describe(probe, [](Call& call, const char* text) {
        call.expect(
            std::ranges::any_of(severities, [=](const char* each) { return std::strcmp(each, text) == 0; }),
            "the text is no severity");
    });
}

constexpr Row support[] = {
    {"RetrieveCoreFeatures", getFeatures},  {"Get_Function_Pointer", getFunctions},
    {"IsFeatureEnabled", isFeatureEnabled}, {"GetMacrodefine_getint", getNumber},
    {"ConvertIPnumToStr", convertIpv4},     {"ConvertIP6numToStr", convertIpv6},
};
constexpr const char* noTexts = "without it, alerts have neither severity nor description";
constexpr Row eventTexts[] = {
    {"FindSensorType", describeEvent, false, noTexts},
    {"AlertSeverityLevel", describeSeverity, false, noTexts},
    {"SELLog", describeEvent, false, noTexts},
};
constexpr Row delivery[] = {{"smtp_mail", nullptr, true, "it would send a mail"}};

constexpr const char* eventLibrary = "/usr/local/lib/libEventLogDes.so";

} // namespace

std::span<const Row> supportRows() {
    return support;
}

std::span<const Row> eventTextRows() {
    return eventTexts;
}

std::span<const Group> allGroups() {
    static const Group groups[] = {
        {"libphsupport.so", supportRows()},   {"libsmashdb.so", databaseRows()},
        {"libCIMAPIHooks.so", sessionRows()}, {"libCIMAPIHooks.so", systemRows()},
        {"libCIMAPIHooks.so", sensorRows()},  {"libCIMAPIHooks.so", logRows()},
        {"libCIMAPIHooks.so", userRows()},    {"libCIMAPIHooks.so", networkRows()},
        {"libCIMAPIHooks.so", alertRows()},   {"libCIMTRZHooks.so", mailRows()},
        {"libCIMOEMHooks.so", nameRows()},    {"libsmtp.so", delivery},
        {eventLibrary, eventTexts},
    };
    return groups;
}

} // namespace phctl::check
