// A test with a virtual BMC of its own.
#pragma once

#include "ipmi/command.h"
#include "virtual-bmc/virtual_bmc.h"

#include <gmock/gmock.h>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <sysroot_fixture.h>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

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
