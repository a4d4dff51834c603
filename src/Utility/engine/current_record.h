// The record of the instance that a modify request names.
#pragma once

#include "Utility/engine/class_family.h"

namespace ph {

class CurrentRecord {
public:
    explicit CurrentRecord(const ClassFamily& family) : family_(family) {}
    ~CurrentRecord() { engine::clean(family_, &record_, record_ != nullptr); }
    CurrentRecord(const CurrentRecord&) = delete;
    CurrentRecord& operator=(const CurrentRecord&) = delete;

    // Returns whether the class has the instance.
    bool find(const Request& request) {
        KeyValues keys;
        return keys.areRead(request.broker, request.ref, family_.keys) &&
               engine::get(family_, &record_, keys) == 0;
    }
    // Makes the whole instance; nullptr, with a status, when it cannot be made.
    const CMPIInstance* makeInstance(const Request& request, CMPIStatus& status) const {
        return engine::makeInstance(family_, request.broker, request.ref, nullptr, record_, &status);
    }
    void* get() const { return record_; }

private:
    const ClassFamily& family_;
    void* record_ = nullptr;
};

} // namespace ph
