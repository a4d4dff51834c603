// Owner of a CMPI object that shall not outlive its function, or its thread: one that is attached to the
// broker for good never gives objects back by itself.
#pragma once

#include <cmpimacs.h>
#include <memory>

namespace ph {

struct CmpiReleaser {
    template <class Object>
    void operator()(Object* object) const {
        CMRelease(object);
    }
};
template <class Object>
using CmpiPtr = std::unique_ptr<Object, CmpiReleaser>;

} // namespace ph
