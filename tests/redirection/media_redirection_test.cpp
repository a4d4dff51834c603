// KVM and media, over the services of the virtual BMC.
#include "ipmi/oem_commands.h"
#include "managed_bmc.h"
#include "provider_helper/redirection.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto getConfiguration = ipmi::oem::getServiceConfiguration,
               setConfiguration = ipmi::oem::setServiceConfiguration;

constexpr char services[] = R"({"services": [
    {"name": "kvm", "port": 5900, "securePort": 5901, "maxSessions": 2, "activeSessions": 1},
    {"name": "cd-media", "securePort": 5911, "timeout": 5025},
    {"name": "fd-media", "enabled": false, "port": 5912, "maxSessions": 4},
    {"name": "hd-media", "enabled": false, "port": 5914}]})";

class MediaRedirection : public ManagedBmc {
protected:
    MediaRedirection() : ManagedBmc(services) {}

    // A property of each instance.
    static std::vector<std::string> all(const ClassRequests& requests, const char* property) {
        std::vector<std::string> values;
        for (const auto& each : requests.enumerate().instances)
            values.push_back(textOf(each, property));
        return values;
    }
    static broker::Reply request(const ClassRequests& requests, const char* name, std::uint64_t state) {
        return requests.invoke(pathOnProcessor(requests.path().className, "controller", name),
                               "RequestStateChange", {{"RequestedState", number(state)}});
    }

    const ClassRequests redirections{broker, PH_CLASS_FUNCTIONS(RedirectionService)};
    const ClassRequests usb{broker, PH_CLASS_FUNCTIONS(USBRedirectionService)};
    const ClassRequests kvmPoint{broker, PH_CLASS_FUNCTIONS(KVMRedirectionSAP)};
    const ClassRequests mediaPoints{broker, PH_CLASS_FUNCTIONS(MediaRedirectionSAP)};
    const ClassRequests usbPoints{broker, PH_CLASS_FUNCTIONS(USBRedirectionSAP)};
    const ClassRequests mediaCapabilities{broker, PH_CLASS_FUNCTIONS(MediaRedirectionCapabilities)};
    const ClassRequests usbCapabilities{broker, PH_CLASS_FUNCTIONS(USBRedirectionCapabilities)};
};

TEST_F(MediaRedirection, accessPointsAreTheServicesOfTheBmc) {
    EXPECT_THAT(propertiesOf(only(kvmPoint)),
                ElementsAre("SystemCreationClassName=CIM_SPComputerSystem",
                            "CreationClassName=CIM_KVMRedirectionSAP", "SystemName=controller",
                            "Name=KVMRedirectionSAP", "ElementName=KVM Redirection",
                            "Description=TCP port 5900; with encryption 5901; 1 of 2 sessions",
                            "OperationalStatus={2}", "HealthState=5", "EnabledState=2", "RequestedState=12",
                            "KVMProtocol=0"));
    const auto media = mediaPoints.enumerate().instances;
    ASSERT_EQ(media.size(), 3U);
    EXPECT_THAT(propertiesOf(media[0]),
                ElementsAre("SystemCreationClassName=CIM_SPComputerSystem",
                            "CreationClassName=CIM_MediaRedirectionSAP", "SystemName=controller",
                            "Name=CDMEDIARedirectionSAP", "ElementName=CD Media Redirection",
                            "Description=TCP port with encryption 5911; 0 of 1 sessions",
                            "OperationalStatus={2}", "HealthState=5", "EnabledState=6", "RequestedState=12",
                            "ConnectionMode=2", "SessionTimeout=00000000012345.000000:000"));
    EXPECT_THAT(all(mediaPoints, "EnabledState"), ElementsAre("6", "3", "3"));
    EXPECT_THAT(all(mediaPoints, "SessionTimeout"),
                ElementsAre("00000000012345.000000:000", "<none>", "<none>"));
    EXPECT_THAT(all(usbPoints, "Description"), all(mediaPoints, "Description"));
    EXPECT_THAT(all(usbPoints, "EnabledState"), ElementsAre("6", "3", "3"));
}

