// Versions of firmware, and which firmware there is.
#include "inventory/version_text.h"
#include "managed_bmc.h"
#include "provider_helper/software.h"

namespace {

using testing::ElementsAre;
using testing::SizeIs;

class SoftwareIdentity : public ManagedBmc {
protected:
    const ClassRequests identities{broker, PH_CLASS_FUNCTIONS(SoftwareIdentity)};
};

TEST_F(SoftwareIdentity, isThatOfTheBmcAndOfTheHost) {
    createBmc(R"({"device": {"firmwareMajor": 2, "firmwareMinor": 14, "auxiliaryRevision": "80 07 00 01"},
                  "systemInfo": {"firmwareVersion": "1.02.3 build 70000"}})");
    const auto all = identities.enumerate().instances;
    ASSERT_THAT(all, SizeIs(2));
    EXPECT_EQ(textsOf(all, "VersionString"),
              (std::vector<std::string>{"2.14.80070001", "1.02.3 build 70000"}));
    EXPECT_EQ(textsOf(all, "MajorVersion"), (std::vector<std::string>{"2", "1"}));
    EXPECT_EQ(textsOf(all, "MinorVersion"), (std::vector<std::string>{"14", "2"}));
    EXPECT_EQ(textsOf(all, "RevisionNumber"), (std::vector<std::string>{"<none>", "3"}));
    EXPECT_EQ(textsOf(all, "BuildNumber"), (std::vector<std::string>{"<none>", "<none>"}))
        << "more than 16 bits";
    EXPECT_EQ(textsOf(all, "LargeBuildNumber"), (std::vector<std::string>{"2147942401", "<none>"}));
    EXPECT_EQ(textsOf(all, "Classifications"), (std::vector<std::string>{"{10}", "{11}"}));
}

TEST_F(SoftwareIdentity, isThatOfTheBmcAlone) {
    const auto all = identities.enumerate().instances; // of a model without system info
    ASSERT_THAT(all, SizeIs(1));
    EXPECT_EQ(textOf(all[0], "VersionString"), "1.00");
    EXPECT_EQ(textOf(all[0], "LargeBuildNumber"), "<none>");
    EXPECT_THAT(identities.names().paths, ElementsAre(all[0].path));
    failCommand(ipmi::command::getDeviceId);
    EXPECT_EQ(identities.enumerate().message, "Failed to Enumerate Instance");
}

TEST(VersionText, hasNumbersWhereTheyCanBeRead) {
    using Numbers = std::vector<std::uint16_t>;
    const struct {
        const char* text;
        Numbers numbers;
        int build; // -1: none
    } cases[] = {
        {"1.2", {1, 2}, -1},
        {"v02.010.7", {2, 10, 7}, -1},
        {"1.2.3.4", {1, 2, 3}, 4},
        {"U30 V2.10 (05/12/2023)", {2, 10}, -1},
        {"EX2200 2.01.14 build 512", {2, 1, 14}, 512},
        {"1.2.3.4 Build: 9", {1, 2, 3}, 9},
        {"2.1 3.4", {2, 1}, -1},
        {"1.2 build x", {1, 2}, -1},
        {"1.2.3.4.5", {}, -1},
        {"EXB.86B.02.01", {}, -1},
        {"1..2", {}, -1},
        {"1.65536", {}, -1},
        {"17", {}, -1},
        {"", {}, -1},
        {" ( ", {}, -1},
    };
    for (const auto& [text, numbers, build] : cases) {
        const ph::Version version = ph::readVersion(text);
        EXPECT_EQ(version.numbers, numbers) << text;
        EXPECT_EQ(version.build ? int{*version.build} : -1, build) << text;
    }
}

} // namespace
