// OpenEnumerateInstances, PullInstancesWithPath and so on (DSP0200, 5.3.2.24).
#include "cimxml/cim_error.h"
#include "cimxml/value_writer.h"
#include "operations/open_enumerations.h"
#include "operations/queries.h"

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;
using cimxml::XmlWriter;
using Kind = ArgumentKind;
using Request = broker::Request;

constexpr const char* instanceName = "InstanceName";

void checkFilter(const Arguments& arguments) {
    if (!arguments.text("FilterQueryLanguage").empty() || !arguments.text("FilterQuery").empty())
        throw CimError(ErrorCode::QueryLanguageNotSupported, "filter queries are not supported");
    if (arguments.flag("ContinueOnError", false))
        throw CimError(ErrorCode::ContinuationOnErrorNotSupported, "ContinueOnError is not supported");
}

enum class Form { InstancesWithPath, Instances, Paths };

void writeItems(XmlWriter& xml, const Items& items, Form form, const WriteInstance& write) {
    for (const broker::ObjectPath& path : items.paths)
        cimxml::writeFullPath(xml, path);
    for (const broker::Instance& instance : items.instances) {
        if (form == Form::Instances)
            write(xml, instance);
        else
            xml.element("VALUE.INSTANCEWITHPATH", {}, [&] {
                cimxml::writeFullPath(xml, instance.path);
                write(xml, instance);
            });
    }
}

cimxml::Body returnPiece(Piece piece, Form form, WriteInstance write) {
    return [piece = std::move(piece), form, write = std::move(write)](XmlWriter& xml) {
        xml.element("IRETURNVALUE", {}, [&] { writeItems(xml, piece.items, form, write); });
        cimxml::writeParameter(xml, "EndOfSequence", {CMPI_boolean, piece.context.empty()});
        cimxml::writeParameter(xml, "EnumerationContext", {CMPI_string, piece.context});
    };
}

cimxml::Body open(const Operation& operation, Items items, Form form) {
    const Arguments& arguments = operation.arguments;
    // 0 would keep an enumeration open for ever.
    const auto seconds = arguments.number("OperationTimeout");
    const auto timeout = seconds ? std::chrono::seconds(*seconds) : OpenEnumerations::usualTimeout;
    return returnPiece(operation.enumerations.open(std::move(items), form != Form::Paths, operation.nameSpace,
                                                   operation.caller, timeout,
                                                   arguments.number("MaxObjectCount").value_or(0)),
                       form, instanceWriter(operation));
}

cimxml::Body openInstances(const Operation& operation) {
    checkFilter(operation.arguments);
    return open(operation, {.instances = enumerateInstances(operation), .paths = {}},
                Form::InstancesWithPath);
}

cimxml::Body openPaths(const Operation& operation) {
    checkFilter(operation.arguments);
    return open(operation, {.instances = {}, .paths = enumerateNames(operation)}, Form::Paths);
}

template <Request::Operation kind>
cimxml::Body openAssociated(const Operation& operation) {
    checkFilter(operation.arguments);
    broker::Reply reply = associate(operation, kind, instanceName);
    constexpr bool arePaths =
        kind == Request::Operation::AssociatorNames || kind == Request::Operation::ReferenceNames;
    return open(operation, {.instances = std::move(reply.instances), .paths = std::move(reply.paths)},
                arePaths ? Form::Paths : Form::InstancesWithPath);
}

template <Form form>
cimxml::Body pull(const Operation& operation) {
    const Arguments& arguments = operation.arguments;
    return returnPiece(operation.enumerations.pull(arguments.text("EnumerationContext"), form != Form::Paths,
                                                   operation.nameSpace, operation.caller,
                                                   *arguments.number("MaxObjectCount")),
                       form, instanceWriter(operation));
}

cimxml::Body closeEnumeration(const Operation& operation) {
    operation.enumerations.close(operation.arguments.text("EnumerationContext"), operation.nameSpace,
                                 operation.caller);
    return returnNothing();
}

// clang-format off
#define PULL_FILTER                                                                                          \
    {"FilterQueryLanguage", Kind::Text}, {"FilterQuery", Kind::Text}, {"OperationTimeout", Kind::Number},    \
    {"ContinueOnError", Kind::Flag}, {"MaxObjectCount", Kind::Number}
// clang-format on
constexpr ArgumentRow instancesArguments[] = {{"ClassName", Kind::ClassName, true},
                                              {"DeepInheritance", Kind::Flag},
                                              {"IncludeClassOrigin", Kind::Flag},
                                              {"PropertyList", Kind::Texts},
                                              PULL_FILTER};
constexpr ArgumentRow pathsArguments[] = {{"ClassName", Kind::ClassName, true}, PULL_FILTER};
constexpr ArgumentRow associatorsArguments[] = {{instanceName, Kind::InstanceName, true},
                                                {"AssocClass", Kind::ClassName},
                                                {"ResultClass", Kind::ClassName},
                                                {"Role", Kind::Text},
                                                {"ResultRole", Kind::Text},
                                                {"IncludeClassOrigin", Kind::Flag},
                                                {"PropertyList", Kind::Texts},
                                                PULL_FILTER};
constexpr ArgumentRow associatorPathsArguments[] = {{instanceName, Kind::InstanceName, true},
                                                    {"AssocClass", Kind::ClassName},
                                                    {"ResultClass", Kind::ClassName},
                                                    {"Role", Kind::Text},
                                                    {"ResultRole", Kind::Text},
                                                    PULL_FILTER};
constexpr ArgumentRow referencesArguments[] = {
    {instanceName, Kind::InstanceName, true}, {"ResultClass", Kind::ClassName}, {"Role", Kind::Text},
    {"IncludeClassOrigin", Kind::Flag},       {"PropertyList", Kind::Texts},    PULL_FILTER};
constexpr ArgumentRow referencePathsArguments[] = {{instanceName, Kind::InstanceName, true},
                                                   {"ResultClass", Kind::ClassName},
                                                   {"Role", Kind::Text},
                                                   PULL_FILTER};
#undef PULL_FILTER
constexpr ArgumentRow pullArguments[] = {{"EnumerationContext", Kind::Text, true},
                                         {"MaxObjectCount", Kind::Number, true}};
constexpr ArgumentRow closeArguments[] = {{"EnumerationContext", Kind::Text, true}};

constexpr OperationRow rows[] = {
    {"OpenEnumerateInstances", Access::Read, instancesArguments, openInstances},
    {"OpenEnumerateInstancePaths", Access::Read, pathsArguments, openPaths},
    {"OpenAssociatorInstances", Access::Read, associatorsArguments,
     openAssociated<Request::Operation::Associators>},
    {"OpenAssociatorInstancePaths", Access::Read, associatorPathsArguments,
     openAssociated<Request::Operation::AssociatorNames>},
    {"OpenReferenceInstances", Access::Read, referencesArguments,
     openAssociated<Request::Operation::References>},
    {"OpenReferenceInstancePaths", Access::Read, referencePathsArguments,
     openAssociated<Request::Operation::ReferenceNames>},
    {"PullInstancesWithPath", Access::Read, pullArguments, pull<Form::InstancesWithPath>},
    {"PullInstances", Access::Read, pullArguments, pull<Form::Instances>},
    {"PullInstancePaths", Access::Read, pullArguments, pull<Form::Paths>},
    {"CloseEnumeration", Access::Read, closeArguments, closeEnumeration},
};

} // namespace

std::span<const OperationRow> pullOperations() {
    return rows;
}

} // namespace server
