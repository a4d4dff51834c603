// Serial over LAN of OpenIPMI's BMC simulator as text redirection, with ipmitool as the witness.
#include "provider_on_simulator.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr char textService[] = "CIM_TextRedirectionService";

// The simulator has it on each of its channels; the serial port behind it does not answer.
class PeerRedirection : public ProviderOnSimulator {
protected:
    PeerRedirection() : ProviderOnSimulator({}, "sol \"tcp:127.0.0.1:1\" 38400\n") {}

    broker::Reply request(std::uint64_t state) {
        return broker.invokeMethod(only(textService).path, "RequestStateChange",
                                   {{"RequestedState", number(state)}});
    }
};

TEST_F(PeerRedirection, isWhatIpmitoolPrints) {
    ASSERT_THAT(ipmitool("sol info 1"), HasSubstr("Enabled                         : true"));
    EXPECT_EQ(get(textService, "Name"), "TextRedirectionService*Channel-1");
    EXPECT_EQ(get(textService, "EnabledState"), "2");
    EXPECT_EQ(get(textService, "Description"), "Serial over LAN on channel 1")
        << "it has neither authentication nor port, and the bit rate of the serial channel";
    EXPECT_EQ(get(textService, "SharingMode"), "2");
    EXPECT_EQ(get("CIM_TextRedirectionSAP", "EnabledState"), "6");

    ipmitool("sol set volatile-bit-rate 57.6 1");
    EXPECT_EQ(get(textService, "Description"), "Serial over LAN on channel 1; 57600 bit/s");
    ipmitool("sol set enabled false 1");
    EXPECT_EQ(get(textService, "EnabledState"), "3");
    EXPECT_EQ(get("CIM_TextRedirectionSAP", "EnabledState"), "3");
}

TEST_F(PeerRedirection, isSwitchedAsIpmitoolSees) {
    for (const auto& [state, printed] : {std::pair{3, "false"}, {2, "true"}}) {
        const auto reply = request(state);
        ASSERT_EQ(reply.values.size(), 1U) << reply.message;
        EXPECT_EQ(broker::toText(reply.values[0]), "0");
        EXPECT_THAT(ipmitool("sol info 1"),
                    HasSubstr(std::string("Enabled                         : ") + printed));
    }
}

class PeerWithoutSol : public ProviderOnSimulator {};

TEST_F(PeerWithoutSol, hasNoTextRedirection) {
    ASSERT_THAT(ipmitool("raw 0x0c 0x22 1 1 0 0"), HasSubstr("rsp=0xc1"));
    EXPECT_THAT(list(path(textService)), IsEmpty());
    EXPECT_THAT(list(path("CIM_TextRedirectionSAP")), IsEmpty());
    EXPECT_EQ(get("CIM_RedirectionServiceCapabilities", "InstanceID"), "KVMRedirectionCapabilities");
    EXPECT_EQ(get("CIM_KVMRedirectionSAP", "OperationalStatus"), "{0}")
        << "it has none of the OEM commands, either";
}

} // namespace
