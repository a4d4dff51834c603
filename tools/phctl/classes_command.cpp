// classes: what the library serves.
#include "class_descriptions.h"

#include "broker/value.h"
#include "commands.h"
#include "errors.h"
#include "instance_output.h"
#include "names.h"
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

std::string operationsOf(const ClassDescription& description) {
    std::string text = description.enumerates ? "get" : "";
    for (const auto& [available, name] : {std::pair{description.modifies, "modify"},
                                          {description.creates, "create"},
                                          {description.deletes, "delete"}})
        if (available)
            text += (text.empty() ? "" : ", ") + std::string(name);
    return text.empty() ? "-" : text;
}

std::string signature(const MethodDescription& method) {
    std::string text = "uint32 " + method.name + '(';
    for (const Declaration& parameter : method.parameters) {
        text += (&parameter != &method.parameters.front() ? ", " : "") +
                std::string(parameter.isOut ? "out " : "") + broker::typeName(parameter.type) + ' ' +
                parameter.name;
        if (!parameter.className.empty())
            text += " (" + parameter.className + ')';
    }
    return text + ')';
}

void printList() {
    Table table({"Class", "Superclass", "Operations", "Methods"});
    for (const ClassDescription& each : describedClasses()) {
        std::string methods;
        for (const MethodDescription& method : each.methods)
            methods += (methods.empty() ? "" : ", ") + method.name;
        table.add({each.name, each.superclass.empty() ? "-" : each.superclass, operationsOf(each),
                   methods.empty() ? "-" : methods});
    }
    table.print(std::cout, terminalWidth(STDOUT_FILENO));
}

void printClass(const ClassDescription& description) {
    std::cout << description.name;
    if (!description.superclass.empty())
        std::cout << " : " << description.superclass;
    std::cout << "\n\n";
    Table properties({"Property", "Type", "Key"});
    for (const Declaration& property : description.properties)
        properties.add({property.name,
                        broker::typeName(property.type) +
                            (property.className.empty() ? "" : " (" + property.className + ')'),
                        property.isKey ? "key" : ""});
    properties.print(std::cout, 0);
    std::cout << "\nOperations: " << operationsOf(description) << "\nNamespaces:";
    for (const std::string& nameSpace : description.nameSpaces)
        std::cout << ' ' << nameSpace;
    std::cout << '\n';
    for (const MethodDescription& method : description.methods)
        std::cout << "Method: " << signature(method) << '\n';
}

int listClasses(const ClassesOptions& options) {
    const auto all = nlohmann::ordered_json::parse(descriptionText());
    if (options.className.empty()) {
        if (options.json)
            printJson(std::cout, all);
        else
            printList();
        return done;
    }
    const ClassDescription* description = describe(options.className);
    if (description == nullptr)
        throw UsageError("there is no class " + options.className +
                         didYouMean(options.className, classNames()));
    if (!options.json)
        printClass(*description);
    for (const auto& each : all)
        if (options.json && each.at("name") == description->name)
            printJson(std::cout, each);
    return done;
}

} // namespace

void addClassesCommand(CLI::App& app, Chosen& chosen) {
    CLI::App* command = app.add_subcommand("classes", "List the classes that are served, or describe one");
    command->footer("Examples:\n  phctl classes\n  phctl classes CIM_NumericSensor");
    const auto options = std::make_shared<ClassesOptions>();
    command->add_option("CLASS", options->className, "Class to describe");
    command->add_flag("--json", options->json, "Print JSON");
    command->callback([&chosen, options] { chosen = [options] { return listClasses(*options); }; });
}

} // namespace phctl
