// CIM_MediaRedirectionCapabilities: the kinds of media that can be redirected.
#include "redirection/capabilities.h"

#include <iterator>

constexpr const char* const g_MediaRedirectionCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

using Record = RedirectionCapabilitiesRecord;

// One number that is not told would shift the others to another kind.
bool isToldOfEach(const Record& capabilities) {
    return capabilities.SharingModeSupported[0] != ph::SharingMode::Unknown;
}

constexpr ph::Property mediaProperties[] = {
    PH_PROPERTY(Record, ConnectionModesSupported),
    PH_PROPERTY(Record, DevicesSupported),
    PH_PROPERTY_IF(Record, MaxDevicesSupported, isToldOfEach),
    PH_PROPERTY(Record, MaxDevicesPerSAP),
};
constexpr auto properties = ph::joined(ph::redirection::capabilitiesProperties, mediaProperties);

int enumerate(ph::RecordArray<Record>& all, ph::Detail detail) {
    using namespace ph::DevicesSupported;
    using ph::redirection::mediaServices;
    ph::IpmiSession session;
    const bool asksMore = detail == ph::Detail::All;
    if (asksMore && !session.open())
        return -1;
    Record* media = ph::redirection::append(
        all, "Media", asksMore ? ph::redirection::mostSessions(session.get(), mediaServices) : 0);
    if (media == nullptr)
        return -1;
    ph::setList(media->ConnectionModesSupported, {ph::ConnectionMode::Listen});
    ph::setList(media->DevicesSupported, {CdRomDrive, DisketteDrive, DiskDrive});
    ph::setList(media->MaxDevicesSupported, {});
    ph::setList(media->MaxDevicesPerSAP, {1, 1, 1});
    static_assert(std::size(mediaServices) < std::size(Record{}.MaxDevicesSupported));
    for (std::size_t i = 0; asksMore && i < std::size(mediaServices); ++i)
        if (const auto conf = ph::redirection::readService(session.get(), mediaServices[i]))
            media->MaxDevicesSupported[i] = conf->maxSessions;
    return 0;
}

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_MediaRedirectionCapabilities",
                                                 .superclass = "CIM_RedirectionServiceCapabilities",
                                                 .source = "Get Service Configuration (OEM)",
                                                 .keys = g_MediaRedirectionCapabilitiesKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(MediaRedirectionCapabilities, Record, definition)
