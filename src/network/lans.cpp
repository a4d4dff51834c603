#include "network/lans.h"
#include "Utility/back-ends/back_ends.h"

#include <algorithm>

namespace ph {
namespace {

Lan findChannel(IPMI20_SESSION_T* session, std::uint8_t index, bool isBond) {
    Lan lan{index, 0, isBond, ""};
    if (CIM_GetChannelNum(session, index, &lan.channel, hookTimeout) != 0)
        lan.channel = 0;
    return lan;
}

} // namespace

std::vector<Lan> listLans(IPMI20_SESSION_T* session) {
    std::vector<Lan> lans;
    CIM_BondInfo bond{};
    if (CIM_IsBondEnabled(session, &bond, hookTimeout) == 0 && bond.enabled == 1) {
        lans.push_back(findChannel(session, bond.lanIndex, true));
    } else {
        std::uint8_t count = 0;
        std::uint8_t indices[CIM_MAX_LANS] = {};
        if (CIM_GetLANCount(session, &count, indices, hookTimeout) != 0)
            count = 0;
        std::for_each_n(indices, std::min<std::size_t>(count, CIM_MAX_LANS),
                        [&](std::uint8_t index) { lans.push_back(findChannel(session, index, false)); });
    }
    return lans;
}

void readName(IPMI20_SESSION_T* session, Lan& lan) {
    if (CIM_GetLANIndex(session, lan.index, lan.interfaceName, hookTimeout) != 0)
        lan.interfaceName[0] = '\0';
    lan.interfaceName[sizeof(lan.interfaceName) - 1] = '\0';
}

MacText readMac(int (*hook)(IPMI20_SESSION_T*, std::uint8_t*, std::uint8_t, int), IPMI20_SESSION_T* session,
                const Lan& lan) {
    std::uint8_t mac[6] = {};
    MacText result{};
    if (hook(session, mac, lan.channel, hookTimeout) == 0)
        ConvertMACNumToMACFormatStr(mac, result.text);
    return result;
}

} // namespace ph
