// The services of the BMC that redirect screen and media (CIM_SERVICE_…), and which services and access points stand for
// them.
#pragma once

#include "provider_helper/redirection.h"
#include "redirection/redirection_state.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"

#include <cstring>
#include <optional>
#include <span>

namespace ph::redirection {

inline constexpr const char* redirectionServiceClass = "CIM_RedirectionService";
inline constexpr const char* usbServiceClass = "CIM_USBRedirectionService";
inline constexpr const char* kvmAccessPointClass = "CIM_KVMRedirectionSAP";
inline constexpr const char* mediaAccessPointClass = "CIM_MediaRedirectionSAP";
inline constexpr const char* usbAccessPointClass = "CIM_USBRedirectionSAP";

// In the order of their kinds: CD, floppy, hard disk.
inline constexpr std::uint32_t mediaServices[] = {CIM_SERVICE_CD_MEDIA, CIM_SERVICE_FD_MEDIA,
                                                  CIM_SERVICE_HD_MEDIA};
inline constexpr std::uint32_t kvmServices[] = {CIM_SERVICE_KVM};

struct ServiceRow {
    const char* className;
    const char* name;
    const char* elementName;
    std::uint16_t type; // DMTF RedirectionServiceType
    std::span<const std::uint32_t> services;
};
struct AccessPointRow {
    const char* className;
    const char* name;
    const char* elementName;
    const char* service; // Name of its CIM_ProtocolService
    std::uint32_t bit;
};
std::span<const ServiceRow> serviceRows();
std::span<const AccessPointRow> accessPointRows();

// Returns nullptr for a name that no row of the class has.
template <class Row>
const Row* findRow(std::span<const Row> rows, std::string_view className, const char* name) {
    for (const Row& row : rows)
        if (row.className == className && std::strcmp(row.name, name) == 0)
            return &row;
    return nullptr;
}

// Appends the elements of the class, or the one with `onlyName`. Only to fill them needs a session.
template <class Row, class Record>
int enumerateRows(std::span<const Row> rows, const char* className,
                  int (*fill)(IPMI20_SESSION_T* session, Record* record), RecordArray<Record>& elements,
                  Detail detail, const char* onlyName = nullptr) {
    char systemName[256] = "";
    IpmiSession session;
    if (PH_GetSPSystemName(systemName) != 0 || (detail == Detail::All && !session.open()))
        return -1;
    for (const Row& row : rows) {
        if (std::strcmp(row.className, className) != 0 ||
            (onlyName != nullptr && std::strcmp(row.name, onlyName) != 0))
            continue;
        Record* element = elements.append();
        if (element == nullptr)
            return -1;
        setHostedKeys(*element, processorClass, systemName, className);
        copyText(element->Name, row.name);
        if (detail == Detail::All && fill(session.get(), element) != 0)
            return -1;
    }
    return 0;
}

// Nothing when the BMC does not tell.
std::optional<CIM_ServiceConf> readService(IPMI20_SESSION_T* session, std::uint32_t bit);

// Returns the most sessions that any of the services has at a time; 0 when the BMC does not tell of each.
unsigned mostSessions(IPMI20_SESSION_T* session, std::span<const std::uint32_t> services);

} // namespace ph::redirection
