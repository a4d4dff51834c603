// ei, ein, gi, mi, ci, di: the operations on instances.
#include "arguments.h"
#include "commands.h"
#include "errors.h"
#include "host_power.h"
#include "instance_output.h"
#include "json_text.h"
#include "reply_output.h"
#include "requests.h"
#include "secrets.h"
#include "selection.h"
#include "served_classes.h"
#include "stale_warning.h"
#include "text_layout.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

namespace phctl {
namespace {

using broker::Request;
using Operation = Request::Operation;

struct InstanceOptions : RequestOptions {
    Target target;
    std::vector<std::string> properties, values;
    SecretValues secrets;
};
using SharedInstanceOptions = std::shared_ptr<InstanceOptions>;

constexpr char systemClass[] = "CIM_SPComputerSystem";

broker::PropertyList propertyList(const SharedInstanceOptions& options) {
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
    broker::ObjectPath path = parsePath(options.target.text, options.nameSpace);
    if (!path.keys.empty())
        throw UsageError("expected a class instead of the object path " + options.target.text);
    return path;
}

// A new instance with the values of the command line.
broker::Instance givenInstance(const InstanceOptions& options, broker::ObjectPath path, Remarks& remarks) {
    broker::Instance instance{.path = std::move(path), .properties = {}};
    const schema::Class* described = servedClass(instance.path.className);
    const auto served =
        described != nullptr ? described->servedProperties() : std::span<const schema::Property>();
    std::vector<std::string> unknown;
    std::vector<std::string> values = options.values;
    options.secrets.appendTo(values);
    if (values.empty())
        throw UsageError("expected Name=value");
    instance.properties = parseArguments(values, declared(served), options.nameSpace, unknown);
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

int enumerateInstances(const SharedInstanceOptions& options) {
    const auto wanted = propertyList(options);
    Remarks remarks;
    const auto path = classPath(*options);
    checkProperties(wanted, path.className, remarks);
    Requester requester(*options);
    if (isSensorClass(path.className))
        askIfStale();
    InstancePrinter printer(*options, wanted);
    std::vector<broker::ObjectPath> hosts; // whose power is told, too
    requester.execute({.operation = Operation::EnumerateInstances,
                       .path = path,
                       .properties = wanted,
                       .takeInstance =
                           [&](const broker::Instance& instance) {
                               printer.add(instance);
                               if (!options->json && !wanted && isHost(instance.path))
                                   hosts.push_back(instance.path);
                           }},
                      remarks);
    printer.print();
    if (isSensorClass(path.className))
        warnIfStale();
    for (const broker::ObjectPath& host : hosts)
        printHostPower(requester, host);
    return done;
}

int enumerateNames(const SharedInstanceOptions& options) {
    const auto reply = Requester(*options).execute(
        {.operation = Operation::EnumerateInstanceNames, .path = classPath(*options)});
    printPaths(reply.paths, options->json);
    return done;
}

int getInstance(const SharedInstanceOptions& options) {
    const auto wanted = propertyList(options);
    Requester requester(*options);
    auto found = nlohmann::ordered_json::array();
    const auto paths = select(requester, options->target, options->nameSpace);
    if (isSensorClass(paths.front().className))
        askIfStale();
    for (const broker::ObjectPath& path : paths) {
        Remarks remarks;
        checkProperties(wanted, path.className, remarks);
        const auto reply = requester.execute(
            {.operation = Operation::GetInstance, .path = path, .properties = wanted}, remarks);
        if (reply.instances.empty())
            throw Failure("the provider returned no instance");
        const broker::Instance& instance = reply.instances.front();
        const Presentation how = presentationOf(*options, wanted);
        if (options->json) {
            found.push_back(toJson(instance, how));
            continue;
        }
        if (&path != &paths.front())
            std::cout << '\n';
        printInstance(std::cout, instance, how);
        if (!wanted && isHost(instance.path))
            printHostPower(requester, instance.path);
    }
    if (isSensorClass(paths.front().className))
        warnIfStale();
    if (options->json)
        printJson(std::cout, paths.size() == 1 && !options->target.meansSeveral() ? found.front() : found);
    return done;
}

// The name of the instance stands before the values where the command line has one.
void takeName(Target& target, std::vector<std::string>& values) {
    if (!target.isClass() || values.empty())
        return;
    const schema::Class* described = servedClass(target.text);
    const std::string& first = values.front();
    const std::size_t sign = first.find('=');
    if (sign != std::string::npos &&
        (described == nullptr || servedProperty(*described, first.substr(0, sign)) != nullptr))
        return;
    target.name = first;
    values.erase(values.begin());
}

int modifyInstance(const SharedInstanceOptions& options) {
    takeName(options->target, options->values);
    // Values are read before anything is asked, unless only standard input tells their class.
    Remarks remarks;
    broker::Instance instance;
    const bool isInput = options->target.isInput();
    if (!isInput)
        instance = givenInstance(*options, parsePath(options->target.text, options->nameSpace), remarks);
    Requester requester(*options);
    broker::ObjectPath path = selectOne(requester, options->target, options->nameSpace);
    if (isInput)
        instance = givenInstance(*options, std::move(path), remarks);
    else
        instance.path = std::move(path);
    std::vector<std::string> names;
    for (const auto& property : instance.properties)
        names.push_back(property.name);
    requester.execute({.operation = Operation::ModifyInstance,
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

// Fills the keys in that say of which class an instance is, and of which system: the service processor hosts
// what clients make.
void completeKeys(broker::Instance& instance, Requester& requester) {
    const schema::Class* described = servedClass(instance.path.className);
    const auto fill = [&](const char* name, const auto& makeValue) {
        const schema::Property* property = described != nullptr ? servedProperty(*described, name) : nullptr;
        if (property == nullptr || !property->isKey || broker::find(instance.path.keys, name) != nullptr)
            return;
        const broker::Value value{CMPI_string, std::string(makeValue())};
        broker::set(instance.path.keys, name, value);
        broker::set(instance.properties, name, value);
    };
    fill("CreationClassName", [&] { return described->name; });
    fill("SystemCreationClassName", [] { return systemClass; });
    fill("SystemName", [&] {
        const auto system = selectOne(requester, {.text = systemClass, .name = {}}, {});
        const broker::Value* name = broker::find(system.keys, "Name");
        return name != nullptr ? broker::toText(*name) : std::string();
    });
}

int createInstance(const SharedInstanceOptions& options) {
    Remarks remarks;
    broker::Instance instance = givenInstance(*options, classPath(*options), remarks);
    Requester requester(*options);
    completeKeys(instance, requester);
    const auto reply = requester.execute(
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

int deleteInstance(const SharedInstanceOptions& options) {
    Requester requester(*options);
    const auto path = selectOne(requester, options->target, options->nameSpace);
    requester.execute({.operation = Operation::DeleteInstance, .path = path});
    if (options->json)
        printJson(std::cout, {{"path", broker::toText(path)}});
    else
        std::cout << "Deleted " << printable(broker::toText(path)) << '\n';
    return done;
}

struct InstanceVerb {
    const char* name;
    const char* longName;
    const char* description;
    bool isOfClass; // or else of an instance
    bool takesProperties;
    bool takesValues;
    int (*run)(const SharedInstanceOptions&);
    const char* examples;
};

constexpr InstanceVerb instanceVerbs[] = {
    {"ei", "enumerate-instances", "Print all instances of a class", true, true, false, enumerateInstances,
     "  phctl ei CIM_HostComputerSystem --words\n"
     "  phctl ei CIM_NumericSensor --properties ElementName,CurrentReading,BaseUnits,CurrentState\n"
     "  phctl ei CIM_Sensor --json"},
    {"ein", "enumerate-instance-names", "Print the object paths of all instances of a class", true, false,
     false, enumerateNames, "  phctl ein CIM_NumericSensor"},
    {"gi", "get-instance", "Print one instance, or those that fit", false, true, false, getInstance,
     "  phctl gi CIM_NumericSensor 'CPU1 Temp'\n"
     "  phctl gi CIM_NumericSensor 'FAN*' --properties ElementName,CurrentReading\n"
     "  phctl gi 'CIM_NumericSensor.DeviceID=\"*Temp*\"'\n"
     "  phctl ein CIM_RegisteredProfile | phctl gi -"},
    {"mi", "modify-instance", "Change properties of an instance", false, false, true, modifyInstance,
     "  phctl mi CIM_Account 'IPMI User-2' --from-file UserPassword=password.txt"},
    {"ci", "create-instance", "Create an instance", true, false, true, createInstance,
     "  phctl ci CIM_IndicationFilter Name=IndicationFilter:IPMIPEF-4-9 Query='SELECT * FROM "
     "CIM_AlertIndication'"},
    {"di", "delete-instance", "Delete an instance", false, false, false, deleteInstance,
     "  phctl ci CIM_IndicationFilter Name=IndicationFilter:IPMIPEF-4-9 Query='SELECT * FROM "
     "CIM_AlertIndication'\n"
     "  phctl di CIM_IndicationFilter IPMIPEF-4-9"},
};

void addInstanceOptions(Command command, const InstanceVerb& verb) {
    command.footer(std::string("Examples:\n") + verb.examples);
    const auto options = std::make_shared<InstanceOptions>();
    if (verb.isOfClass)
        command.option("CLASS", options->target.text, "Class name").required();
    else
        options->target.addTo(command, !verb.takesValues);
    if (verb.takesValues) {
        command.option(
            "VALUES", options->values,
            std::string("Name=value, typed as the class says; arrays with commas (a\\,b is one element), or "
                        "repeated") +
                (verb.isOfClass ? "; keys that name class and system are filled in" : ""));
        options->secrets.addTo(command);
    }
    if (verb.takesProperties) {
        command.option("--properties", options->properties, "Names of the wanted properties, with commas")
            .separatedByCommas();
        options->addPresentationTo(command);
    }
    options->addTo(command);
    command.action([options, run = verb.run] { return run(options); });
}

} // namespace

void addInstanceCommands(Command program) {
    for (const InstanceVerb& verb : instanceVerbs)
        program
            .subcommand(verb.name, verb.description,
                        [&verb](Command command) { addInstanceOptions(command, verb); })
            .alias(verb.longName);
}

} // namespace phctl
