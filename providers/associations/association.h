// Associations as data: what a class of them declares, and rows that say which elements it associates.
#pragma once

#include <cmpidt.h>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace associations {

// Says where a class is served: with the elements that are managed, in the interop namespace, or in both.
enum class Placement { Implementation, Interop, Both };
inline constexpr const char* implementationNameSpace = "root/cimv2"; // where the request itself says no other
inline constexpr const char* interopNameSpace = PH_INTEROP_NAMESPACE;

struct Declaration {
    const char* name;
    CMPIType type;
};

struct End {
    const char* role;
    const char* className; // that the reference is declared with
};

struct AssociationClass {
    const char* name;
    const char* superclass; // nullptr: none
    End ends[2];
    std::span<const Declaration> properties = {}; // its own, beside the references
    Placement placement = Placement::Implementation;
};

// Instances of a class: all of them, or those whose property begins with a text.
struct Elements {
    constexpr Elements(const char* name = nullptr, const char* restricting = nullptr,
                       const char* beginning = "")
        : className(name), property(restricting), prefix(beginning) {}
    const char* className;
    const char* property;
    const char* prefix;
};

// Whether two elements belong together, by the text of one property of each.
using Relation = bool (*)(std::string_view first, std::string_view second);

struct Meeting {
    const char* properties[2] = {nullptr, nullptr};
    Relation relation = nullptr; // nullptr: any two meet
};

bool isEqual(std::string_view first, std::string_view second);
bool contains(std::string_view first, std::string_view second);

inline constexpr Meeting every{};
consteval Meeting same(const char* first, const char* second) {
    return {{first, second}, isEqual};
}
consteval Meeting containing(const char* first, const char* second) {
    return {{first, second}, contains};
}
consteval Meeting related(const char* first, const char* second, Relation relation) {
    return {{first, second}, relation};
}

using Numbers = std::vector<std::uint64_t>; // none: the property is left out

// What own properties show that no element has: the library is asked for it, once for a request, and only if one
// of these properties is wanted. Each is a text of the library's present state.
enum class Live {
    None,
    HostPower,  // the DMTF PowerState of the host; empty where the BMC does not tell
    BootChoice, // InstanceIDs of the boot configuration that is the next one, a blank, and its source
};

// What the value of an own property is made of: a property of each end, where they are named, and what is live.
struct Texts {
    std::string_view first, second, live;
};

// The value of a property of the association itself.
struct OwnValue {
    const char* name;
    const char* properties[2];
    Numbers (*numbers)(const Texts& texts);
    Live live = Live::None;
};

struct Row {
    const AssociationClass* associationClass;
    Elements ends[2]; // in the order of the class's ends
    Meeting meeting = every;
    std::span<const OwnValue> values = {};
};

std::span<const Row> rows();
// The classes of the rows.
std::span<const AssociationClass* const> allAssociations();

} // namespace associations
