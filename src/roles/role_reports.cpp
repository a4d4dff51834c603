// Methods ShowRoles and ShowAccess.
#include "provider_helper/computer_system.h"
#include "roles/role_members.h"
#include "roles/role_methods.h"
#include "roles/role_records.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/hosted_element.h"

#include <cmpimacs.h>
#include <cstring>

namespace ph {
namespace {

constexpr MethodValue unsupportedSubject{16000};
constexpr MethodValue unsupportedTarget{16002};
constexpr MethodValue nullNotSupported{16004};

// An out-argument that is an array of objects. An array may take over the objects themselves.
class ObjectArray {
public:
    explicit ObjectArray(CMPIType type) : type_(type) {}

    bool add(CMPIInstance* instance) {
        CMPIValue value{};
        value.inst = instance;
        return add(value, instance != nullptr);
    }
    bool add(CMPIObjectPath* path) {
        CMPIValue value{};
        value.ref = path;
        return add(value, path != nullptr);
    }
    bool returnAs(const Request& request, const char* name) const {
        CMPIStatus status = success;
        CMPIValue result{};
        result.array = CMNewArray(request.broker, static_cast<CMPICount>(values_.size()), type_, &status);
        if (result.array == nullptr || status.rc != CMPI_RC_OK)
            return false;
        for (CMPICount i = 0; i < values_.size(); ++i)
            if (CMSetArrayElementAt(result.array, i, &values_[i], type_).rc != CMPI_RC_OK)
                return false;
        return CMAddArg(request.out, name, &result, type_ | CMPI_ARRAY).rc == CMPI_RC_OK;
    }

private:
    bool add(const CMPIValue& value, bool isMade) {
        if (isMade)
            values_.push_back(value);
        return isMade;
    }

    CMPIType type_;
    std::vector<CMPIValue> values_;
};

CMPIInstance* makePrivilege(const Request& request, const PrivilegeLevel& level) {
    const PrivilegeRecord record = privilegeOf(level);
    return PH_MakeInst_Privilege(request.broker, request.context, request.ref, nullptr, &record, 0, 0,
                                 nullptr);
}

CMPIInstance* makeRole(const Request& request, const PrivilegeLevel& level) {
    const RoleRecord record = roleOf(level);
    return PH_MakeInst_Role(request.broker, request.context, request.ref, nullptr, &record, 0, 0, nullptr);
}

CMPIObjectPath* makeIdentityPath(const Request& request, std::uint8_t slot) {
    IdentityRecord record{};
    nameIdentity(record, slot);
    return PH_MakePath_Identity(request.broker, request.context, request.ref, &record, nullptr);
}

CMPIObjectPath* makeProcessorPath(const Request& request) {
    HostComputerSystemRecord record{};
    copyText(record.CreationClassName, processorClass);
    return PH_GetSPSystemName(record.Name) == 0
               ? PH_MakePath_SPComputerSystem(request.broker, request.context, request.ref, &record, nullptr)
               : nullptr;
}

// All roles are limited to the service processor, and to nothing else.
bool isProcessor(const CMPIObjectPath* path) {
    char systemName[256] = "";
    const char* name = keyText(path, "Name");
    return isOfClass(path, processorClass) && name != nullptr && PH_GetSPSystemName(systemName) == 0 &&
           std::strcmp(name, systemName) == 0;
}

// What the arguments of both methods name. One of them may be missing, but must not be something else.
struct Question {
    const CMPIObjectPath* subject = nullptr;
    const CMPIObjectPath* target = nullptr;
    bool isWellFormed = true;
    std::uint8_t slot = 0; // of the subject
    bool isAboutUser = false;

