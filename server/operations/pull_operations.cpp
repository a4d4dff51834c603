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
    {"FilterQueryLanguage", ArgumentKind::Text}, {"FilterQuery", ArgumentKind::Text}, {"OperationTimeout", ArgumentKind::Number},    \
    {"ContinueOnError", ArgumentKind::Flag}, {"MaxObjectCount", ArgumentKind::Number}
// clang-format on
constexpr ArgumentRow instancesArguments[] = {{"ClassName", ArgumentKind::ClassName, true},
                                              {"DeepInheritance", ArgumentKind::Flag},
                                              {"IncludeClassOrigin", ArgumentKind::Flag},
                                              {"PropertyList", ArgumentKind::Texts},
                                              PULL_FILTER};
constexpr ArgumentRow pathsArguments[] = {{"ClassName", ArgumentKind::ClassName, true}, PULL_FILTER};
constexpr ArgumentRow openAssociatorsArguments[] = {{instanceName, ArgumentKind::InstanceName, true},
                                                    {"AssocClass", ArgumentKind::ClassName},
                                                    {"ResultClass", ArgumentKind::ClassName},
                                                    {"Role", ArgumentKind::Text},
                                                    {"ResultRole", ArgumentKind::Text},
                                                    {"IncludeClassOrigin", ArgumentKind::Flag},
                                                    {"PropertyList", ArgumentKind::Texts},
                                                    PULL_FILTER};
constexpr ArgumentRow associatorPathsArguments[] = {{instanceName, ArgumentKind::InstanceName, true},
                                                    {"AssocClass", ArgumentKind::ClassName},
                                                    {"ResultClass", ArgumentKind::ClassName},
                                                    {"Role", ArgumentKind::Text},
                                                    {"ResultRole", ArgumentKind::Text},
                                                    PULL_FILTER};
constexpr ArgumentRow openReferencesArguments[] = {{instanceName, ArgumentKind::InstanceName, true},
                                                   {"ResultClass", ArgumentKind::ClassName},
                                                   {"Role", ArgumentKind::Text},
                                                   {"IncludeClassOrigin", ArgumentKind::Flag},
                                                   {"PropertyList", ArgumentKind::Texts},
                                                   PULL_FILTER};
constexpr ArgumentRow referencePathsArguments[] = {{instanceName, ArgumentKind::InstanceName, true},
                                                   {"ResultClass", ArgumentKind::ClassName},
                                                   {"Role", ArgumentKind::Text},
                                                   PULL_FILTER};
#undef PULL_FILTER
constexpr ArgumentRow pullArguments[] = {{"EnumerationContext", ArgumentKind::Text, true},
                                         {"MaxObjectCount", ArgumentKind::Number, true}};
constexpr ArgumentRow closeArguments[] = {{"EnumerationContext", ArgumentKind::Text, true}};

} // namespace

std::span<const OperationRow> pullOperations() {
    static constexpr OperationRow rows[] = {
        {"OpenEnumerateInstances", Access::Read, instancesArguments, openInstances},
        {"OpenEnumerateInstancePaths", Access::Read, pathsArguments, openPaths},
        {"OpenAssociatorInstances", Access::Read, openAssociatorsArguments,
         openAssociated<Request::Operation::Associators>},
        {"OpenAssociatorInstancePaths", Access::Read, associatorPathsArguments,
         openAssociated<Request::Operation::AssociatorNames>},
        {"OpenReferenceInstances", Access::Read, openReferencesArguments,
         openAssociated<Request::Operation::References>},
        {"OpenReferenceInstancePaths", Access::Read, referencePathsArguments,
         openAssociated<Request::Operation::ReferenceNames>},
        {"PullInstancesWithPath", Access::Read, pullArguments, pull<Form::InstancesWithPath>},
        {"PullInstances", Access::Read, pullArguments, pull<Form::Instances>},
        {"PullInstancePaths", Access::Read, pullArguments, pull<Form::Paths>},
        {"CloseEnumeration", Access::Read, closeArguments, closeEnumeration},
    };
    return rows;
}

} // namespace server
