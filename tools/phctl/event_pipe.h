// The pipe on which a BMC tells the indication monitor what to deliver.
#pragma once

#include <platform/sel_event_message.h>

#include <string>

namespace phctl {

// Throws Failure when the pipe is not there, nobody reads from it, or it is full.
void writeToEventPipe(const SelEventMessage& message);

// This process's right to read from the pipe. Readers would share the messages, and the first one to end
// would remove the pipe of the others.
class EventPipeClaim {
public:
    // Makes the pipe where there is none. Throws Failure when it cannot be had, or somebody else reads from
    // it.
    EventPipeClaim();
    ~EventPipeClaim(); // removes the pipe
    EventPipeClaim(const EventPipeClaim&) = delete;
    EventPipeClaim& operator=(const EventPipeClaim&) = delete;

    const std::string& path() const { return path_; }

private:
    bool tryToClaim();
    bool isThePipe() const;

    std::string path_;
    int descriptor_ = -1; // locked
};

} // namespace phctl
