#include "served_class.h"

#include <dlfcn.h>

namespace {

// PH_EI_Sensor of "CIM_Sensor" and "EI_"; nothing where the class has no such function.
template <class Function>
void look(Function*& function, std::string_view className, const char* operation, const char* suffix = "") {
    const std::string symbol = "PH_" + std::string(operation).append(className.substr(4)) + suffix;
    function = reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, symbol.c_str()));
}

ClassFunctions functionsOf(std::string_view name) {
    ClassFunctions functions{};
    functions.name = name.data(); // a text of the schema, which ends with a null
    look(functions.ei, name, "EI_");
    look(functions.ein, name, "EIN_");
    look(functions.gi, name, "GI_");
    look(functions.getInstArray, name, "", "_GetInstArray");
    look(functions.mi, name, "MI_");
    look(functions.ci, name, "CI_");
    look(functions.di, name, "DI_");
    look(functions.im, name, "IM_");
    return functions;
}

} // namespace

std::string toText(const broker::Request& request) {
    constexpr const char* operations[] = {"EI", "EIN", "GI", "MI", "CI", "DI", "IM", "A", "AN", "R", "RN"};
    return std::string(operations[static_cast<int>(request.operation)]) + ' ' + request.method + ' ' +
           toText(request.path);
}

ServedClass::ServedClass(const broker::Broker& broker, const schema::Class& served)
    : ClassRequests(broker, functionsOf(served.name)), description(served) {}

bool ServedClass::find(CMPIString** keyValues) const {
    int (*getRecord)(void**, CMPIString**) = nullptr;
    void (*clean)(void**, int) = nullptr;
    look(getRecord, description.name, "Get_");
    look(clean, description.name, "Clean_");
    void* record = nullptr;
    const int result = getRecord(&record, keyValues);
    clean(&record, record != nullptr ? 1 : 0);
    return result == 0;
}

std::vector<std::string> ServedClass::keys() const {
    std::vector<std::string> names;
    for (const auto& property : description.servedProperties())
        if (property.isKey)
            names.emplace_back(property.name);
    return names;
}
