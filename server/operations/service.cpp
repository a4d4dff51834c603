#include "operations/service.h"

#include "operations/method_call.h"
#include "operations/operation.h"

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;

const OperationRow* find(const std::string& name) {
    for (const auto rows :
         {instanceOperations(), associationOperations(), pullOperations(), classOperations()})
        for (const OperationRow& row : rows)
            if (broker::sameName(row.name, name))
                return &row;
    return nullptr;
}

} // namespace

cimxml::Response Service::answer(const cimxml::Call& call, const Caller& caller) {
    cimxml::Response response{.name = call.name, .isExtrinsic = call.isExtrinsic, .content = {}};
    try {
        response.content = run(call, caller);
    } catch (const CimError& error) {
        response.content = error;
    } catch (const std::bad_alloc&) {
        response.content = CimError(ErrorCode::ServerLimitsExceeded, "the server is out of memory");
    } catch (const std::exception& error) {
        response.content = CimError(ErrorCode::Failed, error.what());
    }
    return response;
}

cimxml::Body Service::run(const cimxml::Call& call, const Caller& caller) {
    if (const auto* error = std::get_if<CimError>(&call.content))
        throw *error;
    if (const auto* intrinsic = std::get_if<cimxml::IntrinsicCall>(&call.content))
        return runIntrinsic(call.name, *intrinsic, caller);
    return invokeMethod(call.name, std::get<cimxml::ExtrinsicCall>(call.content), objects_, caller);
}

cimxml::Body Service::runIntrinsic(const std::string& name, const cimxml::IntrinsicCall& call,
                                   const Caller& caller) {
    const OperationRow* row = find(name);
    if (row == nullptr)
        throw CimError(ErrorCode::NotSupported, "the operation " + name + " is not supported");
    const std::string nameSpace = requireNameSpace(call.nameSpace);
    requireAccess(caller, row->access);
    const Arguments arguments(call.parameters, row->arguments);
    return row->run({objects_, enumerations_, caller, nameSpace, arguments});
}

} // namespace server
