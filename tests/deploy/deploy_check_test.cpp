// What tools/deploy-check says of machines that lack one thing or another.
#include "paths.h"
#include "sysroot_fixture.h"

#include <array>
#include <cstdio>
#include <gmock/gmock.h>
#include <sys/wait.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class DeployCheck : public SysrootFixture {
protected:
    struct Outcome {
        int status;
        std::string text;
    };
    // With these commands before the machine's own, which no object manager is to be among.
    Outcome run(const std::string& arguments = {}) const {
        const std::string command = "PATH='" + sysroot.place("/manager").string() + "':/usr/bin:/bin '" +
                                    paths::deployCheck + "' " + arguments + " 2>&1";
        std::FILE* const output = popen(command.c_str(), "r");
        Outcome outcome{};
        std::array<char, 4096> part{};
        while (const std::size_t length = std::fread(part.data(), 1, part.size(), output))
            outcome.text.append(part.data(), length);
        outcome.status = WEXITSTATUS(pclose(output));
        return outcome;
    }
    // A machine that has everything.
    void deploy() const {
        const auto link = [&](std::string_view path) {
            std::filesystem::create_directories(sysroot.place(path).parent_path());
            std::filesystem::create_symlink(paths::providerModule, sysroot.place(path));
        };
        link("/usr/local/lib/cmpi/libProviderHelperProviders.so");
        for (const char* name : {"libProviderHelper.so", "libinterop_provider.so", "libEventLogDes.so"})
            link(std::string("/usr/local/lib/") + name);
        write("/conf/smash.db", "rows");
        std::filesystem::create_directories(sysroot.place("/dev"));
        write("/dev/ipmi0", "");
    }
    // An OpenPegasus that holds this registration, and classes as cimcli prints them.
    void standInForOpenPegasus(const std::string& capabilities, std::string_view sensorClass) const {
        write("/capabilities", capabilities);
        sysroot.standIn("/manager/cimserver");
        sysroot.standIn("/manager/cimprovider",
                        "if [ \"${2-}\" = -s ]; then echo 'ProviderHelperModule     OK'\n"
                        "else echo ProviderHelperModule; fi");
        sysroot.standIn("/manager/cimcli", "case $1 in ei) cat \"$PH_SYSROOT/capabilities\" ;;\n"
                                           "gc) echo 'class X { " +
                                               std::string(sensorClass) + " };' ;; esac");
    }
    static std::string registration() {
        std::ifstream file(paths::moduleRegistration);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(DeployCheck, namesWhatIsMissing) {
    const auto bare = run();
    EXPECT_EQ(bare.status, 1);
    for (const char* missing : {"the provider module", "/usr/local/lib/libProviderHelper.so",
                                "no alert is delivered", "phctl sync --local"})
        EXPECT_THAT(bare.text, HasSubstr(missing));
    EXPECT_THAT(run("--no-alerts").text, Not(HasSubstr("no alert is delivered")));
    EXPECT_EQ(run("--unknown").status, 2);
    EXPECT_EQ(run("--module").status, 2);

    deploy();
    const auto complete = run();
    EXPECT_EQ(complete.status, 0) << complete.text;
    EXPECT_THAT(complete.text,
                AllOf(Not(HasSubstr("MISSING")), HasSubstr("ok       libraries of the module")));
}

TEST_F(DeployCheck, asksOpenPegasusWhatItHolds) {
    deploy();
    standInForOpenPegasus(registration(), "uint16 PrimaryStatus;");
    const auto complete = run();
    EXPECT_EQ(complete.status, 0) << complete.text;

    standInForOpenPegasus(
        registration() + "instance of PG_ProviderCapabilities\n{\n    ProviderModuleName = \"IPModule\";\n"
                         "    ClassName = \"CIM_IPProtocolEndpoint\";\n};\n"
                         "instance of PG_ProviderCapabilities\n{\n    ProviderModuleName = \"OSModule\";\n"
                         "    ClassName = \"CIM_UnixProcess\";\n};\n",
        "string Name;");
    const auto contested = run();
    EXPECT_EQ(contested.status, 1);
    EXPECT_THAT(contested.text,
                AllOf(HasSubstr("CIM_IPProtocolEndpoint (IPModule)"), Not(HasSubstr("OSModule")),
                      HasSubstr("the one that is loaded is abridged")));
}

TEST_F(DeployCheck, aSmallFootprintBrokersRepository) {
    deploy();
    sysroot.standIn("/manager/sfcbd");
    for (const char* folder : {"/etc/sfcb", "/var/lib/sfcb/registration/repository/root/cimv2",
                               "/var/lib/sfcb/registration/repository/root/interop"})
        std::filesystem::create_directories(sysroot.place(folder));
    write("/etc/sfcb/sfcb.cfg", "providerDirs: /usr/lib/sfcb /usr/local/lib/cmpi\n");
    write("/var/lib/sfcb/registration/providerRegister", "[CIM_Account]\n   provider: ProviderHelper\n");
    write("/var/lib/sfcb/registration/repository/root/cimv2/classSchemas", "CIM_Sensor CIM_NumericSensor");
    write("/var/lib/sfcb/registration/repository/root/interop/classSchemas", "CIM_ReferencedProfile");
    EXPECT_EQ(run().status, 0) << run().text;
    // DMTF's classes are there as far as staged files name them.
    write("/var/lib/sfcb/registration/repository/root/cimv2/classSchemas", "CIM_SPComputerSystem");
    write("/etc/sfcb/sfcb.cfg", "providerDirs: /usr/local/lib/cmpi2\n");
    EXPECT_THAT(run().text, AllOf(HasSubstr("MISSING  the class CIM_NumericSensor in root/cimv2"),
                                  HasSubstr("MISSING  the module's folder in providerDirs")));
}

} // namespace
