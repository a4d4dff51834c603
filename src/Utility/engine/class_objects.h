// The CMPI objects that records of a class become.
#pragma once

#include "Utility/engine/class_family.h"

#include <memory>

namespace ph::engine {

// Makes CMPI objects for a request on `ref`.
struct Maker {
    Maker(const ClassFamily& family, const CMPIBroker* cmpiBroker, const CMPIObjectPath* ref);

    const CMPIBroker* broker;
    const char* nameSpace;
    bool hasNameSpace;
    // A broker frees what it made when the request has ended, which is late for a class that streams because
    // it has so many records: there an object goes as soon as the broker has taken over what it holds.
    bool releasesEarly;
};

// Gives an object of the request back to the broker, where that is not left to the broker.
struct EarlyRelease {
    bool wanted;
    template <class Object>
    void operator()(Object* object) const {
        if (wanted)
            CMRelease(object);
    }
};
template <class Object>
using Temporary = std::unique_ptr<Object, EarlyRelease>;

// Every key is a text.
inline const char* keyText(const Property& key, const void* record) {
    return static_cast<const char*>(record) + key.offset;
}

// Both return nullptr when the broker fails or a key is empty.
Temporary<CMPIObjectPath> buildPath(const ClassFamily& family, const Maker& maker, const void* record);
Temporary<CMPIInstance> buildInstance(const ClassFamily& family, const Maker& maker, const char** properties,
                                      const void* record);

} // namespace ph::engine
