// GetClass, EnumerateClasses and so on (DSP0200, 5.3.2.1, 5.3.2.11 and 5.3.2.12), and qualifiers.
#include "cimxml/cim_error.h"
#include "operations/class_writer.h"
#include "operations/operation.h"
#include "operations/qualifiers.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;
using cimxml::XmlWriter;
ClassExtent extentOf(const Arguments& arguments) {
    return {.isLocal = arguments.flag("LocalOnly", true),
            .withQualifiers = arguments.flag("IncludeQualifiers", true),
            .withOrigin = arguments.flag("IncludeClassOrigin", false),
            .properties = arguments.texts("PropertyList")};
}

cimxml::Body getClass(const Operation& operation) {
    const schema::Class& found =
        requireClass(operation.arguments.className("ClassName"), operation.nameSpace);
    return returnItems(std::vector{&found},
                       [extent = extentOf(operation.arguments)](XmlWriter& xml, const schema::Class* each) {
                           writeClass(xml, *each, extent);
                       });
}

// The subclasses of the class that is named, or those without a superclass: direct ones, or with
// DeepInheritance all.
std::vector<const schema::Class*> subclasses(const Operation& operation) {
    const std::string ancestor = operation.arguments.className("ClassName");
    const bool isDeep = operation.arguments.flag("DeepInheritance", false);
    if (!ancestor.empty())
        requireClass(ancestor, operation.nameSpace);
    std::vector<const schema::Class*> classes;
    for (const schema::Class* each : classesIn(operation.nameSpace)) {
        const bool isOne = isDeep ? ancestor.empty() || (!broker::sameName(each->name, ancestor) &&
                                                         schema::isSubclass(each->name, ancestor))
                                  : broker::sameName(each->superclass, ancestor);
        if (isOne)
            classes.push_back(each);
    }
    std::sort(classes.begin(), classes.end(),
              [](const auto* left, const auto* right) { return left->name < right->name; });
    return classes;
}

cimxml::Body enumerateClasses(const Operation& operation) {
    return returnItems(subclasses(operation),
                       [extent = extentOf(operation.arguments)](XmlWriter& xml, const schema::Class* each) {
                           writeClass(xml, *each, extent);
                       });
}

cimxml::Body enumerateClassNames(const Operation& operation) {
    return returnItems(subclasses(operation), [](XmlWriter& xml, const schema::Class* each) {
        xml.element("CLASSNAME", {{"NAME", each->name}});
    });
}

cimxml::Body enumerateQualifiers(const Operation&) {
    return returnItems(qualifierRows(), writeDeclaration);
}

cimxml::Body getQualifier(const Operation& operation) {
    const std::string name = operation.arguments.text("QualifierName");
    for (const QualifierRow& row : qualifierRows())
        if (broker::sameName(row.name, name))
            return returnItems(std::vector{row}, writeDeclaration);
    throw CimError(ErrorCode::NotFound, "there is no qualifier " + name);
}

constexpr ArgumentRow getClassArguments[] = {{"ClassName", ArgumentKind::ClassName, true},
                                             {"LocalOnly", ArgumentKind::Flag},
                                             {"IncludeQualifiers", ArgumentKind::Flag},
                                             {"IncludeClassOrigin", ArgumentKind::Flag},
                                             {"PropertyList", ArgumentKind::Texts}};
constexpr ArgumentRow enumerateClassesArguments[] = {{"ClassName", ArgumentKind::ClassName},
                                                     {"DeepInheritance", ArgumentKind::Flag},
                                                     {"LocalOnly", ArgumentKind::Flag},
                                                     {"IncludeQualifiers", ArgumentKind::Flag},
                                                     {"IncludeClassOrigin", ArgumentKind::Flag}};
constexpr ArgumentRow namesArguments[] = {{"ClassName", ArgumentKind::ClassName},
                                          {"DeepInheritance", ArgumentKind::Flag}};
constexpr ArgumentRow qualifierArguments[] = {{"QualifierName", ArgumentKind::Text, true}};

} // namespace

std::span<const OperationRow> classOperations() {
    static constexpr OperationRow rows[] = {
        {"GetClass", Access::Read, getClassArguments, getClass},
        {"EnumerateClasses", Access::Read, enumerateClassesArguments, enumerateClasses},
        {"EnumerateClassNames", Access::Read, namesArguments, enumerateClassNames},
        {"EnumerateQualifiers", Access::Read, {}, enumerateQualifiers},
        {"GetQualifier", Access::Read, qualifierArguments, getQualifier},
    };
    return rows;
}

} // namespace server
