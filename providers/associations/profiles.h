// CIM_RegisteredProfile: the DMTF profiles that are implemented with all their mandatory elements.
// docs/profiles.md says which those are, and what the others lack.
#pragma once

#include "associations/association.h"

namespace associations {

inline constexpr const char* profileClass = "CIM_RegisteredProfile";
inline constexpr const char* profileSuperclass = "CIM_RegisteredSpecification";

// InstanceIDs consist of an organisation ID of our own and a local name.
inline constexpr char profileRegistration[] = "provider-helper:DSP1033";
inline constexpr char baseServer[] = "provider-helper:DSP1004";
inline constexpr char serviceProcessor[] = "provider-helper:DSP1018";
inline constexpr char sensors[] = "provider-helper:DSP1009";
inline constexpr char fan[] = "provider-helper:DSP1013";
inline constexpr char powerSupply[] = "provider-helper:DSP1015";
inline constexpr char physicalAsset[] = "provider-helper:DSP1011";
inline constexpr char cpu[] = "provider-helper:DSP1022";
inline constexpr char systemMemory[] = "provider-helper:DSP1026";
inline constexpr char recordLog[] = "provider-helper:DSP1010";
inline constexpr char osStatus[] = "provider-helper:DSP1029";
inline constexpr char bootControl[] = "provider-helper:DSP1012";
inline constexpr char ethernetPort[] = "provider-helper:DSP1014";
inline constexpr char hostLanNetworkPort[] = "provider-helper:DSP1035";
inline constexpr char ipInterface[] = "provider-helper:DSP1036";
inline constexpr char dhcpClient[] = "provider-helper:DSP1037";
inline constexpr char dnsClient[] = "provider-helper:DSP1038";
inline constexpr char powerStateManagement[] = "provider-helper:DSP1027";
inline constexpr char simpleIdentityManagement[] = "provider-helper:DSP1034";
inline constexpr char roleBasedAuthorization[] = "provider-helper:DSP1039";
inline constexpr char softwareInventory[] = "provider-helper:DSP1023";
inline constexpr char textConsoleRedirection[] = "provider-helper:DSP1024";
inline constexpr char kvmRedirection[] = "provider-helper:DSP1076";
inline constexpr char softwareUpdate[] = "provider-helper:DSP1025";

struct Profile {
    const char* instanceId;
    const char* name;
    const char* version;
    bool isAdvertised; // to clients that do not know the server: that is for autonomous profiles
    std::span<const char* const> referenced = {}; // by InstanceID
};

std::span<const Profile> profiles();

// A property of CIM_RegisteredProfile, taken from a text of the row or computed from it.
struct ProfileProperty {
    const char* name;
    CMPIType type;
    const char* Profile::*text;
    Numbers (*numbers)(const Profile& profile) = nullptr;
};
// In publication order; the first is the key.
std::span<const ProfileProperty> profileProperties();

// Whether the second profile refers to the first, both by InstanceID. The referring one is the Dependent.
bool isReferencedBy(std::string_view referenced, std::string_view referring);

} // namespace associations
