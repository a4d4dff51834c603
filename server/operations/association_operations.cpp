// Associators, References and their names (DSP0200, 5.3.2.13 to 5.3.2.16).
#include "cimxml/value_writer.h"
#include "operations/class_associations.h"
#include "operations/class_writer.h"
#include "operations/queries.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::XmlWriter;
using Request = broker::Request;

constexpr const char* object = "ObjectName";

// A class of the other namespace is told with its own.
broker::ObjectPath pathOf(const schema::Class& described, const std::string& nameSpace,
                          const std::string& host) {
    const auto& all = described.nameSpaces;
    const bool isHere = all.empty() || std::find(all.begin(), all.end(), nameSpace) != all.end();
    return {.host = host,
            .nameSpace = isHere ? nameSpace : std::string(all.front()),
            .className = std::string(described.name),
            .keys = {}};
}

cimxml::Body returnClasses(const Operation& operation, std::vector<const schema::Class*> classes) {
    const Arguments& arguments = operation.arguments;
    const ClassExtent extent{.withQualifiers = arguments.flag("IncludeQualifiers", false),
                             .withOrigin = arguments.flag("IncludeClassOrigin", false),
                             .properties = arguments.texts("PropertyList")};
    return returnItems(std::move(classes),
                       [extent, nameSpace = operation.nameSpace,
                        host = operation.caller.host](XmlWriter& xml, const schema::Class* each) {
                           xml.element("VALUE.OBJECTWITHPATH", {}, [&] {
                               cimxml::writeFullPath(xml, pathOf(*each, nameSpace, host));
                               writeClass(xml, *each, extent);
                           });
                       });
}

cimxml::Body returnObjects(const Operation& operation, broker::Reply reply) {
    return returnItems(std::move(reply.instances),
                       [write = instanceWriter(operation)](XmlWriter& xml, const broker::Instance& instance) {
                           xml.element("VALUE.OBJECTWITHPATH", {}, [&] {
                               cimxml::writeFullPath(xml, instance.path);
                               write(xml, instance);
                           });
                       });
}

cimxml::Body returnPaths(std::vector<broker::ObjectPath> paths) {
    return returnItems(std::move(paths), [](XmlWriter& xml, const broker::ObjectPath& path) {
        xml.element("OBJECTPATH", {}, [&] { cimxml::writeFullPath(xml, path); });
    });
}

cimxml::Body returnClassPaths(const Operation& operation, const std::vector<const schema::Class*>& classes) {
    std::vector<broker::ObjectPath> paths;
    paths.reserve(classes.size());
    for (const schema::Class* each : classes)
        paths.push_back(pathOf(*each, operation.nameSpace, operation.caller.host));
    return returnPaths(std::move(paths));
}

// What the request asks of classes, where ObjectName names one.
template <Request::Operation kind, auto classes>
cimxml::Body objects(const Operation& operation) {
    if (!operation.arguments.className(object).empty())
        return returnClasses(operation, classes(operation));
    return returnObjects(operation, associate(operation, kind, object));
}
template <Request::Operation kind, auto classes>
cimxml::Body paths(const Operation& operation) {
    if (!operation.arguments.className(object).empty())
        return returnClassPaths(operation, classes(operation));
    return returnPaths(associate(operation, kind, object).paths);
}

constexpr ArgumentRow associatorsArguments[] = {
    {object, ArgumentKind::ObjectName, true},   {"AssocClass", ArgumentKind::ClassName},
    {"ResultClass", ArgumentKind::ClassName},   {"Role", ArgumentKind::Text},
    {"ResultRole", ArgumentKind::Text},         {"IncludeQualifiers", ArgumentKind::Flag},
    {"IncludeClassOrigin", ArgumentKind::Flag}, {"PropertyList", ArgumentKind::Texts}};
constexpr ArgumentRow associatorNamesArguments[] = {{object, ArgumentKind::ObjectName, true},
                                                    {"AssocClass", ArgumentKind::ClassName},
                                                    {"ResultClass", ArgumentKind::ClassName},
                                                    {"Role", ArgumentKind::Text},
                                                    {"ResultRole", ArgumentKind::Text}};
constexpr ArgumentRow referencesArguments[] = {{object, ArgumentKind::ObjectName, true},
                                               {"ResultClass", ArgumentKind::ClassName},
                                               {"Role", ArgumentKind::Text},
                                               {"IncludeQualifiers", ArgumentKind::Flag},
                                               {"IncludeClassOrigin", ArgumentKind::Flag},
                                               {"PropertyList", ArgumentKind::Texts}};
constexpr ArgumentRow referenceNamesArguments[] = {{object, ArgumentKind::ObjectName, true},
                                                   {"ResultClass", ArgumentKind::ClassName},
                                                   {"Role", ArgumentKind::Text}};

} // namespace

std::span<const OperationRow> associationOperations() {
    static constexpr OperationRow rows[] = {
        {"Associators", Access::Read, associatorsArguments,
         objects<Request::Operation::Associators, associatedClasses>},
        {"AssociatorNames", Access::Read, associatorNamesArguments,
         paths<Request::Operation::AssociatorNames, associatedClasses>},
        {"References", Access::Read, referencesArguments,
         objects<Request::Operation::References, referringClasses>},
        {"ReferenceNames", Access::Read, referenceNamesArguments,
         paths<Request::Operation::ReferenceNames, referringClasses>},
    };
    return rows;
}

} // namespace server
