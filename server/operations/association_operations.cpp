// Associators, References and their names (DSP0200, 5.3.2.13 to 5.3.2.16).
#include "cimxml/value_writer.h"
#include "operations/queries.h"

namespace server {
namespace {

using cimxml::XmlWriter;
using Kind = ArgumentKind;
using Request = broker::Request;

constexpr const char* object = "ObjectName";

cimxml::Body returnObjects(const Operation& operation, broker::Reply reply) {
    return returnItems(std::move(reply.instances),
                       [write = instanceWriter(operation)](XmlWriter& xml, const broker::Instance& instance) {
                           xml.element("VALUE.OBJECTWITHPATH", {}, [&] {
                               cimxml::writeFullPath(xml, instance.path);
                               write(xml, instance);
                           });
                       });
}

cimxml::Body returnPaths(broker::Reply reply) {
    return returnItems(std::move(reply.paths), [](XmlWriter& xml, const broker::ObjectPath& path) {
        xml.element("OBJECTPATH", {}, [&] { cimxml::writeFullPath(xml, path); });
    });
}

cimxml::Body associators(const Operation& operation) {
    return returnObjects(operation, associate(operation, Request::Operation::Associators, object));
}
cimxml::Body references(const Operation& operation) {
    return returnObjects(operation, associate(operation, Request::Operation::References, object));
}
cimxml::Body associatorNames(const Operation& operation) {
    return returnPaths(associate(operation, Request::Operation::AssociatorNames, object));
}
cimxml::Body referenceNames(const Operation& operation) {
    return returnPaths(associate(operation, Request::Operation::ReferenceNames, object));
}

constexpr ArgumentRow associatorsArguments[] = {
    {object, Kind::ObjectName, true},   {"AssocClass", Kind::ClassName},
    {"ResultClass", Kind::ClassName},   {"Role", Kind::Text},
    {"ResultRole", Kind::Text},         {"IncludeQualifiers", Kind::Flag},
    {"IncludeClassOrigin", Kind::Flag}, {"PropertyList", Kind::Texts}};
constexpr ArgumentRow associatorNamesArguments[] = {{object, Kind::ObjectName, true},
                                                    {"AssocClass", Kind::ClassName},
                                                    {"ResultClass", Kind::ClassName},
                                                    {"Role", Kind::Text},
                                                    {"ResultRole", Kind::Text}};
constexpr ArgumentRow referencesArguments[] = {
    {object, Kind::ObjectName, true},  {"ResultClass", Kind::ClassName},   {"Role", Kind::Text},
    {"IncludeQualifiers", Kind::Flag}, {"IncludeClassOrigin", Kind::Flag}, {"PropertyList", Kind::Texts}};
constexpr ArgumentRow referenceNamesArguments[] = {
    {object, Kind::ObjectName, true}, {"ResultClass", Kind::ClassName}, {"Role", Kind::Text}};

constexpr OperationRow rows[] = {
    {"Associators", Access::Read, associatorsArguments, associators},
    {"AssociatorNames", Access::Read, associatorNamesArguments, associatorNames},
    {"References", Access::Read, referencesArguments, references},
    {"ReferenceNames", Access::Read, referenceNamesArguments, referenceNames},
};

} // namespace

std::span<const OperationRow> associationOperations() {
    return rows;
}

} // namespace server
