// The broker's functions that providers make requests with, and what goes with a provider's own threads.
#include "data.h"
#include "tables.h"

#include <memory>

namespace broker {

namespace {

using Operation = Request::Operation;

// The frames of an attached thread; one that forgets to detach loses them at its end.
thread_local std::vector<std::unique_ptr<Frame>> attachedFrames;

PropertyList propertiesOf(const char** names) {
    if (names == nullptr)
        return std::nullopt;
    PropertyList list(std::in_place);
    for (; *names != nullptr; ++names)
        list->emplace_back(*names);
    return list;
}

Request requestOf(Operation operation, const CMPIObjectPath* path) {
    return {.operation = operation, .path = objectOf(path).content};
}

// Returns the reply, or throws Failure when the request failed.
Reply answer(State& state, const CMPIContext* context, const Request& request) {
    Reply reply = state.execute(request, objectOf(context).content);
    if (!reply.ok())
        throw Failure{reply.code, reply.message};
    return reply;
}

template <class Item>
CMPIEnumeration* enumerationOf(State& state, CMPIType type, std::vector<Item> items) {
    EnumerationContent content{.type = type, .items = std::vector<Value>(items.size(), Value{type, {}})};
    for (size_t i = 0; i < items.size(); ++i)
        content.items[i].content = std::make_shared<const Item>(std::move(items[i]));
    return make<CMPIEnumeration>(state, std::move(content));
}

CMPIContext* prepareAttachThread(const CMPIBroker* broker, const CMPIContext* context) {
    return obtain(broker, Call::prepareAttachThread, nullptr, [&](State& state) {
        auto copy = std::make_unique<ObjectOf<CMPIContext>>(state, objectOf(context).content);
        copy->preparedForThread = true;
        return &copy.release()->handle;
    });
}

CMPIStatus attachThread(const CMPIBroker* broker, const CMPIContext* context) {
    return perform(broker, Call::attachThread, [&](State& state) {
        objectOf(context);
        attachedFrames.push_back(std::make_unique<Frame>(state.shared_from_this()));
    });
}

CMPIStatus detachThread(const CMPIBroker* broker, const CMPIContext* context) {
    return perform(broker, Call::detachThread, [&](State&) {
        if (attachedFrames.empty())
            throw Failure{CMPI_RC_ERR_FAILED, "the thread is not attached"};
        Object& attachedWith = objectOf(context);
        attachedFrames.pop_back();
        if (attachedWith.preparedForThread)
            attachedWith.destroy();
    });
}

CMPIStatus deliverIndication(const CMPIBroker* broker, const CMPIContext*, const char* nameSpace,
                             const CMPIInstance* indication) {
    return perform(broker, Call::deliverIndication, [&](State& state) {
        const Instance& content = objectOf(indication).content.get();
        if (!state.indicationHandler)
            throw Failure{CMPI_RC_ERR_FAILED, "nobody listens to indications"};
        state.indicationHandler(nameSpace != nullptr ? nameSpace : "", content);
    });
}

CMPIEnumeration* enumerateInstanceNames(const CMPIBroker* broker, const CMPIContext* context,
                                        const CMPIObjectPath* path, CMPIStatus* status) {
    return obtain(broker, Call::enumerateInstanceNames, status, [&](State& state) {
        Reply reply = answer(state, context, requestOf(Operation::EnumerateInstanceNames, path));
        return enumerationOf(state, CMPI_ref, std::move(reply.paths));
    });
}

CMPIEnumeration* enumerateInstances(const CMPIBroker* broker, const CMPIContext* context,
                                    const CMPIObjectPath* path, const char** properties, CMPIStatus* status) {
    return obtain(broker, Call::enumerateInstances, status, [&](State& state) {
        Request request = requestOf(Operation::EnumerateInstances, path);
        request.properties = propertiesOf(properties);
        Reply reply = answer(state, context, request);
        return enumerationOf(state, CMPI_instance, std::move(reply.instances));
    });
}

CMPIInstance* getInstance(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* path,
                          const char** properties, CMPIStatus* status) {
    return obtain(broker, Call::getInstance, status, [&](State& state) {
        Request request = requestOf(Operation::GetInstance, path);
        request.properties = propertiesOf(properties);
        Reply reply = answer(state, context, request);
        if (reply.instances.empty())
            throw Failure{CMPI_RC_ERR_NOT_FOUND};
        return make<CMPIInstance>(state, InstanceContent(std::move(reply.instances.front())));
    });
}

CMPIObjectPath* createInstance(const CMPIBroker* broker, const CMPIContext* context,
                               const CMPIObjectPath* path, const CMPIInstance* instance, CMPIStatus* status) {
    return obtain(broker, Call::createInstance, status, [&](State& state) {
        Request request = requestOf(Operation::CreateInstance, path);
        request.instance = objectOf(instance).content.get();
        Reply reply = answer(state, context, request);
        if (reply.paths.empty())
            throw Failure{CMPI_RC_ERR_FAILED, "the provider returned no path"};
        return make<CMPIObjectPath>(state, std::move(reply.paths.front()));
    });
}

CMPIStatus modifyInstance(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* path,
                          const CMPIInstance* instance, const char** properties) {
    return perform(broker, Call::modifyInstance, [&](State& state) {
        Request request = requestOf(Operation::ModifyInstance, path);
        request.instance = objectOf(instance).content.get();
        request.properties = propertiesOf(properties);
        answer(state, context, request);
    });
}

CMPIStatus deleteInstance(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* path) {
    return perform(broker, Call::deleteInstance,
                   [&](State& state) { answer(state, context, requestOf(Operation::DeleteInstance, path)); });
}

std::string textOf(const char* name) {
    return name != nullptr ? name : "";
}

CMPIEnumeration* associators(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* path,
                             const char* assocClass, const char* resultClass, const char* role,
                             const char* resultRole, const char** properties, CMPIStatus* status) {
    return obtain(broker, Call::associators, status, [&](State& state) {
        Request request = requestOf(Operation::Associators, path);
        request.properties = propertiesOf(properties);
        request.filter = {textOf(assocClass), textOf(resultClass), textOf(role), textOf(resultRole)};
        return enumerationOf(state, CMPI_instance, answer(state, context, request).instances);
    });
}

CMPIEnumeration* associatorNames(const CMPIBroker* broker, const CMPIContext* context,
                                 const CMPIObjectPath* path, const char* assocClass, const char* resultClass,
                                 const char* role, const char* resultRole, CMPIStatus* status) {
    return obtain(broker, Call::associatorNames, status, [&](State& state) {
        Request request = requestOf(Operation::AssociatorNames, path);
        request.filter = {textOf(assocClass), textOf(resultClass), textOf(role), textOf(resultRole)};
        return enumerationOf(state, CMPI_ref, answer(state, context, request).paths);
    });
}

CMPIEnumeration* references(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* path,
                            const char* resultClass, const char* role, const char** properties,
                            CMPIStatus* status) {
    return obtain(broker, Call::references, status, [&](State& state) {
        Request request = requestOf(Operation::References, path);
        request.properties = propertiesOf(properties);
        request.filter = {.resultClass = textOf(resultClass), .role = textOf(role)};
        return enumerationOf(state, CMPI_instance, answer(state, context, request).instances);
    });
}

CMPIEnumeration* referenceNames(const CMPIBroker* broker, const CMPIContext* context,
                                const CMPIObjectPath* path, const char* resultClass, const char* role,
                                CMPIStatus* status) {
    return obtain(broker, Call::referenceNames, status, [&](State& state) {
        Request request = requestOf(Operation::ReferenceNames, path);
        request.filter = {.resultClass = textOf(resultClass), .role = textOf(role)};
        return enumerationOf(state, CMPI_ref, answer(state, context, request).paths);
    });
}

CMPIData invokeMethod(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* path,
                      const char* method, const CMPIArgs* in, CMPIArgs* out, CMPIStatus* status) {
    return obtain(broker, Call::invokeMethod, status, [&](State& state) {
        Request request = requestOf(Operation::InvokeMethod, path);
        request.method = nameOf(method);
        if (in != nullptr)
            request.arguments = objectOf(in).content;
        Reply reply = answer(state, context, request);
        if (out != nullptr)
            objectOf(out).content = std::move(reply.arguments);
        return reply.values.empty() ? failed<CMPIData>() : dataOf(state, reply.values.front());
    });
}

} // namespace

const CMPIBrokerFT requestTable{.brokerCapabilities = CMPI_MB_InstanceManipulation |
                                                      CMPI_MB_AssociationTraversal | CMPI_MB_Indications |
                                                      CMPI_MB_OSEncapsulationSupport,
                                .brokerVersion = CMPICurrentVersion,
                                .brokerName = "embedded",
                                .prepareAttachThread = prepareAttachThread,
                                .attachThread = attachThread,
                                .detachThread = detachThread,
                                .deliverIndication = deliverIndication,
                                .enumerateInstanceNames = enumerateInstanceNames,
                                .getInstance = getInstance,
                                .createInstance = createInstance,
                                .modifyInstance = modifyInstance,
                                .deleteInstance = deleteInstance,
                                .execQuery = unsupported,
                                .enumerateInstances = enumerateInstances,
                                .associators = associators,
                                .associatorNames = associatorNames,
                                .references = references,
                                .referenceNames = referenceNames,
                                .invokeMethod = invokeMethod,
                                .setProperty = unsupported,
                                .getProperty = unsupported,
                                .enumerateInstancesFiltered = unsupported,
                                .associatorsFiltered = unsupported,
                                .referencesFiltered = unsupported};

} // namespace broker
