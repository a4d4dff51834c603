// Requests to the exported functions of a class family, as a provider passes them on. Link with ph_broker.
#pragma once

#include "broker/broker.h"

#include <cmpimacs.h>
#include <optional>
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
    ClassRequests(broker::Broker& broker, const ClassFunctions& functions)
        : broker_(broker), functions_(functions) {}

    broker::ObjectPath path(broker::NamedValues keys = {}) const {
        return {.host = {}, .nameSpace = "root/cimv2", .className = functions_.name, .keys = std::move(keys)};
    }

    broker::Reply enumerate(const broker::PropertyList& properties = {}) const {
        return reading(path(), [&](auto* context, auto* ref, auto* result, auto* status) {
            functions_.ei(broker_.handle(), context, ref, broker::PropertyNames(properties).names(), result,
                          status);
        });
    }
    broker::Reply names() const {
        return reading(path(), [&](auto* context, auto* ref, auto* result, auto* status) {
            functions_.ein(broker_.handle(), context, ref, result, status);
        });
    }
    broker::Reply get(const broker::ObjectPath& instance, const broker::PropertyList& properties = {}) const {
        return reading(instance, [&](auto* context, auto* ref, auto* result, auto* status) {
            functions_.gi(broker_.handle(), context, ref, broker::PropertyNames(properties).names(), result,
                          status);
        });
    }
    // Nothing when the function gave no array.
    std::optional<std::vector<broker::Instance>>
    instanceArray(const broker::PropertyList& properties = {}) const {
        const broker::Scope scope(broker_);
        CMPIArray* array = functions_.getInstArray(
            const_cast<broker::Scope&>(scope).make(path()), broker_.handle(),
            const_cast<broker::Scope&>(scope).makeContext(), broker::PropertyNames(properties).names());
        if (array == nullptr)
            return std::nullopt;
        std::vector<broker::Instance> instances;
        for (CMPICount i = 0; i < CMGetArrayCount(array, nullptr); ++i)
            instances.push_back(broker::toInstance(CMGetArrayElementAt(array, i, nullptr).value.inst));
        CMRelease(array);
        return instances;
    }

    broker::Reply modify(const broker::Instance& instance,
                         const broker::PropertyList& properties = {}) const {
        return changing(instance.path, [&](auto& scope, auto* context, auto* ref, auto* result) {
            return functions_.mi(broker_.handle(), context, result, ref, scope.make(instance),
                                 broker::PropertyNames(properties).names());
        });
    }
    broker::Reply create(const broker::Instance& instance) const {
        return changing(instance.path, [&](auto& scope, auto* context, auto* ref, auto* result) {
            return functions_.ci(broker_.handle(), context, result, ref, scope.make(instance));
        });
    }
    broker::Reply remove(const broker::ObjectPath& instance) const {
        return changing(instance, [&](auto&, auto* context, auto* ref, auto* result) {
            return functions_.di(broker_.handle(), context, result, ref);
        });
    }
    broker::Reply invoke(const broker::ObjectPath& instance, const std::string& method,
                         const broker::NamedValues& in = {}) const {
        broker::NamedValues outValues;
        broker::Reply reply = changing(instance, [&](auto& scope, auto* context, auto* ref, auto* result) {
            CMPIArgs* out = scope.makeArgs();
            const CMPIStatus status = functions_.im(broker_.handle(), context, result, ref, method.c_str(),
                                                    scope.makeArgs(in), out);
            outValues = broker::toNamedValues(out);
            return status;
        });
        reply.arguments = std::move(outValues);
        return reply;
    }

private:
    template <class Call>
    broker::Reply changing(const broker::ObjectPath& instance, Call call) const {
        broker::Scope scope(broker_);
        CMPIResult* result = scope.makeResult();
        const CMPIStatus status = call(scope, scope.makeContext(), scope.make(instance), result);
        return status.rc == CMPI_RC_OK ? broker::toReply(result) : broker::toReply(status);
    }
    template <class Call>
    broker::Reply reading(const broker::ObjectPath& instance, Call call) const {
        return changing(instance, [&](auto&, auto* context, auto* ref, auto* result) {
            CMPIStatus status{CMPI_RC_OK, nullptr};
            call(context, ref, result, &status);
            return status;
        });
    }

    broker::Broker& broker_;
    ClassFunctions functions_;
};
