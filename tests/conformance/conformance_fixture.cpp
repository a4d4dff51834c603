#include "conformance_fixture.h"

#include "class_list.h"
#include "managed_bmc.h"
#include "served_classes.h"

namespace {

bool isDone(const broker::Reply& reply) {
    return reply.ok() && (reply.values.empty() || broker::toText(reply.values[0]) == "0");
}

std::vector<TestedClass> allClasses(bool strictly) {
    std::vector<TestedClass> all;
    for (const ph::ClassFamily* family : ph::allClasses())
        all.push_back({family->name, strictly});
    return all;
}

std::string nameOf(const testing::TestParamInfo<TestedClass>& test) {
    return test.param.name.substr(4);
}

} // namespace

broker::Instance Conformance::first() const {
    const auto all = tested.instances();
    return all.empty() ? broker::Instance{.path = tested.path(), .properties = {}} : all.front();
}

// One property that may be changed, to what it is; else all.
broker::Request Conformance::modification(const broker::Instance& instance) const {
    broker::Request request{
        .operation = Operation::ModifyInstance, .path = instance.path, .instance = instance};
    for (const auto& [name, value] : instance.properties) {
        request.properties = {{name}};
        const bool isDone = tested.description.modifies && tested.answer(request).ok();
        machine().restore();
        if (isDone)
            return request;
    }
    request.properties.reset();
    return request;
}

// What a client may send: numbers that stand for states, texts, instances of the classes that there are.
std::vector<broker::NamedValues> Conformance::argumentsOf(const schema::Method& method) {
    std::vector<broker::NamedValues> candidates;
    const ServedClass host(broker, *schema::find("CIM_HostComputerSystem"));
    const ServedClass processor(broker, *schema::find("CIM_SPComputerSystem"));
    for (const auto& [number, system] :
         {std::pair{2U, &host}, {3U, &host}, {5U, &host}, {8U, &host}, {11U, &host}, {2U, &processor}}) {
        broker::NamedValues arguments;
        for (const schema::Parameter& parameter : method.parameters) {
            if (!parameter.isIn)
                continue;
            const auto* const referred = phctl::servedClass(parameter.className);
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
            } else if (parameter.type != CMPI_dateTime) {
                arguments.push_back({std::string(parameter.name), {parameter.type, std::uint64_t{number}}});
            }
        }
        candidates.push_back(std::move(arguments));
    }
    return candidates;
}

std::vector<broker::Request> Conformance::changes() {
    const broker::Instance instance = first();
    std::vector<broker::Request> all{modification(instance)};
    broker::Request creation{.operation = Operation::CreateInstance,
                             .path = tested.path(),
                             .instance = Machine::newInstance(std::string(tested.description.name))};
    if (creation.instance.properties.empty())
        creation.instance = instance;
    creation.path = creation.instance.path;
    all.push_back(creation);
    all.push_back({.operation = Operation::DeleteInstance, .path = instance.path});
    for (const schema::Method& method : tested.description.servedMethods()) {
        broker::Request request{
            .operation = Operation::InvokeMethod, .path = instance.path, .method = std::string(method.name)};
        for (const auto& arguments : argumentsOf(method)) {
            request.arguments = arguments;
            const bool succeeds = isDone(tested.answer(request));
            machine().restore();
            if (succeeds)
                break;
        }
        all.push_back(std::move(request));
    }
    return all;
}

std::vector<broker::Request> Conformance::requests() {
    auto all = changes();
    all.push_back({.operation = Operation::EnumerateInstances, .path = tested.path()});
    all.push_back({.operation = Operation::EnumerateInstanceNames, .path = tested.path()});
    all.push_back({.operation = Operation::GetInstance, .path = first().path});
    all.push_back({.operation = Operation::InvokeMethod, .path = first().path, .method = "NoSuchMethod"});
    return all;
}

INSTANTIATE_TEST_SUITE_P(Classes, Conformance, testing::ValuesIn(allClasses(false)), nameOf);
INSTANTIATE_TEST_SUITE_P(Strictly, Conformance, testing::ValuesIn(allClasses(true)), nameOf);
INSTANTIATE_TEST_SUITE_P(Classes, ConformanceFaults, testing::ValuesIn(allClasses(false)), nameOf);