    explicit Question(const CMPIArgs* in) {
        take(in, "Subject", subject);
        take(in, "Target", target);
        isAboutUser = subject != nullptr && isOfClass(subject, identityClass) &&
                      parseIdentityName(keyText(subject, "InstanceID"), slot);
    }

private:
    void take(const CMPIArgs* in, const char* name, const CMPIObjectPath*& path) {
        const auto data = argument(in, name);
        if (data && data->type == CMPI_ref)
            path = data->value.ref;
        isWellFormed = isWellFormed && (!data || path != nullptr);
    }
};

bool hasRole(const std::vector<ChannelAccess>& channels, const PrivilegeLevel& level) {
    for (const ChannelAccess& each : channels)
        if (each.limit() == level.limit)
            return true;
    return false;
}

// The highest level that a user may log in with; nullptr when it cannot log in.
const PrivilegeLevel* highestUsable(const std::vector<ChannelAccess>& channels) {
    const PrivilegeLevel* highest = nullptr;
    for (const ChannelAccess& each : channels)
        if (const PrivilegeLevel* level = each.isUsable() ? each.level() : nullptr;
            level != nullptr && (highest == nullptr || level->limit > highest->limit))
            highest = level;
    return highest;
}

constexpr Refusal noSession{CMPI_RC_ERR_FAILED, "There is no session with the BMC"};
constexpr Refusal noReference{CMPI_RC_ERR_INVALID_PARAMETER, "Subject or Target is no reference"};
constexpr Refusal noUser{CMPI_RC_ERR_NOT_FOUND, "There is no such user, or it cannot be read"};
constexpr Refusal noAnswer{CMPI_RC_ERR_FAILED, "The answer cannot be made"};

} // namespace

MethodAnswer showRoles(MethodCall& call) {
    const Request& request = call.request;
    const Question question(request.in);
    if (!question.isWellFormed)
        return call.refuse(noReference);
    if (question.subject == nullptr && question.target == nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Subject or Target is needed");
    if (question.subject != nullptr && !question.isAboutUser)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Subject is no identity of a user");

    std::vector<ChannelAccess> channels;
    if (question.subject != nullptr) {
        IpmiSession session;
        if (!session.open())
            return call.refuse(noSession);
        const RoleMembers members(session.get());
        PHUserEntry user;
        if (!members.readUser(question.slot, user))
            return call.refuse(noUser);
        channels = members.accessOf(question.slot);
    }
    ObjectArray roles(CMPI_instance);
    ObjectArray privileges(CMPI_instance);
    if (question.target == nullptr || isProcessor(question.target))
        for (const PrivilegeLevel& level : privilegeLevels())
            if (question.subject == nullptr || hasRole(channels, level))
                if (!roles.add(makeRole(request, level)) || !privileges.add(makePrivilege(request, level)))
                    return call.refuse(noAnswer);
    if (!roles.returnAs(request, "Roles") || !privileges.returnAs(request, "Privileges"))
        return call.refuse(noAnswer);
    return methodDone;
}

MethodAnswer showAccess(MethodCall& call) {
    const Request& request = call.request;
    const Question question(request.in);
    if (!question.isWellFormed)
        return call.refuse(noReference);
    if (question.subject == nullptr && question.target == nullptr)
        return nullNotSupported;
    if (question.subject != nullptr && !question.isAboutUser)
        return unsupportedSubject;
    if (question.target != nullptr && !isProcessor(question.target))
        return unsupportedTarget;

    IpmiSession session;
    if (!session.open())
        return call.refuse(noSession);
    const RoleMembers members(session.get());
    std::vector<PHUserEntry> users(1);
    if (question.subject != nullptr ? !members.readUser(question.slot, users[0])
                                    : (users.clear(), !members.readUsers(users)))
        return call.refuse(noUser);
    ObjectArray subjects(CMPI_ref);
    ObjectArray targets(CMPI_ref);
    ObjectArray privileges(CMPI_instance);
    for (const PHUserEntry& user : users)
        if (const PrivilegeLevel* level = highestUsable(members.accessOf(user.slot)); level != nullptr)
            if (!subjects.add(makeIdentityPath(request, user.slot)) ||
                !targets.add(makeProcessorPath(request)) || !privileges.add(makePrivilege(request, *level)))
                return call.refuse(noAnswer);
    if (!subjects.returnAs(request, "OutSubjects") || !targets.returnAs(request, "OutTargets") ||
        !privileges.returnAs(request, "Privileges"))
        return call.refuse(noAnswer);
    return methodDone;
}

} // namespace ph
