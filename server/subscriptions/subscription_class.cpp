#include "subscriptions/subscription_class.h"

#include "cimxml/cim_error.h"

#include <algorithm>

namespace server {
namespace {

using broker::Value;
using cimxml::CimError;
using cimxml::ErrorCode;
using Kind = broker::Request::Operation;

constexpr const char* className = "CIM_IndicationSubscription";
constexpr const char* noSuch = "there is no such subscription";

broker::ObjectPath reference(const broker::NamedValues& values, const char* name) {
    const Value* value = broker::find(values, name);
    const auto* path = value != nullptr ? value->as<Value::Reference>() : nullptr;
    if (path == nullptr)
        throw CimError(ErrorCode::InvalidParameter, std::string(name) + " is missing");
    return **path;
}

Subscription subscriptionOf(const broker::NamedValues& values) {
    Subscription subscription{reference(values, "Filter"), reference(values, "Handler")};
    subscription.filter.host.clear(); // whatever this server is called today
    subscription.handler.host.clear();
    return subscription;
}

Value toValue(const broker::ObjectPath& path) {
    return {CMPI_ref, std::make_shared<const broker::ObjectPath>(path)};
}

broker::Instance toInstance(const Subscription& subscription, const std::string& nameSpace) {
    enum : std::uint64_t { stateEnabled = 2, ignoreErrors = 2, noRepetitionPolicy = 2 };
    const broker::NamedValues keys{{"Filter", toValue(subscription.filter)},
                                   {"Handler", toValue(subscription.handler)}};
    broker::Instance instance{
        .path = {.host = {}, .nameSpace = nameSpace, .className = className, .keys = keys},
        .properties = keys};
    for (const auto& [name, number] : {std::pair{"SubscriptionState", stateEnabled},
                                       {"OnFatalErrorPolicy", ignoreErrors},
                                       {"RepeatNotificationPolicy", noRepetitionPolicy}})
        instance.properties.push_back({name, {CMPI_uint16, std::uint64_t{number}}});
    return instance;
}

} // namespace

SubscriptionClass::SubscriptionClass(SubscriptionStore& store, Listen listen)
    : OwnClass(className), store_(store), listen_(std::move(listen)) {}

// Events from before are delivered to nobody: the log is followed first.
void SubscriptionClass::create(const Subscription& made) {
    SubscriptionStore::check(made);
    listen_(true);
    if (!store_.add(made))
        throw CimError(ErrorCode::AlreadyExists, "the subscription is there already");
}

void SubscriptionClass::remove(const Subscription& removed) {
    if (!store_.remove(removed))
        throw CimError(ErrorCode::NotFound, noSuch);
    if (store_.all().empty())
        listen_(false);
}

broker::Reply SubscriptionClass::execute(const broker::Request& request, const Caller&) {
    const std::string& nameSpace = request.path.nameSpace;
    broker::Reply reply{.done = true};
    switch (request.operation) {
    case Kind::EnumerateInstances:
        for (const Subscription& each : store_.all())
            reply.instances.push_back(toInstance(each, nameSpace));
        break;
    case Kind::EnumerateInstanceNames:
        for (const Subscription& each : store_.all())
            reply.paths.push_back(toInstance(each, nameSpace).path);
        break;
    case Kind::GetInstance: {
        const auto all = store_.all();
        const auto found = std::find_if(
            all.begin(), all.end(), [wanted = subscriptionOf(request.path.keys)](const Subscription& each) {
                return isSame(each, wanted);
            });
        if (found == all.end())
            throw CimError(ErrorCode::NotFound, noSuch);
        reply.instances.push_back(toInstance(*found, nameSpace));
        break;
    }
    case Kind::CreateInstance: {
        const Subscription made = subscriptionOf(request.instance.properties);
        create(made);
        reply.paths.push_back(toInstance(made, nameSpace).path);
        break;
    }
    case Kind::DeleteInstance:
        remove(subscriptionOf(request.path.keys));
        break;
    default:
        throw CimError(ErrorCode::NotSupported, "subscriptions are created and deleted, not changed");
    }
    return reply;
}

} // namespace server
