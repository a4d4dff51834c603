#include "provider.h"

#include <algorithm>
#include <dlfcn.h>

namespace broker {

namespace {

using Operation = Request::Operation;

template <class MI>
void cleanUp(MI* mi, const CMPIContext* context) {
    if (mi != nullptr && mi->ft != nullptr && mi->ft->cleanup != nullptr)
        mi->ft->cleanup(mi, context, true);
}

constexpr const char* generic = "_Generic"; // serves any provider's name

// Calls a function that the provider may not have.
template <class MI, class... Parameters, class... Arguments>
CMPIStatus call(MI* mi, CMPIStatus (*function)(MI*, Parameters...), Arguments... arguments) {
    return function != nullptr ? function(mi, arguments...) : CMPIStatus{CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

std::string messageOf(CMPIrc code, const std::string& message) {
    return message.empty() ? codeName(code) : message;
}

} // namespace

// Modules stay in the process: providers leave threads and exit handlers behind.
Provider::Provider(State& state, const std::string& file, const std::string& name,
                   std::vector<std::string> classes)
    : state_(state),
      name_(name),
      classes_(std::move(classes)),
      module_(dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE)) {
    if (module_ == nullptr)
        throw LoadError(dlerror());
    for (const char* kind : {"InstanceMI", "MethodMI", "AssociationMI", "IndicationMI"})
        if (entryPoint(name_, kind) != nullptr && entryPoint(generic, kind) != nullptr)
            throw LoadError(file + ": it has _Generic_Create_" + kind + ", which contradicts that of a name");
    const Frame frame(state.shared_from_this());
    const CMPIContext* context = make<CMPIContext>(state, state.contextEntries());
    instances_ = create<CMPIInstanceMI>("InstanceMI", context);
    methods_ = create<CMPIMethodMI>("MethodMI", context);
    associations_ = create<CMPIAssociationMI>("AssociationMI", context);
    if (instances_ == nullptr && methods_ == nullptr && associations_ == nullptr && !provides("IndicationMI"))
        throw LoadError(file + ": no entry point " + name +
                        "_Create_InstanceMI, …_MethodMI, …_AssociationMI or …_IndicationMI");
}

Provider::~Provider() {
    const Frame frame(state_.shared_from_this());
    const CMPIContext* context = make<CMPIContext>(state_, {});
    cleanUp(indications_, context);
    cleanUp(associations_, context);
    cleanUp(methods_, context);
    cleanUp(instances_, context);
    dlclose(module_);
}

void* Provider::entryPoint(const std::string& provider, const char* kind) const {
    return dlsym(module_, (provider + "_Create_" + kind).c_str());
}

bool Provider::provides(const char* kind) const {
    return entryPoint(name_, kind) != nullptr || entryPoint(generic, kind) != nullptr;
}

template <class MI>
MI* Provider::create(const char* kind, const CMPIContext* context) {
    using Named = MI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
    using Generic = MI* (*)(const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    MI* mi = nullptr;
    if (void* named = entryPoint(name_, kind))
        mi = reinterpret_cast<Named>(named)(&state_.handle, context, &status);
    else if (void* unnamed = entryPoint(generic, kind))
        mi = reinterpret_cast<Generic>(unnamed)(&state_.handle, context, name_.c_str(), &status);
    else
        return nullptr;
    if (mi == nullptr || mi->ft == nullptr || status.rc != CMPI_RC_OK)
        throw LoadError(name_ + "_Create_" + kind + ": " + messageOf(status.rc, toString(status.msg)));
    return mi;
}

bool Provider::serves(std::string_view className) const {
    return classes_.empty() || std::any_of(classes_.begin(), classes_.end(),
                                           [&](const auto& name) { return sameName(name, className); });
}

ObjectPath Provider::pathFor(const Request& request) const {
    ObjectPath path = request.path;
    if (state_.isStrict() && request.operation == Operation::CreateInstance)
        path.keys.clear();
    return path;
}

PropertyList Provider::propertiesFor(const Request& request) const {
    if (request.properties || !state_.isStrict() || request.operation != Operation::ModifyInstance)
        return request.properties;
    PropertyList sent(std::in_place);
    for (const NamedValue& property : request.instance.properties)
        sent->push_back(property.name);
    return sent;
}

CMPIStatus Provider::callInstance(const Request& request, const CMPIContext* context,
                                  const CMPIResult* result) const {
    if (instances_ == nullptr)
        return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    const CMPIInstanceMIFT& table = *instances_->ft;
    const CMPIObjectPath* path = make<CMPIObjectPath>(state_, pathFor(request));
    const PropertyList list = propertiesFor(request);
    PropertyNames properties(list);
    const auto instance = [&] {
        Instance given = request.instance;
        if (given.path.className.empty())
            given.path = request.path;
        return make<CMPIInstance>(state_, InstanceContent(std::move(given)));
    };
    switch (request.operation) {
    case Operation::EnumerateInstances:
        return call(instances_, table.enumerateInstances, context, result, path, properties.names());
    case Operation::EnumerateInstanceNames:
        return call(instances_, table.enumerateInstanceNames, context, result, path);
    case Operation::GetInstance:
        return call(instances_, table.getInstance, context, result, path, properties.names());
    case Operation::ModifyInstance:
        return call(instances_, table.modifyInstance, context, result, path, instance(), properties.names());
    case Operation::CreateInstance:
        return call(instances_, table.createInstance, context, result, path, instance());
    case Operation::DeleteInstance:
        return call(instances_, table.deleteInstance, context, result, path);
    default:
        return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    }
}

CMPIStatus Provider::callMethod(const Request& request, const CMPIContext* context, const CMPIResult* result,
                                CMPIArgs* out) const {
    if (methods_ == nullptr)
        return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    const CMPIObjectPath* path = make<CMPIObjectPath>(state_, request.path);
    const CMPIArgs* in = make<CMPIArgs>(state_, request.arguments);
    return call(methods_, methods_->ft->invokeMethod, context, result, path, request.method.c_str(), in, out);
}

// A filter that is not given is NULL.
const char* nameOrNull(const std::string& name) {
    return name.empty() ? nullptr : name.c_str();
}

CMPIStatus Provider::callAssociation(const Request& request, const CMPIContext* context,
                                     const CMPIResult* result) const {
    if (associations_ == nullptr)
        return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    const CMPIAssociationMIFT& table = *associations_->ft;
    const CMPIObjectPath* path = make<CMPIObjectPath>(state_, request.path);
    PropertyNames properties(request.properties);
    const char* const assocClass = nameOrNull(request.filter.assocClass);
    const char* const resultClass = nameOrNull(request.filter.resultClass);
    const char* const role = nameOrNull(request.filter.role);
    const char* const resultRole = nameOrNull(request.filter.resultRole);
    switch (request.operation) {
    case Operation::Associators:
        return call(associations_, table.associators, context, result, path, assocClass, resultClass, role,
                    resultRole, properties.names());
    case Operation::AssociatorNames:
        return call(associations_, table.associatorNames, context, result, path, assocClass, resultClass,
                    role, resultRole);
    case Operation::References:
        return call(associations_, table.references, context, result, path, resultClass, role,
                    properties.names());
    default:
        return call(associations_, table.referenceNames, context, result, path, resultClass, role);
    }
}

CMPIStatus Provider::run(const Request& request, const CMPIContext* context, const CMPIResult* result,
                         CMPIArgs* out) const {
    switch (request.operation) {
    case Operation::InvokeMethod:
        return callMethod(request, context, result, out);
    case Operation::Associators:
    case Operation::AssociatorNames:
    case Operation::References:
    case Operation::ReferenceNames:
        return callAssociation(request, context, result);
    default:
        return callInstance(request, context, result);
    }
}

Reply Provider::execute(const Request& request, const NamedValues& entries) const {
    std::optional<Frame> frame(state_.shared_from_this());
    const CMPIContext* context = make<CMPIContext>(state_, entries);
    ResultContent returned;
    returned.take = request.takeInstance;
    CMPIResult* result = make<CMPIResult>(state_, std::move(returned));
    CMPIArgs* out = make<CMPIArgs>(state_, {});
    const CMPIStatus status = run(request, context, result, out);
    if (status.rc != CMPI_RC_OK)
        return toReply(status);
    ResultContent content = std::move(objectOf(result).content);
    NamedValues arguments = std::move(objectOf(out).content);
    frame.reset(); // leaves the returned instances to the reply alone
    Reply reply = takeReply(std::move(content));
    reply.arguments = std::move(arguments);
    return reply;
}

CMPIIndicationMI* Provider::indicationProvider(const CMPIContext* context) {
    const std::lock_guard lock(listening_);
    if (indications_ == nullptr)
        indications_ = create<CMPIIndicationMI>("IndicationMI", context);
    return indications_;
}

Reply Provider::enable(const NamedValues& entries) {
    if (!provides("IndicationMI"))
        return {.code = CMPI_RC_ERR_NOT_SUPPORTED, .message = {}};
    const Frame frame(state_.shared_from_this());
    const CMPIContext* context = make<CMPIContext>(state_, entries);
    CMPIIndicationMI* const indications = indicationProvider(context);
    return toReply(call(indications, indications->ft->enableIndications, context));
}

Reply Provider::listen(bool begin, const std::string& query, const ObjectPath& source,
                       const NamedValues& entries) {
    if (!provides("IndicationMI"))
        return {.code = CMPI_RC_ERR_NOT_SUPPORTED, .message = {}};
    const Frame frame(state_.shared_from_this());
    const CMPIContext* context = make<CMPIContext>(state_, entries);
    CMPIIndicationMI* const indications = indicationProvider(context);
    const CMPIIndicationMIFT& table = *indications->ft;
    const CMPISelectExp* filter = make<CMPISelectExp>(state_, {query});
    const CMPIObjectPath* path = make<CMPIObjectPath>(state_, source);
    const char* type = source.className.c_str();
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (begin) {
        status = call(indications, table.authorizeFilter, context, filter, type, path, state_.user.c_str());
        if (status.rc == CMPI_RC_OK)
            status = call(indications, table.activateFilter, context, filter, type, path, true);
        if (status.rc == CMPI_RC_OK)
            status = call(indications, table.enableIndications, context);
    } else {
        status = call(indications, table.disableIndications, context);
        if (status.rc == CMPI_RC_OK)
            status = call(indications, table.deActivateFilter, context, filter, type, path, true);
    }
    return toReply(status);
}

} // namespace broker
