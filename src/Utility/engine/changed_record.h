// A modify request carried into the record of the instance that it names.
#pragma once

#include "Utility/engine/current_record.h"

#include <span>

namespace ph {

// A property that clients may change. Its value lies between `least` and `most`: a number, or the bytes of a
// text. Properties of other kinds than uint16, uint32, boolean and text are not settable so.
struct Settable {
    const char* name;
    std::uint32_t least;
    std::uint32_t most;
};

class ChangedRecord {
public:
    explicit ChangedRecord(const ClassFamily& family, const Refusal& missing = noSuchInstance)
        : family_(family), current_(family, missing) {}

    // Reads the record and checks every change before the first is carried out. The status is the refusal of an
    // instance that there is not, of properties that may not be changed and of values that they cannot have.
    CMPIStatus apply(const Request& request, std::span<const Settable> settables);

    bool hasChanges() const { return hasChanges_; }
    template <class Record>
    const Record& as() const {
        return current_.as<Record>();
    }

private:
    const ClassFamily& family_;
    CurrentRecord current_;
    bool hasChanges_ = false;
};

} // namespace ph
