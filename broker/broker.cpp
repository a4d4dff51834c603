#include "broker/broker.h"

#include "data.h"
#include "provider.h"

#include <algorithm>
#include <iterator>

namespace broker {

namespace {

using Operation = Request::Operation;

size_t indexOf(std::string_view name) {
    const auto* entry = std::find(std::begin(broker::callNames), std::end(broker::callNames), name);
    if (entry == std::end(broker::callNames))
        throw std::invalid_argument("no CMPI function " + std::string(name));
    return static_cast<size_t>(entry - std::begin(broker::callNames));
}

template <class Function>
Reply withProviderOf(const State& state, const ObjectPath& path, Function function) {
    const auto provider = std::find_if(state.providers.begin(), state.providers.end(),
                                       [&](const auto& entry) { return entry->serves(path.className); });
    if (provider == state.providers.end())
        return {.code = CMPI_RC_ERR_INVALID_CLASS, .message = "No provider serves class " + path.className};
    return function(**provider);
}

bool asksForAssociations(const Request& request) {
    return request.operation == Operation::Associators || request.operation == Operation::AssociatorNames ||
           request.operation == Operation::References || request.operation == Operation::ReferenceNames;
}

template <class Item>
void append(std::vector<Item>& all, std::vector<Item>&& more) {
    if (all.empty())
        all = std::move(more);
    else
        std::move(more.begin(), more.end(), std::back_inserter(all));
}

// What an object is associated with may be known to any provider, whoever serves the object.
Reply askForAssociations(const State& state, const Request& request, const NamedValues& entries) {
    Reply all{.code = CMPI_RC_ERR_NOT_SUPPORTED, .message = "No provider serves associations"};
    for (const auto& provider : state.providers) {
        if (!provider->associates())
            continue;
        Reply reply = provider->execute(request, entries);
        if (!reply.ok())
            return reply;
        const bool isFirst = !all.ok();
        append(all.instances, std::move(reply.instances));
        append(all.paths, std::move(reply.paths));
        all.taken += reply.taken;
        all.done = reply.done && (isFirst || all.done);
        all.code = CMPI_RC_OK;
        all.message.clear();
    }
    return all;
}

} // namespace

Reply State::execute(const Request& request, const NamedValues& entries) {
    if (router)
        return router(request);
    if (asksForAssociations(request))
        return askForAssociations(*this, request, entries);
    return withProviderOf(*this, request.path,
                          [&](const Provider& provider) { return provider.execute(request, entries); });
}

NamedValues State::contextEntries(const std::string& requester) const {
    NamedValues entries{{CMPIInvocationFlags, {CMPI_uint32, std::uint64_t{0}}}};
    const std::string& principal = requester.empty() ? user : requester;
    if (!principal.empty())
        entries.push_back({CMPIPrincipal, {CMPI_string, principal}});
    return entries;
}

void State::requireDeclared(const std::string& className, std::string_view name, CMPIType type) const {
    if (!isStrict())
        return;
    const auto declared = declaredType(className, name);
    if (!declared)
        throw Failure{CMPI_RC_ERR_NO_SUCH_PROPERTY};
    if (*declared != CMPI_null && *declared != type)
        throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
}

Broker::Broker() : state_(std::make_shared<State>()) {}

Broker::~Broker() {
    state_->providers.clear();
}

void Broker::setRouter(Router router) {
    state_->router = std::move(router);
}

void Broker::setIndicationHandler(IndicationHandler handler) {
    state_->indicationHandler = std::move(handler);
}

void Broker::setLogHandler(LogHandler handler) {
    state_->logHandler = std::move(handler);
}

void Broker::beStrict(DeclaredType declared) {
    state_->declaredType = std::move(declared);
}

void Broker::setUser(std::string user) {
    state_->user = std::move(user);
}

void Broker::loadProvider(const std::string& file, const std::string& name,
                          std::vector<std::string> classes) {
    state_->providers.push_back(std::make_unique<Provider>(*state_, file, name, std::move(classes)));
}

Reply Broker::execute(const Request& request) {
    return state_->execute(request, state_->contextEntries(request.user));
}

Reply Broker::enumerateInstances(const ObjectPath& path, const PropertyList& properties) {
    return execute({.operation = Operation::EnumerateInstances, .path = path, .properties = properties});
}

Reply Broker::enumerateInstanceNames(const ObjectPath& path) {
    return execute({.operation = Operation::EnumerateInstanceNames, .path = path});
}

Reply Broker::getInstance(const ObjectPath& path, const PropertyList& properties) {
    return execute({.operation = Operation::GetInstance, .path = path, .properties = properties});
}

Reply Broker::modifyInstance(const ObjectPath& path, const Instance& instance,
                             const PropertyList& properties) {
    return execute({.operation = Operation::ModifyInstance,
                    .path = path,
                    .instance = instance,
                    .properties = properties});
}

Reply Broker::createInstance(const ObjectPath& path, const Instance& instance) {
    return execute({.operation = Operation::CreateInstance, .path = path, .instance = instance});
}

Reply Broker::deleteInstance(const ObjectPath& path) {
    return execute({.operation = Operation::DeleteInstance, .path = path});
}

Reply Broker::invokeMethod(const ObjectPath& path, const std::string& method, const NamedValues& arguments) {
    return execute(
        {.operation = Operation::InvokeMethod, .path = path, .method = method, .arguments = arguments});
}

Reply Broker::associators(const ObjectPath& path, const AssociationFilter& filter,
                          const PropertyList& properties) {
    return execute(
        {.operation = Operation::Associators, .path = path, .properties = properties, .filter = filter});
}

Reply Broker::associatorNames(const ObjectPath& path, const AssociationFilter& filter) {
    return execute({.operation = Operation::AssociatorNames, .path = path, .filter = filter});
}

Reply Broker::references(const ObjectPath& path, const AssociationFilter& filter,
                         const PropertyList& properties) {
    return execute(
        {.operation = Operation::References, .path = path, .properties = properties, .filter = filter});
}

Reply Broker::referenceNames(const ObjectPath& path, const AssociationFilter& filter) {
    return execute({.operation = Operation::ReferenceNames, .path = path, .filter = filter});
}

Reply Broker::subscribe(const std::string& query, const ObjectPath& source) {
    return withProviderOf(*state_, source, [&](Provider& provider) {
        return provider.listen(true, query, source, state_->contextEntries());
    });
}

Reply Broker::enableIndications(const ObjectPath& source) {
    return withProviderOf(*state_, source,
                          [&](Provider& provider) { return provider.enable(state_->contextEntries()); });
}

Reply Broker::unsubscribe(const std::string& query, const ObjectPath& source) {
    return withProviderOf(*state_, source, [&](Provider& provider) {
        return provider.listen(false, query, source, state_->contextEntries());
    });
}

const CMPIBroker* Broker::handle() const {
    return &state_->handle;
}

std::vector<std::string> Broker::callNames() {
    return {std::begin(broker::callNames), std::end(broker::callNames)};
}

unsigned Broker::calls(std::string_view name) const {
    return state_->counters[indexOf(name)].calls;
}

void Broker::failCall(std::string_view name, unsigned nth) {
    State::Counter& counter = state_->counters[indexOf(name)];
    counter.failAt = nth == 0 ? 0 : counter.calls + nth;
}

void Broker::resetCalls() {
    for (State::Counter& counter : state_->counters) {
        counter.calls = 0;
        counter.failAt = 0;
    }
}

size_t Broker::liveObjects() const {
    return state_->liveObjects;
}

Scope::Scope(const Broker& broker) : frame_(std::make_unique<Frame>(broker.state_)) {}

Scope::~Scope() = default;

CMPIObjectPath* Scope::make(const ObjectPath& path) {
    return broker::make<CMPIObjectPath>(*frame_->state, frame_->arena, path);
}

CMPIInstance* Scope::make(const Instance& instance) {
    return broker::make<CMPIInstance>(*frame_->state, frame_->arena, InstanceContent(instance));
}

CMPIArgs* Scope::makeArgs(const NamedValues& arguments) {
    return broker::make<CMPIArgs>(*frame_->state, frame_->arena, arguments);
}

CMPIContext* Scope::makeContext(const NamedValues& entries) {
    return broker::make<CMPIContext>(*frame_->state, frame_->arena, entries);
}

CMPIResult* Scope::makeResult() {
    return broker::make<CMPIResult>(*frame_->state, frame_->arena, {});
}

CMPIData Scope::makeData(const Value& value) {
    return dataOf(*frame_->state, value);
}

PropertyNames::PropertyNames(const PropertyList& properties) : given_(properties.has_value()) {
    if (given_)
        for (const std::string& name : *properties)
            names_.push_back(name.c_str());
    names_.push_back(nullptr);
}

std::string codeName(CMPIrc code) {
    struct Name {
        CMPIrc code;
        const char* name;
    };
#define BROKER_CODE(code)                                                                                    \
    { code, #code }
    static constexpr Name names[] = {BROKER_CODE(CMPI_RC_OK),
                                     BROKER_CODE(CMPI_RC_ERR_FAILED),
                                     BROKER_CODE(CMPI_RC_ERR_ACCESS_DENIED),
                                     BROKER_CODE(CMPI_RC_ERR_INVALID_NAMESPACE),
                                     BROKER_CODE(CMPI_RC_ERR_INVALID_PARAMETER),
                                     BROKER_CODE(CMPI_RC_ERR_INVALID_CLASS),
                                     BROKER_CODE(CMPI_RC_ERR_NOT_FOUND),
                                     BROKER_CODE(CMPI_RC_ERR_NOT_SUPPORTED),
                                     BROKER_CODE(CMPI_RC_ERR_ALREADY_EXISTS),
                                     BROKER_CODE(CMPI_RC_ERR_NO_SUCH_PROPERTY),
                                     BROKER_CODE(CMPI_RC_ERR_TYPE_MISMATCH),
                                     BROKER_CODE(CMPI_RC_ERR_METHOD_NOT_AVAILABLE),
                                     BROKER_CODE(CMPI_RC_ERR_METHOD_NOT_FOUND),
                                     BROKER_CODE(CMPI_RC_ERR_INVALID_HANDLE),
                                     BROKER_CODE(CMPI_RC_ERR_INVALID_DATA_TYPE),
                                     BROKER_CODE(CMPI_RC_ERROR_SYSTEM),
                                     BROKER_CODE(CMPI_RC_ERROR)};
#undef BROKER_CODE
    const auto* entry =
        std::find_if(std::begin(names), std::end(names), [&](const Name& row) { return row.code == code; });
    return entry != std::end(names) ? entry->name : std::to_string(code);
}

} // namespace broker
