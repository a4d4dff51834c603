// Boot configurations and their service, against the boot flags of the virtual BMC.
#include "managed_bmc.h"
#include "provider_helper/boot.h"

#include <chrono>
#include <thread>

namespace {

using testing::IsEmpty;
using testing::SizeIs;

class Boot : public ManagedBmc {
protected:
    explicit Boot(const std::string& model = "{}") : ManagedBmc(model) {}

    static broker::ObjectPath setting(const std::string& className, const std::string& name) {
        return path(className, {{"InstanceID", text(className.substr(4) + '-' + name)}});
    }
    static broker::Value source(const std::string& name) {
        return reference(setting("CIM_BootSourceSetting", name));
    }
    broker::Reply changeOrder(const std::string& configuration, broker::Value order) const {
        return configurations.invoke(setting("CIM_BootConfigSetting", configuration), "ChangeBootOrder",
                                     {{"Source", std::move(order)}});
    }
    broker::Reply bootFrom(const std::string& configuration, const std::string& name) const {
        return changeOrder(configuration, arrayOf(CMPI_ref, {source(name)}));
    }
    broker::Reply setRole(const std::string& configuration, int role) const {
        return services.invoke(
            only(services).path, "SetBootConfigRole",
            {{"BootConfigSetting", reference(setting("CIM_BootConfigSetting", configuration))},
             {"Role", number(role)}});
    }
    std::string boot(const char* member) const {
        const auto value = bmc().describe()["boot"][member];
        return value.is_string() ? value.get<std::string>() : value.dump();
    }
    // Returns the InstanceIDs of the next configuration and its source.
    static std::string choice() {
        PHBootChoice choice;
        EXPECT_EQ(PH_GetBootChoice(&choice), 0);
        return std::string(choice.configuration) + ' ' + choice.source;
    }

