// classes: what the library serves.
#include "broker/value.h"
#include "commands.h"
#include "errors.h"
#include "json_text.h"
#include "names.h"
#include "schema/class_json.h"
#include "served_classes.h"
#include "text_layout.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {
namespace {

struct ClassesOptions {
    std::string className;
    bool json = false;
};

std::string operationsOf(const schema::Class& described) {
    std::string text = described.enumerates ? "get" : "";
    for (const auto& [available, name] : {std::pair{described.modifies, "modify"},
                                          {described.creates, "create"},
                                          {described.deletes, "delete"},
                                          {described.isIndication, "indication"}})
        if (available)
            text += (text.empty() ? "" : ", ") + std::string(name);
    return text.empty() ? "-" : text;
}

std::string typeOf(const schema::Element& element) {
    const std::string className(element.className);
    return broker::typeName(element.type) + (className.empty() ? "" : " (" + className + ')');
}

std::string signature(const schema::Method& method) {
    std::string text = broker::typeName(method.type) + ' ' + std::string(method.name) + '(';
    for (const schema::Parameter& parameter : method.parameters) {
        text += (&parameter != &method.parameters.front() ? ", " : "") +
                std::string(!parameter.isOut ? ""
                            : parameter.isIn ? "inout "
                                             : "out ") +
                broker::typeName(parameter.type) + ' ' + std::string(parameter.name);
        if (!parameter.className.empty())
            text.append(" (").append(parameter.className).append(")");
    }
    return text + ')';
}

void printList() {
    Table table({"Class", "Superclass", "Operations", "Methods"});
    for (const schema::Class& each : schema::servedClasses()) {
        std::string methods;
        for (const schema::Method& method : each.servedMethods())
            methods += (methods.empty() ? "" : ", ") + std::string(method.name);
        table.add({std::string(each.name), each.superclass.empty() ? "-" : std::string(each.superclass),
                   operationsOf(each), methods.empty() ? "-" : methods});
    }
    table.print(std::cout, layoutOf(STDOUT_FILENO));
}

void printClass(const schema::Class& described) {
    std::cout << described.name;
    if (!described.superclass.empty())
        std::cout << " : " << described.superclass;
    std::cout << "\n\n";
    Table properties({"Property", "Type", "Key"});
    for (const schema::Property& property : described.servedProperties())
        properties.add({std::string(property.name), typeOf(property), property.isKey ? "key" : ""});
    properties.print(std::cout);
    std::cout << "\nOperations: " << operationsOf(described) << "\nNamespaces:";
    for (const std::string_view nameSpace : described.nameSpaces)
        std::cout << ' ' << nameSpace;
    std::cout << '\n';
    if (!described.source.empty())
        std::cout << "Source: " << described.source << '\n';
    for (const schema::Method& method : described.servedMethods())
        std::cout << "Method: " << signature(method) << '\n';
}

int listClasses(const ClassesOptions& options) {
    if (options.className.empty()) {
        if (!options.json)
            return printList(), done;
        auto all = nlohmann::ordered_json::array();
        for (const schema::Class& each : schema::servedClasses())
            all.push_back(schema::toJson(each));
        printJson(std::cout, all);
        return done;
    }
    const schema::Class* described = servedClass(options.className);
    if (described == nullptr)
        throw UsageError("there is no class " + options.className +
                         didYouMean(options.className, classNames()));
    if (options.json)
        printJson(std::cout, schema::toJson(*described));
    else
        printClass(*described);
    return done;
}

void addClassesOptions(Command command) {
    command.footer("Examples:\n  phctl classes\n  phctl classes CIM_NumericSensor");
    const auto options = std::make_shared<ClassesOptions>();
    command.option("CLASS", options->className, "Class to describe");
    command.flag("--json", options->json, "Print JSON");
    command.action([options] { return listClasses(*options); });
}

} // namespace

void addClassesCommand(Command program) {
    program.subcommand("classes", "List the classes that are served, or describe one", addClassesOptions);
}

} // namespace phctl
