#include "operations/queries.h"

#include "cimxml/cim_error.h"
#include "cimxml/value_writer.h"
#include "operations/typing.h"

#include <algorithm>
#include <iterator>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;
using Request = broker::Request;

template <class Item>
void append(std::vector<Item>& all, std::vector<Item>&& more) {
    std::move(more.begin(), more.end(), std::back_inserter(all));
}

broker::ObjectPath classPath(const Operation& operation, std::string_view className) {
    return {.host = {}, .nameSpace = operation.nameSpace, .className = std::string(className), .keys = {}};
}

// Asks for a class and for those that derive from it. One of these that cannot be enumerated has nothing to
// add.
template <class Take>
void enumerate(const Operation& operation, Request::Operation kind, const broker::PropertyList& properties,
               Take take) {
    const std::string className = operation.arguments.className("ClassName");
    const auto ask = [&](std::string_view name) {
        take(operation.objects.execute(
            {.operation = kind, .path = classPath(operation, name), .properties = properties},
            operation.caller));
    };
    const schema::Class* found = findClass(className, operation.nameSpace);
    if (found == nullptr)
        return ask(className);
    for (const schema::Class* each : instantiated(*found, operation.nameSpace)) {
        try {
            ask(each->name);
        } catch (const CimError& error) {
            if (each == found || error.code != ErrorCode::NotSupported)
                throw;
        }
    }
}

// The list has only properties of the class that is enumerated, not those that subclasses add.
broker::PropertyList wantedProperties(const Operation& operation) {
    broker::PropertyList wanted = operation.arguments.texts("PropertyList");
    const schema::Class* found = schema::find(operation.arguments.className("ClassName"));
    if (operation.arguments.flag("DeepInheritance", true) || found == nullptr)
        return wanted;
    std::vector<std::string> names;
    for (const schema::Property& property : found->properties)
        if (!wanted || std::any_of(wanted->begin(), wanted->end(), [&](const std::string& name) {
                return broker::sameName(name, property.name);
            }))
            names.emplace_back(property.name);
    return names;
}

} // namespace

std::vector<broker::Instance> enumerateInstances(const Operation& operation) {
    const auto wanted = wantedProperties(operation);
    std::vector<broker::Instance> all;
    enumerate(operation, Request::Operation::EnumerateInstances, wanted, [&](broker::Reply reply) {
        for (broker::Instance& instance : reply.instances)
            limit(instance, wanted);
        append(all, std::move(reply.instances));
    });
    return all;
}

std::vector<broker::ObjectPath> enumerateNames(const Operation& operation) {
    std::vector<broker::ObjectPath> all;
    enumerate(operation, Request::Operation::EnumerateInstanceNames, {},
              [&](broker::Reply reply) { append(all, std::move(reply.paths)); });
    return all;
}

broker::Reply associate(const Operation& operation, Request::Operation request, const char* object) {
    const Arguments& arguments = operation.arguments;
    broker::ObjectPath path = arguments.path(object);
    if (path.keys.empty())
        throw CimError(ErrorCode::InvalidParameter, std::string(object) + " has no keys");
    path.nameSpace = operation.nameSpace;
    findClass(path.className, operation.nameSpace);
    complete(path, operation.nameSpace);
    const auto wanted = arguments.texts("PropertyList");
    broker::Reply reply =
        operation.objects.execute({.operation = request,
                                   .path = std::move(path),
                                   .properties = wanted,
                                   .filter = {.assocClass = arguments.className("AssocClass"),
                                              .resultClass = arguments.className("ResultClass"),
                                              .role = arguments.text("Role"),
                                              .resultRole = arguments.text("ResultRole")}},
                                  operation.caller);
    for (broker::Instance& instance : reply.instances)
        limit(instance, wanted);
    return reply;
}

WriteInstance instanceWriter(const Operation& operation) {
    if (!operation.arguments.flag("IncludeClassOrigin", false))
        return [](cimxml::XmlWriter& xml, const broker::Instance& instance) {
            cimxml::writeInstance(xml, instance);
        };
    return [](cimxml::XmlWriter& xml, const broker::Instance& instance) {
        const schema::Class* found = schema::find(instance.path.className);
        cimxml::writeInstance(xml, instance, [found](const std::string& name) {
            const schema::Property* property = found != nullptr ? found->property(name) : nullptr;
            return std::string(property != nullptr ? property->origin : "");
        });
    };
}

void limit(broker::Instance& instance, const broker::PropertyList& properties) {
    if (!properties)
        return;
    std::erase_if(instance.properties, [&](const broker::NamedValue& property) {
        return std::none_of(properties->begin(), properties->end(),
                            [&](const std::string& name) { return broker::sameName(name, property.name); });
    });
}

} // namespace server
