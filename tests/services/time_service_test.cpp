// CIM_TimeService: reading and setting the BMC's clock.
#include "managed_bmc.h"
#include "provider_helper/services.h"
#include "services/clock_time.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr auto getTime = ipmi::command::getSelTime, setTime = ipmi::command::setSelTime,
               setOffset = ipmi::command::setSelTimeUtcOffset;
constexpr std::uint8_t invalidCommand = 0xC1;

// 2024-05-04 12:30:40 by the clock.
constexpr const char* given = "20240504123040.000000+120";
const std::vector<std::uint8_t> givenBytes{0x70, 0x2A, 0x36, 0x66};

class TimeService : public ManagedBmc {
protected:
    TimeService() { setenv("TZ", "UTC-3", 1); } // three hours east
    ~TimeService() override { unsetenv("TZ"); }

    broker::Reply manage(bool reads, const std::string& time = {}) {
        broker::NamedValues in{{"GetRequest", {CMPI_boolean, reads}},
                               {"ManagedElement", reference(processor)}};
        if (!time.empty())
            in.push_back({"TimeData", dateTime(time)});
        return service.invoke(only(service).path, "ManageTime", in);
    }
    static broker::Value dateTime(const std::string& text) {
        return {CMPI_dateTime, broker::DateTime::parse(text).value()};
    }
    std::string read() {
        const auto reply = manage(true);
        const broker::Value* time = broker::find(reply.arguments, "TimeData");
        return time != nullptr ? broker::toText(*time) : reply.message;
    }
    void refuse(ipmi::CommandCode command, std::uint8_t code, unsigned skip = 0) const {
        bmc().addFault({.netFn = command.netFn, .command = command.number, .value = code, .skip = skip});
    }
    std::string offset() const {
        const auto log = bmc().describe()["sel"];
        return log.contains("utcOffset") ? log["utcOffset"].dump() : "none";
    }

    const ClassRequests service{broker, PH_CLASS_FUNCTIONS(TimeService)};
    const broker::ObjectPath processor =
        path("CIM_SPComputerSystem",
             {{"Name", text("controller")}, {"CreationClassName", text("CIM_SPComputerSystem")}});
};

TEST_F(TimeService, setsTheClockAndItsOffset) {
    bmc().recordMessages(100);
    EXPECT_THAT(manage(false, given), Returns(0));
    EXPECT_THAT(requests(setTime), ElementsAre(givenBytes));
    EXPECT_THAT(requests(setOffset), ElementsAre(std::vector<std::uint8_t>{120, 0}));
    EXPECT_THAT(read(), StartsWith("20240504123"));
    EXPECT_THAT(read(), testing::EndsWith("+120"));

    bmc().recordMessages(100);
    EXPECT_THAT(manage(false, given), Returns(0));
    EXPECT_THAT(requests(setOffset), IsEmpty()) << "it is so already";
    EXPECT_THAT(manage(false, "20240504123040.000000-090"), Returns(0));
    EXPECT_EQ(offset(), "-90");
}

// There it counts the seconds of this system's time zone, as the event log is taken to.
TEST_F(TimeService, doesWithoutOffsets) {
    refuse(setOffset, invalidCommand);
    refuse(ipmi::command::getSelTimeUtcOffset, invalidCommand);
    EXPECT_THAT(manage(false, given), Returns(0));
    const auto time = read();
    EXPECT_THAT(time, StartsWith("20240504133"));
    EXPECT_THAT(time, testing::EndsWith("+180"));
}

TEST_F(TimeService, changesNothingWhenItFails) {
    ASSERT_THAT(manage(false, given), Returns(0));
    refuse(setTime, 0xFF);
    EXPECT_EQ(manage(false, "20300101000000.000000+060").message, "The BMC did not set its clock");
    EXPECT_EQ(offset(), "120") << "it was put back";
    bmc().clearFaults();
    refuse(setOffset, 0xFF);
    EXPECT_EQ(manage(false, "20300101000000.000000+060").message, "The BMC did not set its clock");
    EXPECT_THAT(read(), StartsWith("20240504123"));
    bmc().clearFaults();
    refuse(getTime, 0xFF);
    EXPECT_EQ(read(), "The BMC does not tell the time");
}

TEST_F(TimeService, doesNotTellATimeThatNobodySet) {
    PH_STAND_IN(CIM_GetSELTime, [](auto*, std::uint32_t* seconds, int) { return *seconds = 1000, 0; });
    EXPECT_EQ(read(), "The BMC's clock was not set");
}

TEST_F(TimeService, refusesWrongRequests) {
    constexpr const char* wrongTime = "TimeData Parameter is Invalid";
    for (const char* time :
         {"", "19870105184832.000000+000", "21060207062815.000000+000", "00000001000000.000000:000"})
        EXPECT_THAT(manage(false, time), Refuses(CMPI_RC_ERR_INVALID_PARAMETER, wrongTime)) << time;
    const auto path = only(service).path;
    auto other = processor;
    other.keys[0].value = text("another");
    for (const auto& element :
         {reference(other), reference(::path("CIM_HostComputerSystem")), text("controller")})
        EXPECT_THAT(service.invoke(path, "ManageTime",
                                   {{"GetRequest", {CMPI_boolean, true}}, {"ManagedElement", element}}),
                    Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "ManagedElement Parameter is Invalid"));
    EXPECT_EQ(offset(), "none");
}

TEST(ClockTime, isReadStrictlyAndWritten) {
    for (const char* text :
         {"", "20240504123040", "20240230000000.000000+000", "20241301000000.000000+000",
          "20240504243040.000000+000", "20240504126040.000000+000", "20240504123060.000000+000",
          "20240504123040.00000 +000", "20240504123040.000000*000", "20240504123040.000000+00",
          "20240504123040.000000+0000", "2024-504123040.000000+000"})
        EXPECT_FALSE(ph::parseClockTime(text)) << text;
    for (const char* text :
         {"20240229235959.000000+000", "19691231235959.000000-720", "21060207062814.000000+999"}) {
        const auto time = ph::parseClockTime(text);
        ASSERT_TRUE(time) << text;
        char written[ph::clockTextSize];
        ph::writeClockTime(*time, written);
        EXPECT_STREQ(written, text);
    }
    char written[ph::clockTextSize];
    ph::writeClockTime({1440 * 60, 1440}, written);
    EXPECT_STREQ(written, "19700101000000.000000+000");
}

} // namespace