    const ClassRequests services{broker, PH_CLASS_FUNCTIONS(BootService)};
    const ClassRequests configurations{broker, PH_CLASS_FUNCTIONS(BootConfigSetting)};
    const ClassRequests sources{broker, PH_CLASS_FUNCTIONS(BootSourceSetting)};
    const ClassRequests capabilities{broker, PH_CLASS_FUNCTIONS(BootServiceCapabilities)};
};

constexpr const char* firmwaresOrder = "BootConfigSetting-Persistent ";
constexpr const char* networkOnce = "BootConfigSetting-Once BootSourceSetting-Network";
constexpr const char* diskAlways = "BootConfigSetting-Persistent BootSourceSetting-Disk";

TEST_F(Boot, hasOneSetOfFlagsForTwoConfigurations) {
    EXPECT_EQ(choice(), firmwaresOrder);
    struct {
        std::function<broker::Reply()> change;
        const char* flags; // bytes 1 and 2 of parameter 5, as they were written
        const char* choice;
    } const steps[] = {
        {[&] { return bootFrom("Once", "Network"); }, "8004", networkOnce},
        {[&] { return setRole("Once", 1); }, "8004", networkOnce},
        {[&] { return setRole("Persistent", 2); }, "8004", networkOnce},
        // The lasting configuration has no order to clear.
        {[&] { return changeOrder("Persistent", arrayOf(CMPI_ref, {})); }, "8004", networkOnce},
        {[&] { return setRole("Persistent", 0); }, "0000", firmwaresOrder},
        {[&] { return bootFrom("Persistent", "Disk"); }, "c008", diskAlways},
        {[&] { return setRole("Persistent", 0); }, "c008", diskAlways},
        {[&] { return setRole("Once", 1); }, "8000", "BootConfigSetting-Once "},
        {[&] { return bootFrom("Once", "Floppy"); }, "803c",
         "BootConfigSetting-Once BootSourceSetting-Floppy"},
        {[&] { return changeOrder("Once", arrayOf(CMPI_ref, {})); }, "0000", firmwaresOrder},
    };
    for (const auto& [change, flags, expected] : steps) {
        SCOPED_TRACE(std::string(flags) + ", " + expected);
        EXPECT_THAT(change(), Returns(0));
        EXPECT_EQ(lastJob().state, "7");
        EXPECT_EQ(boot("flags").substr(0, 4), flags);
        EXPECT_EQ(boot("inProgress"), "false");
        EXPECT_EQ(choice(), expected);
    }
}

// Each source is a device of its own that reads back as itself.
TEST_F(Boot, knowsEachDeviceOfTheSelector) {
    const auto all = sources.enumerate().instances;
    ASSERT_THAT(all, SizeIs(11));
    for (const auto& each : all) {
        const std::string id = textOf(each, "InstanceID");
        EXPECT_THAT(bootFrom("Once", id.substr(id.find('-') + 1)), Returns(0));
        EXPECT_EQ(choice(), "BootConfigSetting-Once " + id);
    }
    EXPECT_EQ(textOf(all[0], "StructuredBootString"), "CIM:Network:1");
    EXPECT_EQ(textOf(all[2], "StructuredBootString"), "<none>");
}

class ImpatientBoot : public Boot {
protected:
    ImpatientBoot()
        : Boot(
              R"({"boot": {"validTime": 2000, "devices": ["network", "disk"], "flags": "61 c0 10 00 00"}})") {
    }
};

// The BMC would drop flags for which it got no Chassis Control command within two seconds.
TEST_F(ImpatientBoot, happensOnceWhateverBeginsIt) {
    EXPECT_THAT(bootFrom("Once", "Network"), Returns(0));
    EXPECT_EQ(boot("flags"), "a004000000") << "the kind of boot stays, what did not hold goes";
    EXPECT_EQ(boot("acknowledge"), "31");
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    EXPECT_EQ(choice(), networkOnce);
    bmc().restartHost();
    EXPECT_EQ(boot("lastBoot"), "network");
    EXPECT_EQ(choice(), firmwaresOrder);
    bmc().restartHost();
    EXPECT_EQ(boot("lastBoot"), "firmware's order");

    EXPECT_THAT(bootFrom("Persistent", "Disk"), Returns(0));
    for (int i = 0; i < 2; ++i) {
        bmc().restartHost();
        EXPECT_EQ(boot("lastBoot"), "disk");
    }
}

TEST_F(ImpatientBoot, ofADeviceThatTheBmcRefusesChangesNothing) {
    EXPECT_THAT(bootFrom("Persistent", "Disk"), Returns(0));
    const auto before = bmc().describe()["boot"].dump();
    EXPECT_THAT(bootFrom("Once", "CD"), Returns(2));
    EXPECT_EQ(lastJob(), Job::failed("BootConfigSetting-Once_ChangeBootOrder"));
    EXPECT_EQ(bmc().describe()["boot"].dump(), before);

    // Somebody else's change is under way.
    const std::uint8_t begin[] = {0x00, 0x01};
    std::uint8_t answer[16];
    ipmi::openTransport(virtualBmc(stateFile))->exchange(0x00, 0x08, begin, answer);
    EXPECT_THAT(bootFrom("Once", "Network"), Returns(2));
    EXPECT_THAT(setRole("Once", 1), Returns(2));
    EXPECT_EQ(boot("inProgress"), "true");
    EXPECT_EQ(choice(), diskAlways);
}

TEST_F(Boot, refusesWhatIsNoSourceOrRole) {
    bmc().recordMessages(1000);
    const broker::Value wrong[] = {
        source("Network"),
        null(CMPI_refA),
        texts({"BootSourceSetting-Network"}),
        arrayOf(CMPI_ref, {source("Tape")}),
        arrayOf(CMPI_ref, {source("network")}),
        arrayOf(CMPI_ref, {reference(setting("CIM_BootConfigSetting", "Once"))}),
        arrayOf(CMPI_ref, {reference(path("CIM_BootSourceSetting"))}),
        arrayOf(CMPI_ref, {null(CMPI_ref)}),
        arrayOf(CMPI_ref, {source("Network"), source("Disk")}),
    };
    for (const broker::Value& order : wrong)
        EXPECT_EQ(changeOrder("Once", order).code, CMPI_RC_ERR_INVALID_PARAMETER) << broker::toText(order);
    EXPECT_EQ(changeOrder("Never", arrayOf(CMPI_ref, {})).code, CMPI_RC_ERR_NOT_FOUND);
    for (const auto& [configuration, role] :
         {std::pair{"Once", 0}, {"Once", 2}, {"Persistent", 1}, {"Persistent", 3}, {"Never", 1}})
        EXPECT_EQ(setRole(configuration, role).code, CMPI_RC_ERR_INVALID_PARAMETER) << configuration << role;
    EXPECT_THAT(requests(ipmi::command::setSystemBootOptions), IsEmpty());
    EXPECT_EQ(jobCount(), 0U) << "what is refused has no job";
}

TEST_F(Boot, isNotThereOnABmcWithoutBootFlags) {
    const ClassRequests* const all[] = {&services, &configurations, &sources, &capabilities};
    for (const unsigned code : {0xC1U, 0x80U}) {
        bmc().clearFaults();
        bmc().addFault({.netFn = 0x00, .command = 0x09, .value = code});
        for (const ClassRequests* each : all) {
            EXPECT_THAT(each->enumerate().instances, IsEmpty());
            EXPECT_TRUE(each->enumerate().ok());
        }
        EXPECT_EQ(choice(), " ");
        EXPECT_EQ(bootFrom("Once", "Network").code, CMPI_RC_ERR_NOT_FOUND);
    }
    failCommand(ipmi::command::getSystemBootOptions);
    for (const ClassRequests* each : all)
        EXPECT_FALSE(each->enumerate().ok()) << "a BMC that does not tell may have some";
}

} // namespace
