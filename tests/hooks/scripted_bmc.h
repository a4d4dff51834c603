// A BMC that plays a script: it takes the place of every transport the hooks open, and keeps what it was
// asked.
#pragma once

#include "ipmi/transport.h"

#include <platform/cim_hooks.h>

#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

struct ScriptedBmc {
    // Answers by request: network function, command, data. Anything else is answered with C1h, invalid
    // command.
    std::map<Bytes, Bytes> answers;
    // Takes the place of the table: the answer to such a request.
    std::function<Bytes(const Bytes& request)> respond;
    // The answer to Get Device ID, which is counted and not kept: of a BMC with the OEM commands.
    Bytes deviceId = {0x00, 0x20, 0x01, 0x01, 0x00, 0x02, 0xBF, 0xD9, 0x7E, 0x00, 0x48, 0x50};
    bool isReachable = true;

    std::vector<Bytes> requests;
    int identifications = 0;
    std::vector<ipmi::SessionSettings> opened;
    int openTransports = 0;
    std::string debugLog;
};

// The one of this test program; a test begins with a new one.
extern ScriptedBmc bmc;

class HookTest : public testing::Test {
protected:
    HookTest() {
        bmc = {};
        EXPECT_EQ(CIM_Create_IPMI20_Session(&session, "bmc.example", 623, "", "", 0, 3, 0, 0, 4, 30), 0);
    }
    ~HookTest() override { EXPECT_EQ(CIM_Close_Session(&session), 0); }

    IPMI20_SESSION_T session;
};
