// A test with a virtual BMC of its own.
#pragma once

#include "ipmi/command.h"
#include "virtual-bmc/virtual_bmc.h"

#include <gmock/gmock.h>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string_view>
#include <sysroot_fixture.h>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::uint8_t sensorEvent = 0x04, app = 0x06, storage = 0x0A, oem = 0x30; // network functions
inline constexpr std::uint8_t getSensorReading = 0x2D;
inline constexpr std::uint8_t invalidData = 0xCC;
inline constexpr std::size_t blockSize = 32; // of a text in OEM commands

// A request or an answer that ends with a text in a field of this size.
inline Bytes with(Bytes head, std::string_view text, std::size_t size = blockSize) {
    head.insert(head.end(), text.begin(), text.end());
    head.resize(head.size() + size - text.size());
    return head;
}

class VirtualBmcFixture : public SysrootFixture {
protected:
    const std::filesystem::path stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");

    void create(std::string_view model) const {
        vbmc::createFromText(stateFile, model, "model", vbmc::Existing::Replace);
    }

    std::unique_ptr<ipmi::Transport> open(int timeout = 30) const {
        ipmi::SessionSettings settings;
        settings.address = stateFile.string();
        settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
        settings.timeout = timeout;
        return ipmi::openTransport(settings);
    }

    // The answer, completion code first.
    static Bytes ask(ipmi::Transport& bmc, std::uint8_t netFn, std::uint8_t command, const Bytes& request) {
        std::uint8_t answer[ipmi::maxMessage];
        const std::size_t size = bmc.exchange(netFn, command, request, answer);
        return {answer, answer + size};
    }
};
