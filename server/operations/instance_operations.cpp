// EnumerateInstances, GetInstance and so on (DSP0200, 5.3.2.2 to 5.3.2.10).
#include "cimxml/cim_error.h"
#include "cimxml/value_writer.h"
#include "operations/queries.h"
#include "operations/typing.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;
using cimxml::XmlWriter;
using Request = broker::Request;

broker::ObjectPath instancePath(const Operation& operation, broker::ObjectPath path) {
    path.nameSpace = operation.nameSpace;
    findClass(path.className, operation.nameSpace);
    complete(path, operation.nameSpace);
    return path;
}

cimxml::Body runEnumerateInstances(const Operation& operation) {
    return returnItems(enumerateInstances(operation),
                       [write = instanceWriter(operation)](XmlWriter& xml, const broker::Instance& instance) {
                           xml.element("VALUE.NAMEDINSTANCE", {}, [&] {
                               cimxml::writeInstanceName(xml, instance.path);
                               write(xml, instance);
                           });
                       });
}

cimxml::Body runEnumerateNames(const Operation& operation) {
    return returnItems(enumerateNames(operation), cimxml::writeInstanceName);
}

cimxml::Body getInstance(const Operation& operation) {
    const auto wanted = operation.arguments.texts("PropertyList");
    broker::Reply reply =
        operation.objects.execute({.operation = Request::Operation::GetInstance,
                                   .path = instancePath(operation, operation.arguments.path("InstanceName")),
                                   .properties = wanted},
                                  operation.caller);
    if (reply.instances.empty())
        throw CimError(ErrorCode::NotFound, "there is no such instance");
    reply.instances.resize(1);
    limit(reply.instances.front(), wanted);
    return returnItems(std::move(reply.instances), instanceWriter(operation));
}

cimxml::Body createInstance(const Operation& operation) {
    broker::Instance instance = operation.arguments.instance("NewInstance");
    instance.path.nameSpace = operation.nameSpace;
    const schema::Class* found = findClass(instance.path.className, operation.nameSpace);
    complete(instance, operation.nameSpace);
    // A new instance's path has the keys that it is given.
    if (found != nullptr) {
        instance.path.keys.clear();
        for (const schema::Property& property : found->properties)
            if (const broker::Value* value = broker::find(instance.properties, property.name);
                property.isKey && value != nullptr && !value->isNull())
                instance.path.keys.push_back({std::string(property.name), *value});
    }
    broker::Reply reply = operation.objects.execute(
        {.operation = Request::Operation::CreateInstance, .path = instance.path, .instance = instance},
        operation.caller);
    if (reply.paths.empty())
        throw CimError(ErrorCode::Failed, "the provider returned no path of the new instance");
    reply.paths.resize(1);
    return returnItems(std::move(reply.paths), cimxml::writeInstanceName);
}

// Finds what a client changes that sends back the whole instance that it got: properties whose values differ
// from the present ones. Keys are part of the path.
void keepChanges(const Operation& operation, const schema::Class& found, broker::Instance& instance) {
    const broker::Reply now = operation.objects.execute(
        {.operation = Request::Operation::GetInstance, .path = instance.path}, operation.caller);
    std::erase_if(instance.properties, [&](const broker::NamedValue& property) {
        const schema::Property* declared = found.property(property.name);
        const broker::Value* value =
            now.instances.empty() ? nullptr : broker::find(now.instances.front().properties, property.name);
        const bool isSame = value != nullptr ? *value == property.value : property.value.isNull();
        return isSame || (declared != nullptr && declared->isKey);
    });
}

cimxml::Body modifyInstance(const Operation& operation) {
    broker::Instance instance = operation.arguments.instance("ModifiedInstance");
    if (instance.path.keys.empty())
        throw CimError(ErrorCode::InvalidParameter, "ModifiedInstance has no path");
    instance.path = instancePath(operation, std::move(instance.path));
    complete(instance, operation.nameSpace);
    broker::PropertyList changed = operation.arguments.texts("PropertyList");
    limit(instance, changed);
    if (!changed) {
        if (const schema::Class* found = schema::find(instance.path.className);
            found != nullptr && found->modifies) {
            keepChanges(operation, *found, instance);
            if (instance.properties.empty())
                return returnNothing();
        }
        changed.emplace();
        for (const auto& property : instance.properties)
            changed->push_back(property.name);
    }
    operation.objects.execute({.operation = Request::Operation::ModifyInstance,
                               .path = instance.path,
                               .instance = instance,
                               .properties = changed},
                              operation.caller);
    return returnNothing();
}

cimxml::Body deleteInstance(const Operation& operation) {
    operation.objects.execute({.operation = Request::Operation::DeleteInstance,
                               .path = instancePath(operation, operation.arguments.path("InstanceName"))},
                              operation.caller);
    return returnNothing();
}

constexpr ArgumentRow enumerateInstancesArguments[] = {
    {"ClassName", ArgumentKind::ClassName, true}, {"LocalOnly", ArgumentKind::Flag},
    {"DeepInheritance", ArgumentKind::Flag},      {"IncludeQualifiers", ArgumentKind::Flag},
    {"IncludeClassOrigin", ArgumentKind::Flag},   {"PropertyList", ArgumentKind::Texts}};
constexpr ArgumentRow enumerateNamesArguments[] = {{"ClassName", ArgumentKind::ClassName, true}};
constexpr ArgumentRow getInstanceArguments[] = {{"InstanceName", ArgumentKind::InstanceName, true},
                                                {"LocalOnly", ArgumentKind::Flag},
                                                {"IncludeQualifiers", ArgumentKind::Flag},
                                                {"IncludeClassOrigin", ArgumentKind::Flag},
                                                {"PropertyList", ArgumentKind::Texts}};
constexpr ArgumentRow createArguments[] = {{"NewInstance", ArgumentKind::Instance, true}};
constexpr ArgumentRow modifyArguments[] = {{"ModifiedInstance", ArgumentKind::Instance, true},
                                           {"IncludeQualifiers", ArgumentKind::Flag},
                                           {"PropertyList", ArgumentKind::Texts}};
constexpr ArgumentRow deleteArguments[] = {{"InstanceName", ArgumentKind::InstanceName, true}};

} // namespace

std::span<const OperationRow> instanceOperations() {
    static constexpr OperationRow rows[] = {
        {"EnumerateInstances", Access::Read, enumerateInstancesArguments, runEnumerateInstances},
        {"EnumerateInstanceNames", Access::Read, enumerateNamesArguments, runEnumerateNames},
        {"GetInstance", Access::Read, getInstanceArguments, getInstance},
        {"CreateInstance", Access::Administer, createArguments, createInstance},
        {"ModifyInstance", Access::Administer, modifyArguments, modifyInstance},
        {"DeleteInstance", Access::Administer, deleteArguments, deleteInstance},
    };
    return rows;
}

} // namespace server
