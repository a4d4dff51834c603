// An installation of firmware: one at a time, in a thread of its own.
#pragma once

#include "provider_helper/firmware.h"
#include "Utility/engine/method.h"

#include <cstdint>
#include <utility>

namespace ph::firmware {

// Reads what the BMC takes. Returns false without a session; a platform that has no such function, or fails, takes
// nothing.
bool readUpdate(CIM_FirmwareUpdate& update);

// Whoever holds it may install, whatever the process.
class Turn {
public:
    Turn(); // tries to get it
    ~Turn();
    Turn(Turn&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
    Turn& operator=(Turn&&) = delete;

    explicit operator bool() const { return file_ >= 0; }
    // Notes the job of the installation, and an empty text when it ends: whoever has the next turn finds the job
    // of one whose process was killed, and lets it fail.
    void note(const char* job) const;

private:
    int file_;
};

inline constexpr unsigned longestUri = 1023; // bytes

bool knowsScheme(const char* uri);

// Begins to install what the URI names, and records under the job how far that is. Returns false when it cannot
// begin.
bool begin(Turn turn, const char* uri, const char* job, std::uint32_t largestImage);

// InstallFromURI of the service, for the view of the host too.
MethodAnswer installFromUri(MethodCall& call);

} // namespace ph::firmware