TEST_F(MediaRedirection, eachIsSwitchedByItself) {
    const std::tuple<const ClassRequests&, const char*, const char*> points[] = {
        {kvmPoint, "KVMRedirectionSAP", "kvm"},
        {mediaPoints, "CDMEDIARedirectionSAP", "cd-media"},
        {mediaPoints, "FDMEDIARedirectionSAP", "fd-media"},
        {mediaPoints, "HDMEDIARedirectionSAP", "hd-media"},
        {usbPoints, "CDMEDIAUSBRedirectionSAP", "cd-media"},
        {usbPoints, "FDMEDIAUSBRedirectionSAP", "fd-media"},
        {usbPoints, "HDMEDIAUSBRedirectionSAP", "hd-media"},
    };
    for (const auto& [requests, name, word] : points) {
        SCOPED_TRACE(name);
        createBmc(services);
        auto expected = bmc().describe()["services"];
        const bool wasEnabled = row("services", "name", word).at("enabled");
        for (auto& each : expected)
            if (each["name"] == word) {
                each["enabled"] = !wasEnabled;
                if (wasEnabled)
                    each["activeSessions"] = 0;
            }
        EXPECT_THAT(request(requests, name, wasEnabled ? 3 : 2), Returns(0));
        EXPECT_EQ(bmc().describe()["services"], expected) << "and no other";
        EXPECT_EQ(lastJob(), Job::completed(std::string(name) + "_RequestStateChange"));
        for (const std::uint64_t state : {0, 6, 11})
            EXPECT_THAT(request(requests, name, state),
                        Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "The access point has no such state"));
        failCommand(setConfiguration);
        EXPECT_THAT(request(requests, name, wasEnabled ? 2 : 3), Returns(2));
        EXPECT_EQ(lastJob(), Job::failed(std::string(name) + "_RequestStateChange"));
        EXPECT_EQ(bmc().describe()["services"], expected);
    }
    EXPECT_EQ(request(usbPoints, "CDMEDIARedirectionSAP", 2).code, CMPI_RC_ERR_NOT_FOUND)
        << "that is an access point of another class";
}

TEST_F(MediaRedirection, servicesStandAsTheirAccessPointsDo) {
    EXPECT_THAT(all(redirections, "Name"), ElementsAre("KVMRedirectionService", "MediaRedirectionService"));
    EXPECT_THAT(all(redirections, "RedirectionServiceType"), ElementsAre("{3}", "{5}"));
    EXPECT_THAT(all(redirections, "MaxCurrentEnabledSAPs"), ElementsAre("1", "3"));
    EXPECT_THAT(all(redirections, "EnabledState"), ElementsAre("2", "2"));
    EXPECT_EQ(textOf(only(usb), "RedirectionServiceType"), "{4}");
    EXPECT_EQ(textOf(only(usb), "SharingMode"), "3") << "a floppy has four sessions";
    EXPECT_THAT(request(mediaPoints, "CDMEDIARedirectionSAP", 3), Returns(0));
    EXPECT_THAT(all(redirections, "EnabledState"), ElementsAre("2", "3"));
    EXPECT_EQ(textOf(only(usb), "EnabledState"), "3");
    EXPECT_THAT(request(usbPoints, "HDMEDIAUSBRedirectionSAP", 2), Returns(0));
    EXPECT_THAT(all(redirections, "EnabledState"), ElementsAre("2", "2"));

    const auto media = only(mediaCapabilities);
    EXPECT_EQ(textOf(media, "DevicesSupported"), "{2, 4, 3}");
    EXPECT_EQ(textOf(media, "MaxDevicesSupported"), "{1, 4, 1}");
    EXPECT_EQ(textOf(media, "SharingModeSupported"), "{3}");
    EXPECT_EQ(textOf(only(usbCapabilities), "SAPCapabilitiesSupported"), "{2}");
}

// Another maker's BMC, or one that lacks a service: values are left out.
TEST_F(MediaRedirection, leavesOutWhatTheBmcDoesNotTell) {
    failCommand(getConfiguration, 1); // the first answers
    EXPECT_THAT(all(mediaPoints, "EnabledState"), ElementsAre("6", "<none>", "<none>"));
    failCommand(getConfiguration);
    const auto kvm = only(kvmPoint);
    EXPECT_EQ(textOf(kvm, "Description"), "<none>");
    EXPECT_EQ(textOf(kvm, "OperationalStatus"), "{0}");
    EXPECT_EQ(textOf(kvm, "HealthState"), "0");
    EXPECT_THAT(all(redirections, "EnabledState"), ElementsAre("<none>", "<none>"));
    EXPECT_THAT(all(redirections, "SharingMode"), ElementsAre("0", "0"));
    EXPECT_EQ(textOf(only(mediaCapabilities), "MaxDevicesSupported"), "<none>");
    EXPECT_THAT(request(kvmPoint, "KVMRedirectionSAP", 3), Returns(2));
    EXPECT_EQ(usbPoints.names().paths.size(), 3U);

    createBmc(R"({"services": [{"name": "cd-media", "enabled": false}]})");
    EXPECT_THAT(all(mediaPoints, "EnabledState"), ElementsAre("3", "<none>", "<none>"));
    EXPECT_THAT(all(redirections, "EnabledState"), ElementsAre("<none>", "<none>"));
}

} // namespace
