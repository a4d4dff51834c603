// ei, ein, gi, mi, ci, di: the operations on instances.
#include "arguments.h"
#include "commands.h"
#include "errors.h"
#include "host_power.h"
#include "instance_output.h"
#include "reply_output.h"
#include "requests.h"
#include "served_classes.h"
#include "text_layout.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

namespace phctl {
namespace {

using broker::Request;
using Operation = Request::Operation;

struct InstanceOptions : RequestOptions {
    std::string target; // a class, or an object path
    std::vector<std::string> properties, values;
};
using Options = std::shared_ptr<InstanceOptions>;

broker::PropertyList propertyList(const Options& options) {
    return options->properties.empty() ? broker::PropertyList() : options->properties;
}

void checkProperties(const broker::PropertyList& names, const std::string& className, Remarks& remarks) {
    const schema::Class* described = servedClass(className);
    if (!names || described == nullptr)
        return;
    const auto known = namesOf(described->servedProperties());
    for (const std::string& name : *names)
        if (std::none_of(known.begin(), known.end(),
                         [&](const std::string& each) { return broker::sameName(each, name); }))
            remarks.unknown(described->name, "property", name, known);
}

broker::ObjectPath classPath(const InstanceOptions& options) {
    broker::ObjectPath path = parsePath(options.target, options.nameSpace);
    if (!path.keys.empty())
        throw UsageError("expected a class instead of the object path " + options.target);
    return path;
}

broker::ObjectPath instancePath(const InstanceOptions& options) {
    return parsePath(options.target, options.nameSpace);
}

// A new instance with the values of the command line.
broker::Instance givenInstance(const InstanceOptions& options, broker::ObjectPath path, Remarks& remarks) {
    broker::Instance instance{.path = std::move(path), .properties = {}};
    const schema::Class* described = servedClass(instance.path.className);
    const auto served =
        described != nullptr ? described->servedProperties() : std::span<const schema::Property>();
    std::vector<std::string> unknown;
    instance.properties = parseArguments(options.values, declared(served), options.nameSpace, unknown);
    if (described != nullptr)
        for (const std::string& name : unknown)
            remarks.unknown(described->name, "property", name, namesOf(served));
    // A new instance's path has the keys that it is given.
    for (const schema::Property& property : served)
        if (const broker::Value* value = broker::find(instance.properties, property.name);
            property.isKey && value != nullptr && broker::find(instance.path.keys, property.name) == nullptr)
            instance.path.keys.push_back({std::string(property.name), *value});
    return instance;
}

int enumerateInstances(const Options& options) {
    const auto wanted = propertyList(options);
    Remarks remarks;
    const auto path = classPath(*options);
    checkProperties(wanted, path.className, remarks);
    Requester requester(*options);
    const auto reply = requester.execute(
        {.operation = Operation::EnumerateInstances, .path = path, .properties = wanted}, remarks);
    printInstances(reply.instances, wanted, options->json);
    if (!options->json)
        printHostPower(requester, reply.instances, wanted);
    return done;
}

int enumerateNames(const Options& options) {
    const auto reply = Requester(*options).execute(
        {.operation = Operation::EnumerateInstanceNames, .path = classPath(*options)});
    printPaths(reply.paths, options->json);
    return done;
}

int getInstance(const Options& options) {
    const auto wanted = propertyList(options);
    Remarks remarks;
    const auto path = instancePath(*options);
    checkProperties(wanted, path.className, remarks);
    Requester requester(*options);
    const auto reply =
        requester.execute({.operation = Operation::GetInstance, .path = path, .properties = wanted}, remarks);
    if (reply.instances.empty())
        throw Failure("the provider returned no instance");
    if (options->json) {
        printJson(std::cout, toJson(reply.instances.front()));
        return done;
    }
    printInstance(std::cout, reply.instances.front(), wanted, labelsFor(reply.instances));
    printHostPower(requester, reply.instances, wanted);
    return done;
}

int modifyInstance(const Options& options) {
    Remarks remarks;
    broker::Instance instance = givenInstance(*options, instancePath(*options), remarks);
    std::vector<std::string> names;
    for (const auto& property : instance.properties)
        names.push_back(property.name);
    Requester(*options).execute({.operation = Operation::ModifyInstance,
                                 .path = instance.path,
                                 .instance = instance,
                                 .properties = names},
                                remarks);
    if (!options->json)
        std::cout << "Changed " << printable(broker::toText(instance.path)) << '\n';
    else
        printJson(std::cout, {{"path", broker::toText(instance.path)}});
    return done;
}

int createInstance(const Options& options) {
    Remarks remarks;
    const broker::Instance instance = givenInstance(*options, classPath(*options), remarks);
    const auto reply = Requester(*options).execute(
        {.operation = Operation::CreateInstance, .path = instance.path, .instance = instance}, remarks);
    nlohmann::ordered_json created = nullptr;
    if (!reply.paths.empty())
        created = broker::toText(reply.paths.front());
    if (options->json)
        printJson(std::cout, {{"path", created}});
    else
        std::cout << "Created " << (created.is_null() ? "an instance" : printable(created.get<std::string>()))
                  << '\n';
    return done;
}

int deleteInstance(const Options& options) {
    const auto path = instancePath(*options);
    Requester(*options).execute({.operation = Operation::DeleteInstance, .path = path});
    if (options->json)
        printJson(std::cout, {{"path", broker::toText(path)}});
    else
        std::cout << "Deleted " << printable(broker::toText(path)) << '\n';
    return done;
}

struct Verb {
    const char* name;
    const char* longName;
    const char* description;
    const char* target;
    bool takesProperties;
    bool takesValues;
    int (*run)(const Options&);
    const char* examples;
};

constexpr char pathExample[] =
    "'CIM_HostComputerSystem.Name=\"host\",CreationClassName=\"CIM_HostComputerSystem\"'";

constexpr Verb verbs[] = {
    {"ei", "enumerate-instances", "Print all instances of a class", "CLASS", true, false, enumerateInstances,
     "phctl ei CIM_HostComputerSystem\n"
     "  phctl ei CIM_NumericSensor --properties ElementName,CurrentReading,BaseUnits,CurrentState\n"
     "  phctl ei CIM_Sensor --json"},
    {"ein", "enumerate-instance-names", "Print the object paths of all instances of a class", "CLASS", false,
     false, enumerateNames, "phctl ein CIM_NumericSensor"},
    {"gi", "get-instance", "Print one instance", "PATH", true, false, getInstance,
     "phctl gi \"$(phctl ein CIM_NumericSensor | head -n 1)\"\n"
     "  phctl gi {path}"},
    {"mi", "modify-instance", "Change properties of an instance", "PATH", false, true, modifyInstance,
     "phctl mi {path} ElementName=rack-7"},
    {"ci", "create-instance", "Create an instance", "CLASS", false, true, createInstance,
     "phctl ci CIM_X Name=first Size=3"},
    {"di", "delete-instance", "Delete an instance", "PATH", false, false, deleteInstance, "phctl di {path}"},
};

std::string withPath(std::string text) {
    constexpr std::string_view mark = "{path}";
    const std::size_t place = text.find(mark);
    return place == std::string::npos ? text : text.replace(place, mark.size(), pathExample);
}

} // namespace

void addInstanceCommands(CLI::App& app, Chosen& chosen) {
    for (const Verb& verb : verbs) {
        CLI::App* command = app.add_subcommand(verb.name, verb.description);
        command->alias(verb.longName);
        command->footer("Examples:\n  " + withPath(verb.examples));
        const auto options = std::make_shared<InstanceOptions>();
        const bool isClass = std::string_view(verb.target) == "CLASS";
        command
            ->add_option(verb.target, options->target,
                         isClass ? "Class name" : "Object path, in single quotes for the shell")
            ->required();
        if (verb.takesValues)
            command
                ->add_option(
                    "VALUES", options->values,
                    "Name=value, typed as the class says; arrays with commas (a\\,b is one element), or "
                    "repeated")
                ->required();
        if (verb.takesProperties)
            command
                ->add_option("--properties", options->properties,
                             "Names of the wanted properties, with commas")
                ->delimiter(',')
                ->allow_extra_args(false);
        options->addTo(*command);
        command->callback(
            [&chosen, options, run = verb.run] { chosen = [options, run] { return run(options); }; });
    }
}

} // namespace phctl
