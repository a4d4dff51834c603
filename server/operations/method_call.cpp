#include "operations/method_call.h"

#include "cimxml/cim_error.h"
#include "cimxml/value_writer.h"
#include "operations/catalog.h"
#include "operations/typing.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;

// What IPMI lets operators do (IPMI 2.0, appendix G): chassis control, and the event log. All else that a
// method does is for administrators.
constexpr const char* operatorsClasses[] = {"CIM_HostComputerSystem", "CIM_OperatingSystem",
                                            "CIM_PowerManagementService", "CIM_RecordLog", "CIM_TimeService"};

Access accessNeeded(const std::string& className) {
    return std::any_of(std::begin(operatorsClasses), std::end(operatorsClasses),
                       [&](const char* each) { return broker::sameName(each, className); })
               ? Access::Operate
               : Access::Administer;
}

} // namespace

void requireAccess(const Caller& caller, Access needed) {
    if (caller.access < needed)
        throw CimError(ErrorCode::AccessDenied, "user " + caller.user + " lacks the privilege");
}

cimxml::Body invokeMethod(const std::string& name, const cimxml::ExtrinsicCall& call, Objects& objects,
                          const Caller& caller) {
    broker::ObjectPath path = call.target;
    path.nameSpace = requireNameSpace(path.nameSpace);
    const schema::Class* found = findClass(path.className, path.nameSpace);
    complete(path, path.nameSpace);
    broker::Request request{.operation = broker::Request::Operation::InvokeMethod,
                            .path = path,
                            .method = name,
                            .arguments = call.arguments};
    if (found != nullptr) {
        const schema::Method* method = found->method(name);
        if (method == nullptr)
            throw CimError(ErrorCode::MethodNotFound, path.className + " has no method " + name);
        request.method = method->name;
        complete(request.arguments, *method, path.nameSpace);
    }
    requireAccess(caller, accessNeeded(path.className));
    broker::Reply reply = objects.execute(std::move(request), caller);
    return [reply = std::move(reply)](cimxml::XmlWriter& xml) {
        if (!reply.values.empty())
            cimxml::writeReturnValue(xml, reply.values.front());
        for (const auto& [argument, value] : reply.arguments)
            cimxml::writeParameter(xml, argument, value);
    };
}

} // namespace server
