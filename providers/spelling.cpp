#include "spelling.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <strings.h>

namespace spelling {
namespace {

// In the order of strcasecmp, and there for the compiler alone: the library has one text of all names, as every pointer
// would be relocated whenever it is loaded, and cost it twelve bytes.
constexpr std::string_view listedNames[] = {
#include "names.inc"
};

consteval std::size_t lengthOfNames() {
    std::size_t length = 0;
    for (const std::string_view name : listedNames)
        length += name.size() + 1;
    return length;
}

struct NameList {
    std::array<char, lengthOfNames()> text{};
    std::array<std::uint16_t, std::size(listedNames)> starts{};

    // A zero follows each.
    constexpr std::string_view operator[](std::size_t number) const {
        const std::size_t next = number + 1 < starts.size() ? starts[number + 1] : text.size();
        return {text.data() + starts[number], next - starts[number] - 1};
    }
};

constexpr NameList names = [] {
    static_assert(lengthOfNames() <= 0xFFFF);
    NameList packed;
    std::size_t end = 0;
    for (std::size_t i = 0; i < std::size(listedNames); ++i) {
        packed.starts[i] = static_cast<std::uint16_t>(end);
        std::ranges::copy(listedNames[i], packed.text.begin() + static_cast<std::ptrdiff_t>(end));
        end += listedNames[i].size() + 1;
    }
    return packed;
}();

// Numbers of names.
struct Key {
    std::uint16_t className;
    std::uint16_t name;
};
constexpr Key keys[] = {
#include "keys.inc"
};

// The number of a name in any spelling; that behind the last where there is none.
std::size_t placeOf(const char* name) {
    std::size_t first = 0;
    for (std::size_t end = names.starts.size(); first < end;) {
        const std::size_t middle = first + (end - first) / 2;
        if (strcasecmp(names[middle].data(), name) < 0)
            first = middle + 1;
        else
            end = middle;
    }
    return first < names.starts.size() && strcasecmp(names[first].data(), name) == 0 ? first
                                                                                     : names.starts.size();
}

bool isSpelled(const std::string& name) {
    return spelled(name.c_str()) == name;
}

} // namespace

const char* spelled(const char* name) {
    const std::size_t place = placeOf(name);
    return place < names.starts.size() ? names[place].data() : name;
}

std::string withoutPrefix(const std::string& className) {
    constexpr const char prefix[] = "PH_";
    constexpr std::size_t length = sizeof(prefix) - 1;
    return strncasecmp(className.c_str(), prefix, length) == 0 ? "CIM_" + className.substr(length) : "";
}

std::vector<const char*> keysOf(const char* className) {
    std::vector<const char*> found;
    for (const Key& key : keys)
        if (names[key.className] == className)
            found.push_back(names[key.name].data());
    return found;
}

Path::Path(const CMPIBroker* broker, const CMPIObjectPath* path) : Spelled(path) {
    const std::string given = objects::classNameOf(path);
    const std::string own = withoutPrefix(given);
    const std::string& className = own.empty() ? given : own;
    const auto keys = objects::keysOf(path);
    if (own.empty() && isSpelled(className) && std::ranges::all_of(keys, isSpelled, &objects::Property::name))
        return;
    copy_ = objects::makePath(broker, objects::nameSpaceOf(path).c_str(), spelled(className.c_str()));
    for (const objects::Property& key : keys)
        objects::addKey(copy_.get(), spelled(key.name.c_str()), key.data);
}

Instance::Instance(const CMPIBroker* broker, const CMPIObjectPath* path, const CMPIInstance* instance)
    : Spelled(instance) {
    const auto properties = objects::propertiesOf(instance);
    if (std::all_of(properties.begin(), properties.end(),
                    [](const objects::Property& each) { return isSpelled(each.name); }))
        return;
    copy_ = objects::makeInstance(broker, path);
    for (const objects::Property& each : properties)
        objects::setProperty(copy_.get(), spelled(each.name.c_str()), each.data);
}

Names::Names(const char** given) : isGiven_(given != nullptr) {
    for (; given != nullptr && *given != nullptr; ++given)
        names_.push_back(spelled(*given));
    names_.push_back(nullptr);
}

} // namespace spelling
