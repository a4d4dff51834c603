// CIM_ListenerDestinationSMTP: alert destinations of the e-mail kind, which mail a user of the BMC.
#include "indications/lan_destination.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

constexpr const char* const g_ListenerDestinationSMTPKeyList[4] = {"SystemCreationClassName",
                                                                   "CreationClassName", "SystemName", "Name"};

namespace ph::listener_destination_smtp {
namespace {

using namespace indications;
using Record = ListenerDestinationRecord;

constexpr std::string_view userPrefix = "UID:";

bool setMail(IpmiSession& session, const LanDestinationName& name, std::uint8_t userId, const char* subject,
             const char* message) {
    return CIM_TRZSetEmailDest(session.get(), name.selector, userId, subject, message, name.channel,
                               hookTimeout) == 0;
}

std::optional<bool> describe(IpmiSession& session, std::uint8_t channel, std::uint8_t selector,
                             const CIM_LANDestinationAddress& /*address*/, char* text) {
    std::uint8_t userId = 0;
    char subject[CIM_EMAIL_SUBJECT_SIZE + 1];
    char message[CIM_EMAIL_MESSAGE_SIZE + 1];
    if (CIM_TRZGetEmailDest(session.get(), selector, &userId, subject, message, channel, hookTimeout) != 0)
        return std::nullopt;
    std::snprintf(text, sizeof(Record::Destination), "%s%d", userPrefix.data(), userId);
    return true;
}

// A destination of the e-mail kind is taken, whomever it mails.
std::optional<bool> isActive(IpmiSession& /*session*/, const LanDestinationName& /*name*/,
                             const CIM_LANDestinationAddress& /*address*/) {
    return true;
}

const char* write(IpmiSession& session, const LanDestinationName& name, const char* destination, bool isNew,
                  const char* failed) {
    if (!std::string_view(destination).starts_with(userPrefix))
        return "Invalid Destination format for SMTP \n";
    const long long userId = std::strtoll(destination + userPrefix.size(), nullptr, 10);
    if (userId == 0)
        return nullptr; // nobody to mail: nothing to change
    const bool isWritten = (!isNew || setType(session, name, CIM_DESTINATION_EMAIL)) &&
                           setMail(session, name, static_cast<std::uint8_t>(userId), "Alert Event Occurred",
                                   "Following event occurred in the BMC");
    return isWritten ? nullptr : failed;
}

bool clear(IpmiSession& session, const LanDestinationName& name) {
    return setMail(session, name, 0, "", "") && setType(session, name, CIM_DESTINATION_PET_TRAP);
}

constexpr LanDestinationClass family{.name = "CIM_ListenerDestinationSMTP",
                                     .elementName = "SMTP LAN Listener Destination",
                                     .protocol = "SMTP",
                                     .type = CIM_DESTINATION_EMAIL,
                                     .invalidProtocol = "Invalid protocol mentioned in  'Name' property \n",
                                     .keys = g_ListenerDestinationSMTPKeyList,
                                     .describe = describe,
                                     .isActive = isActive,
                                     .write = write,
                                     .clear = clear,
                                     .get = PH_Get_ListenerDestinationSMTP};

} // namespace
} // namespace ph::listener_destination_smtp

int PH_Fill_ListenerDestinationSMTP(const char* destination, ListenerDestinationRecord* record) {
    return ph::indications::fillLanDestination(ph::listener_destination_smtp::family, destination, record);
}

int PH_Create_ListenerDestinationSMTPInstance(ListenerDestinationRecord** records, int* count,
                                              const char* systemName, const char* name,
                                              const char* destination, int namesOnly) {
    return ph::indications::appendLanDestination(ph::listener_destination_smtp::family, records, count,
                                                 systemName, name, destination, namesOnly);
}

int ValidateConstantKeyPropertiesLD(const CMPIObjectPath* ref) {
    return ph::indications::hasConstantKeys(ref, ph::listener_destination_smtp::family.name) ? 0 : -1;
}

PH_EXPORT_CLASS_FAMILY(ListenerDestinationSMTP, ListenerDestinationRecord,
                       ph::indications::lanDestinationDefinition<ph::listener_destination_smtp::family>)
