// Whose root the providers work on: they change files and run commands as if they were on the BMC.
#pragma once

#include "ipmi/transport.h"

#include <string>

namespace phctl {

// Why the providers must not serve this BMC with `root` as PH_SYSROOT (NULL where it is not set); empty when
// they may. A BMC over LAN and a virtual one are never the machine that phctl runs on. The BMC behind a local
// device is that machine, unless the machine is a host, which has a BMC but is none.
std::string whyNotHere(const ipmi::SessionSettings& settings, const char* root, bool isHost);

// Throws Failure for a BMC that is another machine than the root's: one machine's reboot and files in /conf
// are not another's.
void requirePrivateRoot(const ipmi::SessionSettings& settings);

} // namespace phctl
