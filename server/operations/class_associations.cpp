#include "operations/class_associations.h"

#include "associations/association.h"

#include <algorithm>

namespace server {
namespace {

using associations::Row;
using Classes = std::vector<const schema::Class*>;

bool passes(const std::string& wantedAncestor, const char* className) {
    return wantedAncestor.empty() || schema::isSubclass(className, wantedAncestor);
}

bool isRole(const std::string& wanted, const char* role) {
    return wanted.empty() || broker::sameName(wanted, role);
}

// Instances of the class may be the row's elements: of a superclass or a subclass of theirs.
bool mayTakePart(const char* elementClass, const schema::Class& found) {
    return schema::isSubclass(elementClass, found.name) || schema::isSubclass(found.name, elementClass);
}

// Calls take(row, end) for each end of each row that the class may be at, in the operation's namespace.
template <class Take>
void forEachEnd(const Operation& operation, Take take) {
    const schema::Class& found =
        requireClass(operation.arguments.className("ObjectName"), operation.nameSpace);
    const std::string role = operation.arguments.text("Role");
    const auto& served = classesIn(operation.nameSpace);
    for (const Row& row : associations::rows())
        for (int end : {0, 1})
            if (served.contains(schema::find(row.associationClass->name)) &&
                mayTakePart(row.ends[end].className, found) &&
                isRole(role, row.associationClass->ends[end].role))
                take(row, end);
}

// By name, each once.
Classes inOrder(Classes classes) {
    std::sort(classes.begin(), classes.end(),
              [](const auto* left, const auto* right) { return left->name < right->name; });
    classes.erase(std::unique(classes.begin(), classes.end()), classes.end());
    return classes;
}

} // namespace

Classes associatedClasses(const Operation& operation) {
    const std::string association = operation.arguments.className("AssocClass");
    const std::string result = operation.arguments.className("ResultClass");
    const std::string resultRole = operation.arguments.text("ResultRole");
    Classes classes;
    forEachEnd(operation, [&](const Row& row, int end) {
        const int other = 1 - end;
        if (passes(association, row.associationClass->name) && passes(result, row.ends[other].className) &&
            isRole(resultRole, row.associationClass->ends[other].role))
            classes.push_back(schema::find(row.ends[other].className));
    });
    return inOrder(std::move(classes));
}

Classes referringClasses(const Operation& operation) {
    const std::string result = operation.arguments.className("ResultClass");
    Classes classes;
    forEachEnd(operation, [&](const Row& row, int) {
        if (passes(result, row.associationClass->name))
            classes.push_back(schema::find(row.associationClass->name));
    });
    return inOrder(std::move(classes));
}

} // namespace server
