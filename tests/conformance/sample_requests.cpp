#include "sample_requests.h"

namespace {

using Operation = broker::Request::Operation;

bool isDone(const broker::Reply& reply) {
    return reply.ok() && (reply.values.empty() || broker::toText(reply.values[0]) == "0");
}

broker::Instance firstOf(const ServedClass& asked) {
    const auto all = asked.instances();
    return all.empty() ? broker::Instance{.path = asked.path(), .properties = {}} : all.front();
}

const schema::Class* servedClass(std::string_view name) {
    const schema::Class* const found = schema::find(name);
    return found != nullptr && found->isServed() ? found : nullptr;
}

// One property that may be changed, to what it is; else all.
broker::Request modification(const Machine& machine, const ServedClass& asked,
                             const broker::Instance& instance) {
    broker::Request request{
        .operation = Operation::ModifyInstance, .path = instance.path, .instance = instance};
    for (const auto& [name, value] : instance.properties) {
        request.properties = {{name}};
        const bool isDone = asked.description.modifies && asked.answer(request).ok();
        machine.restore();
        if (isDone)
            return request;
    }
    request.properties.reset();
    return request;
}

// What a client may send: numbers that stand for states, texts, instances of the classes that there are.
std::vector<broker::NamedValues> argumentsOf(const broker::Broker& broker, const schema::Method& method) {
    std::vector<broker::NamedValues> candidates;
    const ServedClass host(broker, *schema::find("CIM_HostComputerSystem"));
    const ServedClass processor(broker, *schema::find("CIM_SPComputerSystem"));
    for (const auto& [number, system] :
         {std::pair{2U, &host}, {3U, &host}, {5U, &host}, {8U, &host}, {11U, &host}, {2U, &processor}}) {
        broker::NamedValues arguments;
        for (const schema::Parameter& parameter : method.parameters) {
            if (!parameter.isIn)
                continue;
            const auto* const referred = servedClass(parameter.className);
            if (parameter.type == CMPI_ref) {
                const ServedClass& any = parameter.className == "CIM_ManagedElement" ? *system : host;
                const auto all = (referred != nullptr ? ServedClass(broker, *referred) : any).instances();
                arguments.push_back({std::string(parameter.name), reference(all.at(0).path)});
            } else if (parameter.type == CMPI_refA && referred != nullptr) {
                const auto all = ServedClass(broker, *referred).instances();
                arguments.push_back({std::string(parameter.name),
                                     {CMPI_refA, broker::Value::Array{reference(all.at(0).path)}}});
            } else if (parameter.type == CMPI_instance && referred != nullptr) {
                arguments.push_back(
                    {std::string(parameter.name),
                     {CMPI_instance, std::make_shared<const broker::Instance>(
                                         Machine::newInstance(std::string(parameter.className)))}});
            } else if (parameter.type == CMPI_string) {
                arguments.push_back({std::string(parameter.name), {CMPI_string, std::to_string(number)}});
            } else if (parameter.type == CMPI_boolean) {
                arguments.push_back({std::string(parameter.name), {CMPI_boolean, true}});
            } else if (parameter.type != CMPI_dateTime && (parameter.type & CMPI_ARRAY) == 0) {
                arguments.push_back({std::string(parameter.name), {parameter.type, std::uint64_t{number}}});
            }
        }
        candidates.push_back(std::move(arguments));
    }
    return candidates;
}

} // namespace

std::vector<broker::Request> sampleChanges(const broker::Broker& broker, const Machine& machine,
                                           const ServedClass& asked) {
    const broker::Instance instance = firstOf(asked);
    std::vector<broker::Request> all{modification(machine, asked, instance)};
    broker::Request creation{.operation = Operation::CreateInstance,
                             .path = asked.path(),
                             .instance = Machine::newInstance(std::string(asked.description.name))};
    if (creation.instance.properties.empty())
        creation.instance = instance;
    creation.path = creation.instance.path;
    all.push_back(creation);
    all.push_back({.operation = Operation::DeleteInstance, .path = instance.path});
    for (const schema::Method& method : asked.description.servedMethods()) {
        broker::Request request{
            .operation = Operation::InvokeMethod, .path = instance.path, .method = std::string(method.name)};
        for (const auto& arguments : argumentsOf(broker, method)) {
            request.arguments = arguments;
            const bool succeeds = isDone(asked.answer(request));
            machine.restore();
            if (succeeds)
                break;
        }
        all.push_back(std::move(request));
    }
    return all;
}

std::vector<broker::Request> sampleRequests(const broker::Broker& broker, const Machine& machine,
                                            const ServedClass& asked) {
    auto all = sampleChanges(broker, machine, asked);
    all.push_back({.operation = Operation::EnumerateInstances, .path = asked.path()});
    all.push_back({.operation = Operation::EnumerateInstanceNames, .path = asked.path()});
    all.push_back({.operation = Operation::GetInstance, .path = firstOf(asked).path});
    all.push_back(
        {.operation = Operation::InvokeMethod, .path = firstOf(asked).path, .method = "NoSuchMethod"});
    return all;
}
