// ai, ain, ri, rin: what an object is associated with, and the associations themselves.
#include "commands.h"
#include "errors.h"
#include "reply_output.h"
#include "selection.h"

#include <memory>

namespace phctl {
namespace {

using Operation = broker::Request::Operation;

struct AssociationOptions : RequestOptions {
    Target target;
    broker::AssociationFilter filter;
    std::vector<std::string> properties;
};

struct AssociationVerb {
    const char* name;
    const char* longName;
    const char* description;
    Operation operation;
    bool isNames;
    bool isReferences; // which are filtered by less
    const char* examples;
};

constexpr AssociationVerb associationVerbs[] = {
    {"ai", "associators", "Print the objects that an object is associated with", Operation::Associators,
     false, false,
     "phctl ai CIM_HostComputerSystem --assoc-class CIM_SystemDevice \\\n"
     "      --properties ElementName,CurrentReading,BaseUnits,CurrentState"},
    {"ain", "associator-names", "Print the paths of the objects that an object is associated with",
     Operation::AssociatorNames, true, false,
     "phctl ain CIM_SPComputerSystem --result-class CIM_Service\n"
     "  phctl ain CIM_RegisteredProfile '*DSP1004*' --assoc-class CIM_ElementConformsToProfile \\\n"
     "      --role ConformantStandard"},
    {"ri", "references", "Print the associations of an object", Operation::References, false, true,
     "phctl ein CIM_IPProtocolEndpoint | head -n 1 | phctl ri - --result-class CIM_ElementSettingData"},
    {"rin", "reference-names", "Print the paths of the associations of an object", Operation::ReferenceNames,
     true, true, "phctl rin CIM_RecordLog --role Antecedent"},
};

int ask(const AssociationOptions& options, const AssociationVerb& verb) {
    const broker::PropertyList wanted =
        options.properties.empty() ? broker::PropertyList() : options.properties;
    Requester requester(options);
    const broker::ObjectPath path = selectOne(requester, options.target, options.nameSpace);
    InstancePrinter printer(options, wanted);
    const auto reply =
        requester.execute({.operation = verb.operation,
                           .path = path,
                           .properties = wanted,
                           .filter = options.filter,
                           .takeInstance = [&](const broker::Instance& instance) { printer.add(instance); }});
    if (verb.isNames)
        printPaths(reply.paths, options.json);
    else
        printer.print();
    return done;
}

void addAssociationOptions(Command command, const AssociationVerb& verb) {
    command.footer(std::string("Examples:\n  ") + verb.examples);
    const auto options = std::make_shared<AssociationOptions>();
    options->target.addTo(command);
    auto& filter = options->filter;
    if (verb.isReferences) {
        command.option("--result-class,--assoc-class", filter.resultClass,
                       "Class of the association, or one that it derives from");
    } else {
        command.option("--assoc-class", filter.assocClass,
                       "Class of the association, or one that it derives from");
        command.option("--result-class", filter.resultClass,
                       "Class of the associated objects, or one that they derive from");
    }
    command.option("--role", filter.role, "The object's role in the association, such as Antecedent");
    if (!verb.isReferences)
        command.option("--result-role", filter.resultRole, "The role of the associated objects");
    if (!verb.isNames) {
        options->addPresentationTo(command);
        command.option("--properties", options->properties, "Names of the wanted properties, with commas")
            .separatedByCommas();
    }
    options->addTo(command);
    command.action([options, &verb] { return ask(*options, verb); });
}

} // namespace

void addAssociationCommands(Command program) {
    for (const AssociationVerb& verb : associationVerbs)
        program
            .subcommand(verb.name, verb.description,
                        [&verb](Command command) { addAssociationOptions(command, verb); })
            .alias(verb.longName);
}

} // namespace phctl
