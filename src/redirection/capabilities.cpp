#include "redirection/capabilities.h"

#include "Utility/values/text_writer.h"

namespace ph::redirection {

RedirectionCapabilitiesRecord* append(RecordArray<RedirectionCapabilitiesRecord>& all, const char* service,
                                      unsigned mostSessions) {
    RedirectionCapabilitiesRecord* capabilities = all.append();
    if (capabilities == nullptr)
        return nullptr;
    TextWriter(capabilities->InstanceID).text(service).text("RedirectionCapabilities");
    TextWriter(capabilities->ElementName).text(service).text(" Redirection Capabilities");
    setList(capabilities->RequestedStatesSupported, {});
    setList(capabilities->SharingModeSupported, {sharingMode(mostSessions)});
    return capabilities;
}

} // namespace ph::redirection
