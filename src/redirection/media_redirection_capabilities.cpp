// CIM_MediaRedirectionCapabilities: the kinds of media that can be redirected.
#include "redirection/capabilities.h"

#include <iterator>

constexpr const char* const g_MediaRedirectionCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::media_redirection_capabilities {
namespace {

using Record = RedirectionCapabilitiesRecord;

// One number that is not told would shift the others to another kind.
bool isToldOfEach(const Record& capabilities) {
    return capabilities.SharingModeSupported[0] != SharingMode::Unknown;
}

constexpr Property mediaProperties[] = {
    PH_PROPERTY(Record, ConnectionModesSupported),
    PH_PROPERTY(Record, DevicesSupported),
    PH_PROPERTY_IF(Record, MaxDevicesSupported, isToldOfEach),
    PH_PROPERTY(Record, MaxDevicesPerSAP),
};
constexpr auto properties = joined(redirection::capabilitiesProperties, mediaProperties);

int enumerate(RecordArray<Record>& all, Detail detail) {
    using namespace DevicesSupported;
    using redirection::mediaServices;
    IpmiSession session;
    const bool asksMore = detail == Detail::All;
    if (asksMore && !session.open())
        return -1;
    Record* media = redirection::append(
        all, "Media", asksMore ? redirection::mostSessions(session.get(), mediaServices) : 0);
    if (media == nullptr)
        return -1;
    setList(media->ConnectionModesSupported, {ConnectionMode::Listen});
    setList(media->DevicesSupported, {CdRomDrive, DisketteDrive, DiskDrive});
    setList(media->MaxDevicesSupported, {});
    setList(media->MaxDevicesPerSAP, {1, 1, 1});
    static_assert(std::size(mediaServices) < std::size(Record{}.MaxDevicesSupported));
    for (std::size_t i = 0; asksMore && i < std::size(mediaServices); ++i)
        if (const auto conf = redirection::readService(session.get(), mediaServices[i]))
            media->MaxDevicesSupported[i] = conf->maxSessions;
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_MediaRedirectionCapabilities",
                                             .superclass = "CIM_RedirectionServiceCapabilities",
                                             .source = "Get Service Configuration (OEM)",
                                             .keys = g_MediaRedirectionCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::media_redirection_capabilities

PH_EXPORT_CLASS_FAMILY(MediaRedirectionCapabilities, RedirectionCapabilitiesRecord,
                       ph::media_redirection_capabilities::definition)
