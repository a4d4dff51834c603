// Requests to the exported functions of a class family, as a provider passes them on. Link with ph_broker.
#pragma once

#include "cim_values.h"

#include <cmpimacs.h>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

struct ClassFunctions {
    const char* name;
    void (*ei)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char**, const CMPIResult*,
               CMPIStatus*);
    void (*ein)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const CMPIResult*, CMPIStatus*);
    void (*gi)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char**, const CMPIResult*,
               CMPIStatus*);
    CMPIArray* (*getInstArray)(const CMPIObjectPath*, const CMPIBroker*, const CMPIContext*, const char**);
    CMPIStatus (*mi)(const CMPIBroker*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                     const CMPIInstance*, const char**);
    CMPIStatus (*ci)(const CMPIBroker*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                     const CMPIInstance*);
    CMPIStatus (*di)(const CMPIBroker*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*);
    CMPIStatus (*im)(const CMPIBroker*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                     const char*, const CMPIArgs*, CMPIArgs*);
};
#define PH_CLASS_FUNCTIONS(X)                                                                                \
    ClassFunctions {                                                                                         \
        "CIM_" #X, PH_EI_##X, PH_EIN_##X, PH_GI_##X, PH_##X##_GetInstArray, PH_MI_##X, PH_CI_##X, PH_DI_##X, \
            PH_IM_##X                                                                                        \
    }

class ClassRequests {
public:
    ClassRequests(const broker::Broker& broker, const ClassFunctions& functions)
        : broker_(broker), functions_(functions) {}

    broker::ObjectPath path(broker::NamedValues keys = {}) const {
        return ::path(functions_.name, std::move(keys));
    }

    broker::Reply enumerate(const broker::PropertyList& properties = {}) const {
        return answer({.operation = Operation::EnumerateInstances, .path = path(), .properties = properties});
    }
    broker::Reply names() const {
        return answer({.operation = Operation::EnumerateInstanceNames, .path = path()});
    }
    broker::Reply get(const broker::ObjectPath& instance, const broker::PropertyList& properties = {}) const {
        return answer({.operation = Operation::GetInstance, .path = instance, .properties = properties});
    }
    broker::Reply modify(const broker::Instance& instance,
                         const broker::PropertyList& properties = {}) const {
        return answer({.operation = Operation::ModifyInstance,
                       .path = instance.path,
                       .instance = instance,
                       .properties = properties});
    }
    broker::Reply create(const broker::Instance& instance) const {
        return answer({.operation = Operation::CreateInstance, .path = instance.path, .instance = instance});
    }
    broker::Reply remove(const broker::ObjectPath& instance) const {
        return answer({.operation = Operation::DeleteInstance, .path = instance});
    }
    broker::Reply invoke(const broker::ObjectPath& instance, const std::string& method,
                         const broker::NamedValues& in = {}) const {
        return answer(
            {.operation = Operation::InvokeMethod, .path = instance, .method = method, .arguments = in});
    }

    // For a path that the broker cannot make, `change` gets one and returns what is handed over.
    using PathChange = std::function<const CMPIObjectPath*(const CMPIObjectPath*)>;
    broker::Reply answer(const broker::Request& request, const PathChange& change = nullptr) const {
        broker::Scope scope(broker_);
        broker::PropertyNames names(request.properties);
        const CMPIBroker* const cmpi = broker_.handle();
        const CMPIContext* const context =
            scope.makeContext({{"CMPIPrincipal", {CMPI_string, std::string("root")}}});
        const CMPIObjectPath* const made = scope.make(request.path);
        const CMPIObjectPath* const ref = change ? change(made) : made;
        const CMPIResult* const result = scope.makeResult();
        const CMPIInstance* const instance =
            request.instance.path.className.empty() ? nullptr : scope.make(request.instance);
        const CMPIArgs* const in = scope.makeArgs(request.arguments);
        CMPIArgs* const out = scope.makeArgs();
        CMPIStatus status{CMPI_RC_OK, nullptr};
        switch (request.operation) {
        case Operation::EnumerateInstances:
            functions_.ei(cmpi, context, ref, names.names(), result, &status);
            break;
        case Operation::EnumerateInstanceNames:
            functions_.ein(cmpi, context, ref, result, &status);
            break;
        case Operation::GetInstance:
            functions_.gi(cmpi, context, ref, names.names(), result, &status);
            break;
        case Operation::ModifyInstance:
            status = functions_.mi(cmpi, context, result, ref, instance, names.names());
            break;
        case Operation::CreateInstance:
            status = functions_.ci(cmpi, context, result, ref, instance);
            break;
        case Operation::DeleteInstance:
            status = functions_.di(cmpi, context, result, ref);
            break;
        case Operation::InvokeMethod:
            status = functions_.im(cmpi, context, result, ref, request.method.c_str(), in, out);
            break;
        default:
            throw std::logic_error("an element class answers no such operation");
        }
        broker::Reply reply = status.rc == CMPI_RC_OK ? broker::toReply(result) : broker::toReply(status);
        reply.arguments = broker::toNamedValues(out);
        return reply;
    }

    // Nothing when the function gave no array.
    std::optional<std::vector<broker::Instance>>
    instanceArray(const broker::PropertyList& properties = {}) const {
        broker::Scope scope(broker_);
        CMPIArray* const array =
            functions_.getInstArray(scope.make(path()), broker_.handle(), scope.makeContext(),
                                    broker::PropertyNames(properties).names());
        if (array == nullptr)
            return std::nullopt;
        std::vector<broker::Instance> instances;
        for (CMPICount i = 0; i < CMGetArrayCount(array, nullptr); ++i)
            instances.push_back(broker::toInstance(CMGetArrayElementAt(array, i, nullptr).value.inst));
        CMRelease(array);
        return instances;
    }

private:
    using Operation = broker::Request::Operation;

    const broker::Broker& broker_;
    ClassFunctions functions_;
};
