// CIM_USBRedirectionCapabilities: how drives are redirected to the host's USB.
#include "redirection/capabilities.h"

constexpr const char* const g_USBRedirectionCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

using Record = RedirectionCapabilitiesRecord;

constexpr ph::Property usbProperties[] = {
    PH_PROPERTY(Record, ConnectionModesSupported),
    PH_PROPERTY(Record, SAPCapabilitiesSupported),
    PH_PROPERTY(Record, SingleClassPerSAP),
};
constexpr auto properties = ph::joined(ph::redirection::capabilitiesProperties, usbProperties);

int enumerate(ph::RecordArray<Record>& all, ph::Detail detail) {
    ph::IpmiSession session;
    const bool asksMore = detail == ph::Detail::All;
    if (asksMore && !session.open())
        return -1;
    Record* usb = ph::redirection::append(
        all, "USB",
        asksMore ? ph::redirection::mostSessions(session.get(), ph::redirection::mediaServices) : 0);
    if (usb == nullptr)
        return -1;
    ph::setList(usb->ConnectionModesSupported, {ph::ConnectionMode::Listen});
    ph::setList(usb->SAPCapabilitiesSupported, {ph::SAPCapabilitiesSupported::PreConfigured});
    usb->SingleClassPerSAP = true;
    return 0;
}

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_USBRedirectionCapabilities",
                                                 .superclass = "CIM_RedirectionServiceCapabilities",
                                                 .source = "Get Service Configuration (OEM)",
                                                 .keys = g_USBRedirectionCapabilitiesKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(USBRedirectionCapabilities, Record, definition)
