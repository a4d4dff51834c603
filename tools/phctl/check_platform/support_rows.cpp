// The platform's switches and address texts.
#include "check_platform/probe.h"
#include "check_platform/rows.h"

#include <algorithm>
#include <cstring>
#include <platform/support.h>

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

constexpr Row support[] = {
    {"RetrieveCoreFeatures", getFeatures},  {"Get_Function_Pointer", getFunctions},
    {"IsFeatureEnabled", isFeatureEnabled}, {"GetMacrodefine_getint", getNumber},
    {"ConvertIPnumToStr", convertIpv4},     {"ConvertIP6numToStr", convertIpv6},
};

} // namespace

std::span<const Row> supportRows() {
    return support;
}

} // namespace phctl::check
