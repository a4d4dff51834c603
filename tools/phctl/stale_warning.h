// Whether what commands say of sensors rests on an old database.
#pragma once

#include "ipmi/transport.h"

namespace phctl {

// Warns when the BMC's sensor data records are newer than the database. The BMC is asked once a process, whichever of
// these is called how often; where it or the database cannot be asked, nothing is said.
void warnIfStale(ipmi::Transport& bmc);
// For commands whose providers open the session: the BMC is asked in that one, so that none is opened for the question.
void askIfStale();
void warnIfStale();

} // namespace phctl
