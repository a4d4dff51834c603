#include "operations/interop_classes.h"

#include "cimxml/cim_error.h"
#include "operations/catalog.h"

#include <algorithm>
#include <unistd.h>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;
using Kind = broker::Request::Operation;

constexpr const char* systemClass = "CIM_SPComputerSystem";
constexpr const char* managerClass = "CIM_ObjectManager";
constexpr const char* brand = "provider-helper";

broker::Value text(std::string value) {
    return {CMPI_string, std::move(value)};
}

broker::Value number(CMPIType type, std::uint64_t value) {
    return {type, value};
}

} // namespace

broker::Reply ReadOnlyClass::execute(const broker::Request& request, const Caller&) {
    std::vector<broker::Instance> all = instances();
    broker::Reply reply{.done = true};
    switch (request.operation) {
    case Kind::EnumerateInstanceNames:
        for (broker::Instance& each : all)
            reply.paths.push_back(std::move(each.path));
        return reply;
    case Kind::GetInstance:
        std::erase_if(all,
                      [&](const broker::Instance& each) { return !isSameInstance(each.path, request.path); });
        if (all.empty())
            throw CimError(ErrorCode::NotFound, "there is no such instance");
        break;
    case Kind::EnumerateInstances:
        break;
    default:
        throw CimError(ErrorCode::NotSupported, std::string(className_) + " cannot be changed");
    }
    reply.instances = std::move(all);
    return reply;
}

broker::Instance ReadOnlyClass::make(const broker::NamedValues& properties) const {
    broker::Instance instance;
    instance.path.nameSpace = interopNameSpace;
    instance.path.className = className_;
    for (const schema::Property& declared : requireClass(className_, interopNameSpace).properties) {
        const broker::Value* given = broker::find(properties, declared.name);
        broker::NamedValue value{std::string(declared.name),
                                 given != nullptr ? *given : broker::Value{declared.type, {}}};
        if (declared.isKey)
            instance.path.keys.push_back(value);
        instance.properties.push_back(std::move(value));
    }
    return instance;
}

std::string ReadOnlyClass::systemName() const {
    const auto reply = broker_.enumerateInstanceNames(
        {.host = {}, .nameSpace = elementNameSpace, .className = systemClass, .keys = {}});
    if (reply.ok() && !reply.paths.empty())
        if (const auto* name = broker::find(reply.paths.front().keys, "Name"); name != nullptr)
            return broker::toText(*name);
    char host[256] = "";
    gethostname(host, sizeof host - 1);
    return host;
}

std::vector<broker::Instance> ObjectManagerClass::instances() const {
    constexpr std::uint64_t enabled = 2, ok = 2;
    return {make({{"SystemCreationClassName", text(systemClass)},
                  {"SystemName", text(systemName())},
                  {"CreationClassName", text(managerClass)},
                  {"Name", text(brand)},
                  {"ElementName", text(brand)},
                  {"Caption", text("CIM-XML server")},
                  {"Description", text(std::string(brand) + " CIM-XML server version " + version_)},
                  {"OperationalStatus", {CMPI_uint16A, broker::Value::Array{number(CMPI_uint16, ok)}}},
                  {"EnabledState", number(CMPI_uint16, enabled)},
                  {"Started", {CMPI_boolean, true}},
                  {"GatherStatisticalData", {CMPI_boolean, false}}})};
}

std::vector<broker::Instance> NameSpaceClass::instances() const {
    constexpr std::uint64_t unknown = 0;
    const std::string system = systemName();
    std::vector<broker::Instance> all;
    for (const std::string& name : nameSpaces())
        all.push_back(make({{"SystemCreationClassName", text(systemClass)},
                            {"SystemName", text(system)},
                            {"ObjectManagerCreationClassName", text(managerClass)},
                            {"ObjectManagerName", text(brand)},
                            {"CreationClassName", text("CIM_Namespace")},
                            {"Name", text(name)},
                            {"ClassInfo", number(CMPI_uint16, unknown)},
                            {"ClassType", number(CMPI_uint16, unknown)},
                            {"ElementName", text(name)}}));
    return all;
}

} // namespace server
