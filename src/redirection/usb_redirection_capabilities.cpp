// CIM_USBRedirectionCapabilities: how drives are redirected to the host's USB.
#include "redirection/capabilities.h"

constexpr const char* const g_USBRedirectionCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::usb_redirection_capabilities {
namespace {

using Record = RedirectionCapabilitiesRecord;

constexpr Property usbProperties[] = {
    PH_PROPERTY(Record, ConnectionModesSupported),
    PH_PROPERTY(Record, SAPCapabilitiesSupported),
    PH_PROPERTY(Record, SingleClassPerSAP),
};
constexpr auto properties = joined(redirection::capabilitiesProperties, usbProperties);

int enumerate(RecordArray<Record>& all, Detail detail) {
    IpmiSession session;
    const bool asksMore = detail == Detail::All;
    if (asksMore && !session.open())
        return -1;
    Record* usb = redirection::append(
        all, "USB", asksMore ? redirection::mostSessions(session.get(), redirection::mediaServices) : 0);
    if (usb == nullptr)
        return -1;
    setList(usb->ConnectionModesSupported, {ConnectionMode::Listen});
    setList(usb->SAPCapabilitiesSupported, {SAPCapabilitiesSupported::PreConfigured});
    usb->SingleClassPerSAP = true;
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_USBRedirectionCapabilities",
                                             .superclass = "CIM_RedirectionServiceCapabilities",
                                             .source = "Get Service Configuration (OEM)",
                                             .keys = g_USBRedirectionCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::usb_redirection_capabilities

PH_EXPORT_CLASS_FAMILY(USBRedirectionCapabilities, RedirectionCapabilitiesRecord,
                       ph::usb_redirection_capabilities::definition)
