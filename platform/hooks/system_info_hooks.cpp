#include "hooks/session.h"
#include "hooks/system_info_reader.h"
#include "ipmi/command.h"

#include <algorithm>
#include <cstdio>

int CIM_GetDeviceID(IPMI20_SESSION_T* session, CIM_DeviceID* device, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(device != nullptr);
        const auto answer = ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::getDeviceId);
        auto reader = answer.reader();
        *device = {};
        device->deviceId = reader.u8();
        device->deviceRevision = reader.u8() & 0x0F;
        device->firmwareMajor = reader.u8() & 0x7F;
        device->firmwareMinor = reader.u8();
        device->ipmiVersion = reader.u8();
        reader.skip(1); // additional device support
        device->manufacturerId = reader.u24() & 0xFFFFF;
        device->productId = reader.u16();
        answer.verify(reader);
        device->hasAuxiliary = reader.left() >= sizeof device->auxiliary;
        if (device->hasAuxiliary != 0)
            std::ranges::copy(reader.bytes(sizeof device->auxiliary), device->auxiliary);
    });
}

int CIM_GetSystemInfo(IPMI20_SESSION_T* session, uint8_t parameter, char* text, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(text != nullptr);
        const std::string read = hooks::readSystemInfo(hooks::sessionOf(session, timeout), parameter);
        std::snprintf(text, CIM_SYSTEM_INFO_SIZE, "%s", read.c_str());
    });
}
