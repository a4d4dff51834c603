// The bytes of an SMBIOS table.
#pragma once

#include "virtual-bmc/host/smbios.h"

namespace vbmc {

// Makes an entry point of SMBIOS 3.3 and behind it the table, as dmidecode dumps them. Throws Error for a text that is too long
// or has a control character.
std::vector<std::uint8_t> smbiosImage(const Smbios& smbios, const Place& place);

} // namespace vbmc
