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
        throw CimError(errorCode(reply.code), description(reply));
    for (broker::ObjectPath& path : reply.paths)
        completePath(path, request.path.nameSpace, caller);
    for (broker::Instance& instance : reply.instances)
        completePath(instance.path, request.path.nameSpace, caller);
    return reply;
}

} // namespace server
