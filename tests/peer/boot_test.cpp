// What a host behind OpenIPMI's BMC simulator boots from, set by methods of the provider module in the broker,
// with ipmitool as the witness. A script stands for the chassis.
#include "provider_on_simulator.h"

namespace {

using testing::HasSubstr;

class PeerBoot : public ProviderOnSimulator {
protected:
    PeerBoot() {
        sysroot.standIn("/chassis", R"sh(cd "$PH_SYSROOT/tmp" || exit 1
case "$*" in
*'get power') echo power:1;;
*'get boot') echo "boot:$(cat boot 2>/dev/null || echo default)";;
*'set boot '*) echo "${*##* }" >boot;;
esac)sh");
    }
    static broker::ObjectPath setting(const std::string& className, const char* id) {
        return path(className, {{"InstanceID", text(id)}});
    }
    // Returns the value of ChangeBootOrder.
    std::string bootOnceFrom(const char* source) {
        const broker::Reply reply = broker.invokeMethod(
            setting("CIM_BootConfigSetting", "BootConfigSetting-Once"), "ChangeBootOrder",
            {{"Source", arrayOf(CMPI_ref, {reference(setting("CIM_BootSourceSetting", source))})}});
        return reply.values.empty() ? reply.message : broker::toText(reply.values[0]);
    }
};

// The simulator keeps the device only: its flags never hold, so nothing of the next boot is asked for here.
TEST_F(PeerBoot, setsTheDeviceThatIpmitoolSees) {
    EXPECT_EQ(list(path("CIM_BootConfigSetting")).size(), 2U);
    EXPECT_EQ(bootOnceFrom("BootSourceSetting-Network"), "0");
    EXPECT_THAT(ipmitool("chassis bootparam get 5"), HasSubstr("Boot Device Selector : Force PXE"));
    EXPECT_EQ(bootOnceFrom("BootSourceSetting-Disk"), "0");
    EXPECT_THAT(ipmitool("chassis bootparam get 5"),
                HasSubstr("Boot Device Selector : Force Boot from default Hard-Drive"));
}

TEST_F(PeerBoot, findsTheWatchdogAsIpmitoolDoes) {
    write("/conf/system_names.ini", "[names]\nsp = sim\nhost = server\n");
    EXPECT_THAT(ipmitool("mc watchdog get"), HasSubstr("Watchdog Timer Is:      Stopped"));
    EXPECT_EQ(get("CIM_Watchdog", "EnabledState"), "3");
    EXPECT_EQ(get("CIM_Watchdog", "MonitoredEntity"), "0");
    const auto reply =
        broker.invokeMethod(only("CIM_Watchdog").path, "RequestStateChange", {{"RequestedState", number(2)}});
    ASSERT_EQ(reply.values.size(), 1U) << reply.message;
    EXPECT_EQ(broker::toText(reply.values[0]), "2") << "it was never set";
}

} // namespace
