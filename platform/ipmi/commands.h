// Network functions and commands (IPMI 2.0 tables 5-1 and G-1). The OEM commands are in oem_commands.h.
#pragma once

#include <cstdint>

namespace ipmi {

// Network functions of requests.
namespace netFn {
inline constexpr std::uint8_t chassis = 0x00;
inline constexpr std::uint8_t bridge = 0x02;
inline constexpr std::uint8_t sensorEvent = 0x04;
inline constexpr std::uint8_t app = 0x06;
inline constexpr std::uint8_t firmware = 0x08;
inline constexpr std::uint8_t storage = 0x0A;
inline constexpr std::uint8_t transport = 0x0C;
inline constexpr std::uint8_t groupExtension = 0x2C;
inline constexpr std::uint8_t oemGroup = 0x2E;
inline constexpr std::uint8_t oem = 0x30; // first of the controller-specific ones, 30h to 3Eh
} // namespace netFn

// A command's number means something only together with its network function.
struct CommandCode {
    std::uint8_t netFn;
    std::uint8_t number;
    bool operator==(const CommandCode&) const = default;
};

namespace command {

inline constexpr CommandCode getChassisStatus{netFn::chassis, 0x01};
inline constexpr CommandCode chassisControl{netFn::chassis, 0x02};
inline constexpr CommandCode getSystemRestartCause{netFn::chassis, 0x07};
inline constexpr CommandCode setSystemBootOptions{netFn::chassis, 0x08};
inline constexpr CommandCode getSystemBootOptions{netFn::chassis, 0x09};

inline constexpr CommandCode getPefCapabilities{netFn::sensorEvent, 0x10};
inline constexpr CommandCode armPefPostponeTimer{netFn::sensorEvent, 0x11};
inline constexpr CommandCode setPefConfiguration{netFn::sensorEvent, 0x12};
inline constexpr CommandCode getPefConfiguration{netFn::sensorEvent, 0x13};
inline constexpr CommandCode alertImmediate{netFn::sensorEvent, 0x16};
inline constexpr CommandCode getSensorReadingFactors{netFn::sensorEvent, 0x23};
inline constexpr CommandCode setSensorHysteresis{netFn::sensorEvent, 0x24};
inline constexpr CommandCode getSensorHysteresis{netFn::sensorEvent, 0x25};
inline constexpr CommandCode setSensorThresholds{netFn::sensorEvent, 0x26};
inline constexpr CommandCode getSensorThresholds{netFn::sensorEvent, 0x27};
inline constexpr CommandCode setSensorEventEnable{netFn::sensorEvent, 0x28};
inline constexpr CommandCode getSensorEventEnable{netFn::sensorEvent, 0x29};
inline constexpr CommandCode getSensorReading{netFn::sensorEvent, 0x2D};
inline constexpr CommandCode getSensorType{netFn::sensorEvent, 0x2F};

inline constexpr CommandCode getDeviceId{netFn::app, 0x01};
inline constexpr CommandCode getSelfTestResults{netFn::app, 0x04};
inline constexpr CommandCode getAcpiPowerState{netFn::app, 0x07};
inline constexpr CommandCode getDeviceGuid{netFn::app, 0x08};
inline constexpr CommandCode resetWatchdogTimer{netFn::app, 0x22};
inline constexpr CommandCode setWatchdogTimer{netFn::app, 0x24};
inline constexpr CommandCode getWatchdogTimer{netFn::app, 0x25};
inline constexpr CommandCode getSystemGuid{netFn::app, 0x37};
inline constexpr CommandCode getChannelAuthenticationCapabilities{netFn::app, 0x38};
inline constexpr CommandCode getSessionInfo{netFn::app, 0x3D};
inline constexpr CommandCode getChannelInfo{netFn::app, 0x42};
inline constexpr CommandCode setUserAccess{netFn::app, 0x43};
inline constexpr CommandCode getUserAccess{netFn::app, 0x44};
inline constexpr CommandCode setUserName{netFn::app, 0x45};
inline constexpr CommandCode getUserName{netFn::app, 0x46};
inline constexpr CommandCode setUserPassword{netFn::app, 0x47};
inline constexpr CommandCode getPayloadActivationStatus{netFn::app, 0x4A};
inline constexpr CommandCode getPayloadInstanceInfo{netFn::app, 0x4B};
inline constexpr CommandCode getChannelCipherSuites{netFn::app, 0x54};
inline constexpr CommandCode setSystemInfo{netFn::app, 0x58};
inline constexpr CommandCode getSystemInfo{netFn::app, 0x59};

inline constexpr CommandCode getFruInventoryAreaInfo{netFn::storage, 0x10};
inline constexpr CommandCode readFruData{netFn::storage, 0x11};
inline constexpr CommandCode getSdrRepositoryInfo{netFn::storage, 0x20};
inline constexpr CommandCode reserveSdrRepository{netFn::storage, 0x22};
inline constexpr CommandCode getSdr{netFn::storage, 0x23};
inline constexpr CommandCode getSelInfo{netFn::storage, 0x40};
inline constexpr CommandCode getSelAllocationInfo{netFn::storage, 0x41};
inline constexpr CommandCode reserveSel{netFn::storage, 0x42};
inline constexpr CommandCode getSelEntry{netFn::storage, 0x43};
inline constexpr CommandCode addSelEntry{netFn::storage, 0x44};
inline constexpr CommandCode deleteSelEntry{netFn::storage, 0x46};
inline constexpr CommandCode clearSel{netFn::storage, 0x47};
inline constexpr CommandCode getSelTime{netFn::storage, 0x48};
inline constexpr CommandCode setSelTime{netFn::storage, 0x49};
inline constexpr CommandCode getSelTimeUtcOffset{netFn::storage, 0x5C};
inline constexpr CommandCode setSelTimeUtcOffset{netFn::storage, 0x5D};

inline constexpr CommandCode setLanConfiguration{netFn::transport, 0x01};
inline constexpr CommandCode getLanConfiguration{netFn::transport, 0x02};
inline constexpr CommandCode setSolConfiguration{netFn::transport, 0x21};
inline constexpr CommandCode getSolConfiguration{netFn::transport, 0x22};

} // namespace command
} // namespace ipmi
