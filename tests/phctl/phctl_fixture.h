// A machine of its own for the tests of a group: a private root, in it a virtual BMC and the database of its
// sync.
#pragma once

#include "paths.h"
#include "phctl_program.h"
#include "sysroot_fixture.h"

#include <gmock/gmock.h>
#include <memory>

namespace ph_test {

class PhctlTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        sysroot = std::make_unique<Sysroot>();
        ASSERT_EQ(phctl({"bmc", "create", paths::sampleServer}).status, 0);
        ASSERT_EQ(phctl({"sync"}).status, 0);
    }
    static void TearDownTestSuite() { sysroot.reset(); }
    void TearDown() override { ASSERT_EQ(phctl({"bmc", "clear"}).status, 0); }

    // Succeeds, with nothing on stderr but that sensors could not be read: the sample server has one.
    static Outcome succeed(const std::vector<std::string>& arguments) {
        Outcome outcome = phctl(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        if (!outcome.err.empty()) {
            EXPECT_THAT(outcome.err,
                        testing::MatchesRegex(".*warning.*[0-9]+ sensors? could not be read .*\n"));
        }
        return outcome;
    }

    // Ends with this status, one line on stderr, and nothing on stdout.
    static std::string fail(const std::vector<std::string>& arguments, int status) {
        const Outcome outcome = phctl(arguments);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, testing::StartsWith("phctl: "));
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        return outcome.err;
    }

    // The first instance of a class whose property begins with `prefix`, as JSON.
    static nlohmann::json instance(const std::string& className, const char* property,
                                   const std::string& prefix) {
        for (const auto& each : succeed({"ei", className, "--json"}).json())
            if (each["properties"][property].get<std::string>().starts_with(prefix))
                return each;
        ADD_FAILURE() << className << " has no " << property << ' ' << prefix;
        return {};
    }
    static nlohmann::json numericSensor(const std::string& name) {
        return instance("CIM_NumericSensor", "ElementName", name + '(');
    }

    static inline std::unique_ptr<Sysroot> sysroot;
};

} // namespace ph_test
