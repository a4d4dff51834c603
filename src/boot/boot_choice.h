// The boot configurations and sources that there are, and the BMC's boot flags, which say what is chosen.
#pragma once

#include "provider_helper/boot.h"
#include "Utility/back-ends/back_ends.h"

#include <cstdint>
#include <span>

namespace ph::boot {

struct Configuration {
    const char* instanceId;
    const char* elementName;
    bool isPersistent;
};
std::span<const Configuration> configurations();
const Configuration* findConfiguration(const char* instanceId); // nullptr: none, also without a text

struct Source {
    const char* instanceId;
    const char* elementName;
    const char* structuredBootString; // nullptr: DMTF has no word for it
    std::uint8_t device;              // boot device selector
};
std::span<const Source> sources();
const Source* findSource(const char* instanceId);
const Source* findSourceByString(const char* structuredBootString);

// The boot flags, read and changed in one session.
class Flags {
public:
    bool read() { return session_.open() && CIM_GetBootFlags(session_.get(), &flags_, hookTimeout) == 0; }
    bool areThere() const { return flags_.isSupported != 0; }
    // Returns the device of flags that hold; without such flags there is none.
    std::uint8_t device() const {
        return flags_.isValid != 0 ? flags_.device : std::uint8_t{CIM_BOOT_NO_OVERRIDE};
    }
    // Without flags that hold, the lasting configuration is the next one.
    bool isNext(const Configuration& configuration) const {
        return configuration.isPersistent == (flags_.isValid == 0 || flags_.isPersistent != 0);
    }

    // Writes flags of this configuration that hold.
    bool set(const Configuration& configuration, std::uint8_t device) {
        return write(
            {.isSupported = 1, .isValid = 1, .isPersistent = configuration.isPersistent, .device = device});
    }
    // Lets none hold; of flags that do not, nothing is written.
    bool clear() { return flags_.isValid == 0 || write({}); }

private:
    bool write(const CIM_BootFlags& flags) {
        return CIM_SetBootFlags(session_.get(), &flags, hookTimeout) == 0;
    }

    IpmiSession session_;
    CIM_BootFlags flags_{};
};

// Sets the flags of a configuration to a device, which makes it the next one. Without a device its flags are
// cleared, and those of the other one stay. Returns false when the BMC has no flags or does not take them.
bool changeOrder(const Configuration& configuration, std::uint8_t device);

// Appends a record of each row with `append(records, row)`, if the BMC has boot flags: 0 or -1.
template <class Records, class Row>
int appendAll(Records& records, std::span<const Row> rows, bool (*append)(Records&, const Row&)) {
    Flags flags;
    if (!flags.read())
        return -1;
    for (const Row& row : rows)
        if (flags.areThere() && !append(records, row))
            return -1;
    return 0;
}

} // namespace ph::boot
