// The session row of the SMASH database, whose numbers are texts.
#pragma once

#include "ipmi/transport.h"

#include <platform/smash_db.h>

namespace hooks {

// Reads the numbers as the library does before it creates a session: a privilege level of 0 is that of an administrator.
ipmi::SessionSettings settingsOf(const IPMISessionInfo& row);

} // namespace hooks
