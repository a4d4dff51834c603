// The pipe on which a BMC tells the indication monitor what to deliver.
#pragma once

#include <platform/sel_event_message.h>

namespace phctl {

// Throws Failure when the pipe is not there, nobody reads from it, or it is full.
void writeToEventPipe(const SelEventMessage& message);

} // namespace phctl
