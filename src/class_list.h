// All classes that the library serves.
#pragma once

#include "Utility/engine/class_family.h"

#include <span>

namespace ph {

std::span<const ClassFamily* const> allClasses();

} // namespace ph
