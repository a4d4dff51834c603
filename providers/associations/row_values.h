// The values of the associations' own properties, as rows name them.
#pragma once

#include "associations/association.h"

#include <charconv>
#include <string_view>
#include <system_error>

namespace associations {

template <std::uint64_t... values>
Numbers fixed(const Texts&) {
    return {values...};
}

// What is not known is left out.
inline Numbers liveNumber(const Texts& texts) {
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(texts.live.data(), texts.live.data() + texts.live.size(), number);
    return error == std::errc() ? Numbers{number} : Numbers{};
}

// DMTF IsCurrent and IsNext: 1 it is, 2 it is not. An address comes from the setting with the same
// AddressOrigin, and what the BMC uses now it also uses after its next start.
inline Numbers usesSetting(const Texts& origins) {
    return {origins.first == origins.second ? 1U : 2U};
}

// A setting of a client is used while the client is enabled: EnabledState 2.
inline Numbers isUsed(const Texts& states) {
    return {states.first == "2" ? 1U : 2U};
}

// The first of several gateways or servers of a LAN, "DNS Server 1 of eth0", is the one that is asked first.
inline Numbers isFirst(const Texts& names) {
    return {contains(names.first, " 1 of ") ? 1U : 0U};
}

// Of each boot configuration: whether it is the next one, 3 for a single use.
template <std::uint64_t is>
Numbers isNextBoot(const Texts& texts) {
    return {texts.live.starts_with(texts.second) ? is : 2U};
}
// The sources of a configuration that it does not boot from have no place in its order: 0.
inline Numbers placeInBootOrder(const Texts& texts) {
    const bool isChosen = texts.live.starts_with(texts.first) && texts.live.ends_with(texts.second) &&
                          texts.live.size() == texts.first.size() + 1 + texts.second.size();
    return {isChosen ? 1U : 0U};
}

inline constexpr OwnValue manages[] = {{"ElementEffects", {}, fixed<5>}};
// What a job does to an element: 3, it is not at its clients' service for a while; 4, it is not what it was.
inline constexpr OwnValue disturbsElement[] = {{"ElementEffects", {}, fixed<3>}};
inline constexpr OwnValue altersElement[] = {{"ElementEffects", {}, fixed<4>}};
// The BMC that answers is on. What state was asked for is not recorded: 0, unknown.
inline constexpr OwnValue processorPower[] = {{"PowerState", {}, fixed<2>},
                                              {"RequestedPowerState", {}, fixed<0>}};
inline constexpr OwnValue hostPower[] = {{"PowerState", {}, liveNumber, Live::HostPower},
                                         {"RequestedPowerState", {}, fixed<0>}};
// Which setting a BMC was delivered with is not known: 0.
inline constexpr OwnValue addressSetting[] = {{"IsDefault", {}, fixed<0>},
                                              {"IsCurrent", {"AddressOrigin", "AddressOrigin"}, usesSetting},
                                              {"IsNext", {"AddressOrigin", "AddressOrigin"}, usesSetting}};
inline constexpr OwnValue clientSetting[] = {{"IsDefault", {}, fixed<0>},
                                             {"IsCurrent", {"EnabledState", nullptr}, isUsed},
                                             {"IsNext", {"EnabledState", nullptr}, isUsed}};
inline constexpr OwnValue isDefaultAccess[] = {{"IsDefault", {"ElementName", nullptr}, isFirst}};
// What the host booted from is not known to the BMC: 0.
inline constexpr OwnValue lastingBootUse[] = {
    {"IsDefault", {}, fixed<1>},
    {"IsCurrent", {}, fixed<0>},
    {"IsNext", {nullptr, "InstanceID"}, isNextBoot<1>, Live::BootChoice}};
inline constexpr OwnValue nextBootUse[] = {
    {"IsDefault", {}, fixed<2>},
    {"IsCurrent", {}, fixed<0>},
    {"IsNext", {nullptr, "InstanceID"}, isNextBoot<3>, Live::BootChoice}};
inline constexpr OwnValue bootOrder[] = {
    {"AssignedSequence", {"InstanceID", "InstanceID"}, placeInBootOrder, Live::BootChoice}};
// The service is set so now, and stays so. How it was delivered is not recorded.
inline constexpr OwnValue onlySetting[] = {
    {"IsDefault", {}, fixed<0>}, {"IsCurrent", {}, fixed<1>}, {"IsNext", {}, fixed<1>}};
inline constexpr OwnValue isPrimary[] = {{"PrimaryOS", {}, fixed<1>}};
inline constexpr OwnValue isInstalled[] = {{"ElementSoftwareStatus", {}, fixed<2, 6>}}; // current, installed
inline constexpr OwnValue firstOfSequence[] = {{"AssignedSequence", {}, fixed<1>}};

} // namespace associations
