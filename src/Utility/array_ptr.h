// Owner of a CMPI array that does not outlive its function.
#pragma once

#include <cmpimacs.h>
#include <memory>

namespace ph {

struct ArrayReleaser {
    void operator()(CMPIArray* array) const { CMRelease(array); }
};
using ArrayPtr = std::unique_ptr<CMPIArray, ArrayReleaser>;

} // namespace ph
