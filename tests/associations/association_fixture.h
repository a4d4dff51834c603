// Associations down the whole road, on a machine of the sample server: broker, provider module, library,
// virtual BMC and database. The machine is made once and shared.
#pragma once

#include "cim_values.h"
#include "platform/support.h"
#include "sysroot_fixture.h"
#include "virtual-bmc/virtual_bmc.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

// What the providers asked PH_GetInstArray for: the class, and the properties in parentheses, "*" for all.
extern std::vector<std::string> askedArrays;

class Associations : public testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override;
    void TearDown() override { EXPECT_EQ(broker.liveObjects(), 0U); }

    // The first element of a class whose path holds a text.
    broker::ObjectPath element(const std::string& className, const std::string& text = {});
    broker::ObjectPath profile(const std::string& number);

    // The library's switches, as the platform's configuration sets them.
    static CoreFeatures& features();

    static std::filesystem::path stateFile();
    static inline std::unique_ptr<Sysroot> sysroot;
    broker::Broker broker;
};

std::vector<std::string> texts(const std::vector<broker::ObjectPath>& paths);
// Each class once, in order.
std::vector<std::string> classesOf(const std::vector<broker::ObjectPath>& paths);
