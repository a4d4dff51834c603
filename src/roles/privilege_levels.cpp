#include "roles/privilege_levels.h"

#include "Utility/values/dmtf_values.h"

#include <algorithm>

namespace ph {
namespace {

// What the levels allow (IPMI 2.0, 6.8): a callback is requested only; users read; operators do everything but
// configure how the BMC is reached; administrators do that too, users included. What OEM is, the maker says.
constexpr int ofCallback[] = {Activities::Execute, -1};
constexpr int ofUser[] = {Activities::Detect, Activities::Read, -1};
constexpr int ofOperator[] = {Activities::Detect, Activities::Read, Activities::Write, Activities::Execute,
                              -1};
constexpr int ofAdministrator[] = {Activities::Create,
                                   Activities::Delete,
                                   Activities::Detect,
                                   Activities::Read,
                                   Activities::Write,
                                   Activities::Execute,
                                   -1};
constexpr int ofOem[] = {Activities::Other, -1};
constexpr int ofAny[] = {Activities::Other, Activities::Create, Activities::Delete,  Activities::Detect,
                         Activities::Read,  Activities::Write,  Activities::Execute, -1};

constexpr PrivilegeLevel levels[] = {
    {1, "callback", "Callback", ofCallback},
    {2, "user", "User", ofUser},
    {3, "operator", "Operator", ofOperator},
    {administratorLimit, "administrator", "Administrator", ofAdministrator},
    {5, "OEM", "OEM Proprietary", ofOem},
};

template <class Test>
const PrivilegeLevel* find(Test test) {
    const auto* const found = std::ranges::find_if(levels, test);
    return found != std::end(levels) ? found : nullptr;
}

} // namespace

const int* const privilegeActivities = ofAny;

std::span<const PrivilegeLevel> privilegeLevels() {
    return levels;
}

const PrivilegeLevel* findLevel(std::uint8_t limit) {
    return find([=](const PrivilegeLevel& level) { return level.limit == limit; });
}

const PrivilegeLevel* findLevel(std::string_view name) {
    return find([=](const PrivilegeLevel& level) { return level.name == name; });
}

} // namespace ph
