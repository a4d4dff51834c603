// The record of the instance that a modify request names.
#pragma once

#include "Utility/engine/class_family.h"

#include <provider_helper/utility.h>

namespace ph {

class CurrentRecord {
public:
    explicit CurrentRecord(const ClassFamily& family, const Refusal& missing = noSuchInstance)
        : family_(family), missing_(missing) {}
    ~CurrentRecord() { engine::clean(family_, &record_, record_ != nullptr); }
    CurrentRecord(const CurrentRecord&) = delete;
    CurrentRecord& operator=(const CurrentRecord&) = delete;

    // Reads the record, and sorts out of `allowed` what the request changes of its instance. The status is the refusal of
    // an instance that there is not, and of properties that may not be changed.
    CMPIStatus readChanges(const Request& request, const PHPropertyList& allowed, PHPropertyList& changes);

    void* get() const { return record_; }
    template <class Record>
    const Record& as() const {
        return *static_cast<const Record*>(record_);
    }

private:
    const ClassFamily& family_;
    const Refusal missing_;
    void* record_ = nullptr;
};

} // namespace ph
