#include "class_list.h"

namespace ph {

#define PH_CLASS(X) extern constinit const ClassFamily family_##X;
#include "classes.inc"
#undef PH_CLASS

std::span<const ClassFamily* const> allClasses() {
    static constexpr const ClassFamily* classes[] = {
#define PH_CLASS(X) &family_##X,
#include "classes.inc"
#undef PH_CLASS
    };
    return classes;
}

} // namespace ph
