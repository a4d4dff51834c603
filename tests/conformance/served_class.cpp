#include "served_class.h"

#include <provider_helper/provider_helper.h>

#include <dlfcn.h>
#include <stdexcept>

using Operation = broker::Request::Operation;

namespace {

// What the function of the operation gets of a request.
struct Objects {
    Objects(const broker::Broker& broker, const broker::Request& request)
        : scope(broker), names(request.properties) {
        context = scope.makeContext({{"CMPIPrincipal", {CMPI_string, std::string("root")}}});
        path = scope.make(request.path);
        result = scope.makeResult();
        if (!request.instance.path.className.empty())
            instance = scope.make(request.instance);
        in = scope.makeArgs(request.arguments);
        out = scope.makeArgs();
    }

    broker::Scope scope;
    broker::PropertyNames names;
    CMPIContext* context;
    const CMPIObjectPath* path;
    CMPIResult* result;
    CMPIInstance* instance = nullptr;
    CMPIArgs* in;
    CMPIArgs* out;
};

const char* operationName(Operation operation) {
    constexpr const char* names[] = {"EI", "EIN", "GI", "MI", "CI", "DI", "IM"};
    return names[static_cast<int>(operation)];
}

} // namespace

std::string toText(const broker::Request& request) {
    return std::string(operationName(request.operation)) + ' ' + request.method + ' ' + toText(request.path);
}

void* ServedClass::function(const char* operation, const char* suffix) const {
    const std::string symbol = std::string("PH_") + operation + description.name.substr(4) + suffix;
    void* const found = dlsym(RTLD_DEFAULT, symbol.c_str());
    return found != nullptr ? found : throw std::runtime_error("no function " + symbol);
}

broker::Reply ServedClass::answer(const broker::Request& request, const PathChange& change) const {
    const std::string prefix = std::string(operationName(request.operation)) + '_';
    void* const address = function(prefix.c_str());
    Objects objects(broker_, request);
    const CMPIObjectPath* path = change ? change(objects.path) : objects.path;
    const CMPIBroker* cmpi = broker_.handle();
    const char** names = objects.names.names();
    CMPIStatus status{CMPI_RC_OK, nullptr};
    switch (request.operation) {
    case Operation::EnumerateInstances:
    case Operation::GetInstance:
        reinterpret_cast<decltype(&PH_EI_Sensor)>(address)(cmpi, objects.context, path, names, objects.result,
                                                           &status);
        break;
    case Operation::EnumerateInstanceNames:
        reinterpret_cast<decltype(&PH_EIN_Sensor)>(address)(cmpi, objects.context, path, objects.result,
                                                            &status);
        break;
    case Operation::ModifyInstance:
        status = reinterpret_cast<decltype(&PH_MI_Sensor)>(address)(cmpi, objects.context, objects.result,
                                                                    path, objects.instance, names);
        break;
    case Operation::CreateInstance:
        status = reinterpret_cast<decltype(&PH_CI_Sensor)>(address)(cmpi, objects.context, objects.result,
                                                                    path, objects.instance);
        break;
    case Operation::DeleteInstance:
        status =
            reinterpret_cast<decltype(&PH_DI_Sensor)>(address)(cmpi, objects.context, objects.result, path);
        break;
    case Operation::InvokeMethod:
        status = reinterpret_cast<decltype(&PH_IM_Sensor)>(address)(
            cmpi, objects.context, objects.result, path, request.method.c_str(), objects.in, objects.out);
        break;
    default:
        throw std::logic_error("an element class answers no such operation");
    }
    broker::Reply reply = status.rc == CMPI_RC_OK ? broker::toReply(objects.result) : broker::toReply(status);
    reply.arguments = broker::toNamedValues(objects.out);
    return reply;
}

std::vector<broker::Instance> ServedClass::instances(const broker::PropertyList& properties) const {
    return answer({.operation = Operation::EnumerateInstances, .path = path(), .properties = properties})
        .instances;
}

std::optional<std::vector<broker::Instance>> ServedClass::instanceArray() const {
    const auto getArray = reinterpret_cast<decltype(&PH_Sensor_GetInstArray)>(function("", "_GetInstArray"));
    broker::Scope scope(broker_);
    CMPIArray* const array = getArray(scope.make(path()), broker_.handle(), scope.makeContext(), nullptr);
    if (array == nullptr)
        return std::nullopt;
    std::vector<broker::Instance> instances;
    for (CMPICount i = 0; i < CMGetArrayCount(array, nullptr); ++i)
        instances.push_back(broker::toInstance(CMGetArrayElementAt(array, i, nullptr).value.inst));
    CMRelease(array);
    return instances;
}

bool ServedClass::find(CMPIString** keyValues) const {
    void* record = nullptr;
    const int result = reinterpret_cast<int (*)(void**, CMPIString**)>(function("Get_"))(&record, keyValues);
    reinterpret_cast<void (*)(void**, int)>(function("Clean_"))(&record, record != nullptr ? 1 : 0);
    return result == 0;
}

std::vector<std::string> ServedClass::keys() const {
    std::vector<std::string> names;
    for (const auto& property : description.properties)
        if (property.isKey)
            names.push_back(property.name);
    return names;
}
