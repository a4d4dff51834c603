#include "associations/class_hierarchy.h"

#include <algorithm>
#include <iterator>
#include <strings.h>

namespace associations {
namespace {

struct Derivation {
    const char* className;
    const char* superclass; // nullptr: none
    Placement placement;
};

// The classes that are served, and those above them.
constexpr Derivation derivations[] = {
#include "superclasses.inc"
};

const Derivation* find(const char* className) {
    const auto* const row = std::ranges::find_if(
        derivations, [&](const Derivation& each) { return isSameName(each.className, className); });
    return row != std::end(derivations) ? row : nullptr;
}

const char* superclassOf(const char* className) {
    const Derivation* const row = find(className);
    return row != nullptr ? row->superclass : nullptr;
}

} // namespace

bool isSameName(const char* left, const char* right) {
    return strcasecmp(left, right) == 0;
}

bool isA(const char* className, const char* ancestor) {
    for (; className != nullptr; className = superclassOf(className))
        if (isSameName(className, ancestor))
            return true;
    return false;
}

Placement placementOf(const char* className) {
    const Derivation* const row = find(className);
    return row != nullptr ? row->placement : Placement::Implementation;
}

} // namespace associations
