#include "smash-db/network_tables.h"

namespace smash {
namespace {

static_assert(offsetof(StaticIPRow, IPv6AddressType) == 1280 &&
                  offsetof(StaticIPRow, GatewayIPv6Address) == 1288 && sizeof(StaticIPRow) == 1544,
              "layout shared with the library");

constexpr std::array staticIpColumns = {
    SMASH_COLUMN_AS(StaticIPRow, key, "rowKey"),
    SMASH_COLUMN(StaticIPRow, IPv4Address),
    SMASH_COLUMN(StaticIPRow, GatewayIPv4Address),
    SMASH_COLUMN(StaticIPRow, SubnetMask),
    SMASH_COLUMN(StaticIPRow, IPv6Address),
    SMASH_COLUMN(StaticIPRow, IPv6AddressType),
    SMASH_COLUMN(StaticIPRow, IPv6SubnetPrefixLength),
    SMASH_COLUMN(StaticIPRow, GatewayIPv6Address),
};

} // namespace

constexpr TableOf<StaticIPRow> staticIpTable{"static_ip", staticIpColumns, 1};

} // namespace smash
