// CIM_SoftwareInstallationService: installing firmware on the virtual BMC, and what keeps the former one.
#include "firmware/image.h"
#include "ipmi/oem_commands.h"
#include "managed_bmc.h"
#include "provider_helper/firmware.h"
#include "provider_helper/software.h"
#include "server_script.h"

#include <fcntl.h>
#include <sys/file.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace oem = ipmi::oem;

constexpr const char* model = R"({"device": {"firmwareMajor": 1, "firmwareMinor": 7},
                                  "firmware": {"largestImage": 100000, "restartTime": 0}})";
constexpr const char* former = "1.07";
constexpr const char* place = "/var/lib/image";
constexpr const char* uri = "file:///var/lib/image";

std::string imageOf(std::size_t size, std::uint16_t product = oem::product) {
    const std::vector<std::uint8_t> payload(size, 0xA5);
    const auto head = firmware::writeHead(
        {.major = 2, .minor = 15, .manufacturerId = oem::manufacturer, .productId = product}, payload);
    std::string image(head.begin(), head.end());
    return image.append(payload.begin(), payload.end());
}

class Installation : public ManagedBmc {
protected:
    Installation() : ManagedBmc(model) {
        write(place, imageOf(40'000));
        bmc().recordMessages(4000);
    }

    broker::Reply install(const broker::NamedValues& in = {{"URI", text(uri)}}) {
        auto reply = service.invoke(only(service).path, "InstallFromURI", in);
        EXPECT_EQ(PH_WaitForInstallation(60), 0);
        return reply;
    }
    std::string version() {
        const auto reply = identity.enumerate();
        return reply.instances.empty() ? reply.message : textOf(reply.instances[0], "VersionString");
    }
    // Of the last job that was begun: "JobStatus, ErrorType of its error".
    std::string failure(const broker::Reply& reply) {
        EXPECT_THAT(reply, Returns(4096));
        const broker::Value* job = broker::find(reply.arguments, "Job");
        if (job == nullptr)
            return "no job";
        const broker::ObjectPath path = **job->as<broker::Value::Reference>();
        const auto errors = jobs.invoke(path, "GetErrors");
        const auto* list = broker::find(errors.arguments, "Errors")->as<broker::Value::Array>();
        EXPECT_EQ(list->size(), 1U);
        return textOf(only(jobs.get(path)), "JobStatus") + ", " +
               (list->empty() ? "" : textOf(**list->front().as<broker::Value::Embedded>(), "ErrorType"));
    }
    static broker::Instance only(const broker::Reply& reply) { return reply.instances.at(0); }
    using ManagedBmc::only;
    bool isIdle() const { return bmc().describe()["firmware"]["state"] == "idle"; }

    const ClassRequests service{broker, PH_CLASS_FUNCTIONS(SoftwareInstallationService)};
    const ClassRequests capabilities{broker, PH_CLASS_FUNCTIONS(SoftwareInstallationServiceCapabilities)};
    const ClassRequests identity{broker, PH_CLASS_FUNCTIONS(SoftwareIdentity)};
};

TEST_F(Installation, FromAFileBringsTheNewVersion) {
    EXPECT_EQ(version(), former);
    std::vector<int> percents;
    PH_STAND_IN(CIM_GetFirmwareUpdate, [calls = 0](auto*, CIM_FirmwareUpdate* update, int) mutable {
        *update = {1, CIM_FIRMWARE_ACTIVATING, 0, 100'000};
        if (calls++ % 4 == 0 || calls == 4) // before, and when it is done
            update->state = CIM_FIRMWARE_IDLE;
        else
            update->percent = static_cast<std::uint8_t>(calls * 20);
        return 0;
    });
    PH_STAND_IN(db_modify_concretejob,
                [&](auto*, auto*, auto*, auto*, int percent, int) { return percents.push_back(percent), 0; });
    EXPECT_THAT(install(), Returns(4096));
    platformCalls.standIns.clear();
    EXPECT_TRUE(std::ranges::is_sorted(percents));
    EXPECT_GE(percents.size(), 7U) << "fetching, checking, three pieces, two looks";
    EXPECT_EQ(percents.back(), 100);
    EXPECT_EQ(version(), "2.15.00000000");
    EXPECT_EQ(requests(oem::writeFirmwareBlock).size(), 201U) << "of 200 bytes each";

    EXPECT_EQ(jobOf(install()), Job::completed("InstallFromURI")) << "once more";
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/tmp/firmware_installation.image")));
}

TEST_F(Installation, FromAWebServer) {
    const ServerScript server("image_server.py", sysroot.place("/record"),
                              {"--file", sysroot.place(place).string()});
    const std::string root = "http://127.0.0.1:" + std::to_string(server.port());
    for (const char* way : {"/cut", "/none", "/redirected"}) {
        EXPECT_EQ(failure(install({{"URI", text(root + way)}})), "Image not available, 2") << way;
        EXPECT_EQ(version(), former) << way;
    }
    EXPECT_EQ(failure(install({{"URI", text("http://127.0.0.1:1/")}})), "Image not available, 2");
    EXPECT_EQ(jobOf(install({{"URI", text(root + "/whole")}})), Job::completed("InstallFromURI"));
    EXPECT_EQ(version(), "2.15.00000000");
    EXPECT_EQ(jobOf(install({{"URI", text(root + "/chunked")}})), Job::completed("InstallFromURI"));
    write(place, imageOf(100'000));
    for (const char* way : {"/whole", "/chunked"})
        EXPECT_EQ(failure(install({{"URI", text(root + way)}})), "Image not available, 2") << "too large";
}

TEST_F(Installation, FromAnImageThatIsKept) {
    std::filesystem::create_directories(sysroot.place("/var/lib/firmware"));
    write("/var/lib/firmware/bmc-2.img", imageOf(3000));
    write("/var/lib/firmware/other.img", imageOf(3000, oem::product + 1));
    write("/var/lib/firmware/noise.img", "noise");
    write("/var/lib/firmware/un safe.img", imageOf(3000));
    const auto identities = identity.enumerate().instances;
    ASSERT_THAT(textsOf(identities, "InstanceID"), ElementsAre("IPMI:BMC Firmware", "IPMI:Image bmc-2"));
    EXPECT_EQ(textOf(identities[1], "VersionString"), "2.15.00000000");
    EXPECT_EQ(textOf(identities[1], "MajorVersion"), "2");

    const auto from = [&](const char* method, const broker::ObjectPath& source) {
        auto reply = service.invoke(only(service).path, method, {{"Source", reference(source)}});
        EXPECT_EQ(PH_WaitForInstallation(60), 0);
        return reply;
    };
    constexpr const char* check = "CheckSoftwareIdentity";
    constexpr const char* install = "InstallFromSoftwareIdentity";
    for (const char* method : {check, install}) {
        EXPECT_THAT(from(method, identities[0].path), Returns(4107)) << "installed, and not kept";
        EXPECT_THAT(from(method, path("CIM_Chassis")), Returns(4107));
        EXPECT_THAT(service.invoke(only(service).path, method,
                                   {{"Source", reference(identities[1].path)},
                                    {"Collection", reference(path("CIM_ConcreteCollection"))}}),
                    Returns(4108));
    }
    const auto characteristics = from(check, identities[1].path);
    EXPECT_THAT(characteristics, Returns(0));
    EXPECT_EQ(broker::toText(*broker::find(characteristics.arguments, "InstallCharacteristics")), "{2}");
    EXPECT_EQ(version(), former);
    EXPECT_EQ(jobOf(from(install, identities[1].path)), Job::completed("InstallFromSoftwareIdentity"));
    EXPECT_EQ(version(), "2.15.00000000");
}

TEST_F(Installation, OfAnImageThatIsNoneNeverReachesTheBmc) {
    const std::string good = imageOf(5000);
    std::string damaged = good;
    damaged[3000] ^= 1;
    const std::pair<std::string, const char*> images[] = {
        {"", "Image not valid, 4"},
        {std::string(5000, 'x'), "Image not valid, 4"},
        {good.substr(0, 4999), "Image not valid, 4"},
        {good + 'x', "Image not valid, 4"},
        {damaged, "Image not valid, 4"},
        {imageOf(5000, oem::product + 1), "Image not valid, 4"},
        {imageOf(100'000), "Image not available, 2"}, // larger than the BMC takes
    };
    for (const auto& [image, expected] : images) {
        write(place, image);
        EXPECT_EQ(failure(install()), expected) << image.size();
    }
    for (const char* other : {"file:///var/lib/none", "file:///var/lib", "file://elsewhere/var/lib/image"})
        EXPECT_EQ(failure(install({{"URI", text(other)}})), "Image not available, 2") << other;
    EXPECT_THAT(requests(oem::beginFirmwareUpdate), IsEmpty());
    EXPECT_EQ(version(), former);
}

TEST_F(Installation, ThatTheBmcBreaksOffLeavesTheFormerFirmware) {
    constexpr struct {
        ipmi::CommandCode command;
        unsigned skip;
    } faults[] = {{oem::beginFirmwareUpdate, 0},
                  {oem::writeFirmwareBlock, 0},
                  {oem::writeFirmwareBlock, 150},
                  {oem::finishFirmwareUpdate, 0}};
    for (const auto& [command, skip] : faults) {
        failCommand(command, skip);
        EXPECT_EQ(failure(install()), "Image not taken by the BMC, 5") << int{command.number};
        EXPECT_EQ(version(), former);
        EXPECT_TRUE(isIdle()) << "it was cancelled";
    }
    bmc().clearFaults();
    PH_STAND_IN(CIM_GetFirmwareUpdate, [calls = 0](auto*, CIM_FirmwareUpdate* update, int) mutable {
        *update = {1, static_cast<std::uint8_t>(calls++ == 0 ? CIM_FIRMWARE_IDLE : CIM_FIRMWARE_FAILED), 0,
                   100'000};
        return 0;
    });
    EXPECT_EQ(failure(install()), "Image not started by the BMC, 5");
}

// It waits for a BMC that opens no session meanwhile.
TEST_F(Installation, OutlastsTheRestart) {
    createBmc(R"({"firmware": {"restartTime": 1500}})");
    platformCalls.duringPauses = [] { usleep(200'000); };
    EXPECT_EQ(jobOf(install()), Job::completed("InstallFromURI"));
    EXPECT_GE(platformCalls.pauses.size(), 5U);
    EXPECT_EQ(version(), "2.15.00000000");
}

TEST_F(Installation, IsOneAtATime) {
    const auto file = sysroot.place("/tmp/firmware_installation.lock");
    const int other = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    EXPECT_THAT(install(), Returns(6));
    close(other);
    EXPECT_EQ(jobCount(), 0U);
    EXPECT_THAT(install(), Returns(4096));
}

// Its process was killed: the lock is free, and has the job still.
TEST_F(Installation, ThatWasInterruptedFailsItsJobOnceTheNextOneBegins) {
    char killed[64];
    ASSERT_EQ(PH_CreateJobInstance("InstallFromURI", killed, 4, "2"), 0);
    write("/tmp/firmware_installation.lock", killed);
    EXPECT_EQ(jobOf(install()), Job::completed("InstallFromURI"));
    EXPECT_EQ(lastJob(), Job::completed("InstallFromURI"));
    const auto all = jobs.enumerate().instances;
    EXPECT_THAT(textsOf(all, "JobStatus"), ElementsAre("Interrupted", "Completed"));
    EXPECT_EQ(contents("/tmp/firmware_installation.lock"), "");
}

TEST_F(Installation, IsNotSupportedWithoutTheHook) {
    const auto expectNone = [&](const char* why) {
        EXPECT_THAT(install(), Returns(1)) << why;
        const auto capability = only(capabilities);
        EXPECT_EQ(textOf(capability, "SupportedAsynchronousActions"), "{2}") << why;
        EXPECT_EQ(textOf(capability, "SupportedURISchemes"), "<none>") << why;
    };
    EXPECT_EQ(textOf(only(capabilities), "SupportedAsynchronousActions"), "{3, 5}");
    platformCalls.broken = {"CIM_GetFirmwareUpdate"};
    expectNone("a stub");
    platformCalls.broken.clear();
    createBmc(R"({"firmware": {"largestImage": 0}})");
    expectNone("a BMC without the commands");
    EXPECT_EQ(jobCount(), 0U);
}

TEST_F(Installation, RefusesWhatItCannotDo) {
    const auto processor = path("CIM_SPComputerSystem", {{"Name", text("controller")}});
    const broker::NamedValues valid{{"URI", text(uri)}};
    const auto with = [&](const char* name, broker::Value value) {
        auto in = valid;
        in.push_back({name, std::move(value)});
        return in;
    };
    const auto options = [&](int option) {
        return with("InstallOptions", arrayOf(CMPI_uint16, {number(option)}));
    };
    EXPECT_THAT(install({{"URI", text("ftp://127.0.0.1/image")}}), Returns(4107));
    EXPECT_THAT(install(options(3)), Returns(1)) << "forced";
    EXPECT_THAT(install(with("Target", reference(path("CIM_HostComputerSystem")))), Returns(4097));
    EXPECT_THAT(install(with("Target", reference(path("CIM_SPComputerSystem", {{"Name", text("x")}})))),
                Returns(4106));
    for (const auto& in : {broker::NamedValues{},
                           {{"URI", text("")}},
                           {{"URI", number(1)}},
                           {{"URI", text("file:///" + std::string(1100, 'x'))}}})
        EXPECT_THAT(install(in), Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "URI Parameter is Invalid"));
    EXPECT_EQ(jobCount(), 0U);
    EXPECT_THAT(install(with("Target", reference(processor))), Returns(4096));
    EXPECT_THAT(install(options(5)), Returns(4096));
}

} // namespace
