// Libraries that are opened at run time, and where they lie.
#pragma once

#include <filesystem>

namespace phctl {

// Returns where an absolute path is: below PH_SYSROOT, if that is set. Throws Failure.
std::filesystem::path placeOf(const char* absolutePath);

// Finds a library of this program's installation or build tree, in its library folder, or those of provider
// modules and of its own there. Empty when it is in neither.
std::filesystem::path installedLibrary(const char* name);

// The library that is to lie at this path. Below PH_SYSROOT it is linked to the installed one. Throws
// Failure, which says what cannot be done without it.
void provideLibrary(const char* absolutePath, const char* consequence);

} // namespace phctl
