#include "operations/objects.h"

#include "cimxml/cim_error.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;
using Kind = broker::Request::Operation;

// CMPI's codes are those of DSP0200, and beyond them some of its own.
ErrorCode errorCode(CMPIrc code) {
    return code < static_cast<CMPIrc>(ErrorCode::LastCode) ? static_cast<ErrorCode>(code) : ErrorCode::Failed;
}

// Some messages of providers end with blanks or a line end.
std::string description(const broker::Reply& reply) {
    const std::string message = reply.message.substr(0, reply.message.find_last_not_of(" \n") + 1);
    return message.empty() ? broker::codeName(reply.code) : message;
}

void completePath(broker::ObjectPath& path, const std::string& nameSpace, const Caller& caller) {
    if (path.nameSpace.empty())
        path.nameSpace = nameSpace;
    if (path.host.empty())
        path.host = caller.host;
}

} // namespace

bool OwnClass::answers(const broker::Request& request) const {
    switch (request.operation) {
    case Kind::Associators:
    case Kind::AssociatorNames:
    case Kind::References:
    case Kind::ReferenceNames:
        return false;
    default:
        return broker::sameName(request.path.className, className_);
    }
}

bool isSameInstance(const broker::ObjectPath& left, const broker::ObjectPath& right) {
    return left.keys.size() == right.keys.size() &&
           std::all_of(left.keys.begin(), left.keys.end(), [&](const broker::NamedValue& key) {
               const broker::Value* value = broker::find(right.keys, key.name);
               return value != nullptr && *value == key.value;
           });
}

// Most classes fail with one code whether an instance is not there or something went wrong with it.
bool Objects::isOfNothing(const broker::Request& request, const broker::Reply& reply, const Caller& caller) {
    constexpr Kind ofInstances[] = {Kind::GetInstance, Kind::ModifyInstance, Kind::DeleteInstance,
                                    Kind::InvokeMethod};
    if (reply.code != CMPI_RC_ERR_FAILED ||
        std::find(std::begin(ofInstances), std::end(ofInstances), request.operation) == std::end(ofInstances))
        return false;
    broker::Request names{.operation = Kind::EnumerateInstanceNames, .path = request.path};
    names.user = request.user;
    names.path.keys.clear();
    const broker::Reply all = ask(names, caller);
    return all.ok() && std::none_of(all.paths.begin(), all.paths.end(),
                                    [&](const auto& path) { return isSameInstance(path, request.path); });
}

broker::Reply Objects::ask(const broker::Request& request, const Caller& caller) {
    struct Leaving {
        RequestOrigin& origin;
        ~Leaving() { origin.leave(); }
    };
    origin_.enter(caller);
    const Leaving leaving{origin_};
    return broker_.execute(request);
}

broker::Reply Objects::execute(broker::Request request, const Caller& caller) {
    request.user = caller.user;
    const auto own =
        std::find_if(own_.begin(), own_.end(), [&](const auto& each) { return each->answers(request); });
    broker::Reply reply = own != own_.end() ? (*own)->execute(request, caller) : ask(request, caller);
    if (!reply.ok())
        throw CimError(isOfNothing(request, reply, caller) ? ErrorCode::NotFound : errorCode(reply.code),
                       description(reply));
    for (broker::ObjectPath& path : reply.paths)
        completePath(path, request.path.nameSpace, caller);
    for (broker::Instance& instance : reply.instances)
        completePath(instance.path, request.path.nameSpace, caller);
    return reply;
}

} // namespace server
