// Commands that fail as somebody asked, and the record of messages.
#include "virtual_bmc_fixture.h"

#include <chrono>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using vbmc::Fault;

constexpr std::uint8_t setSensorHysteresis = 0x24;
constexpr std::uint8_t getSensorHysteresis = 0x25;

class Faults : public VirtualBmcFixture {
protected:
    void SetUp() override {
        create(R"({"sensors": [{"number": 1, "name": "A", "reading": 7}]})");
        session = open(1);
        bmc = std::make_unique<vbmc::VirtualBmc>(stateFile);
    }
    Bytes reading() const { return ask(*session, sensorEvent, getSensorReading, {1}); }

    const Bytes good{0, 7, 0xC0, 0xC0};
    std::unique_ptr<ipmi::Transport> session;
    std::unique_ptr<vbmc::VirtualBmc> bmc;
};

TEST_F(Faults, strikeTheCallsThatTheyName) {
    bmc->addFault({sensorEvent, getSensorReading, Fault::CompletionCode, 0xC0, 2, 1});
    EXPECT_EQ(ask(*session, sensorEvent, getSensorHysteresis, {1, 0xFF}), (Bytes{0, 0, 0}))
        << "another command";
    EXPECT_EQ(reading(), good);
    EXPECT_EQ(reading(), good);
    ASSERT_THAT(bmc->faults(), SizeIs(1));
    EXPECT_EQ(bmc->faults()[0].skip, 0u);
    EXPECT_EQ(reading(), Bytes{0xC0});
    EXPECT_THAT(bmc->faults(), IsEmpty());
    EXPECT_EQ(reading(), good);

    bmc->addFault({sensorEvent, getSensorReading, Fault::CompletionCode, 0xFF});
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(ask(*open(), sensorEvent, getSensorReading, {1}), Bytes{0xFF}) << "until it is cleared";
    EXPECT_EQ(bmc->describe()["faults"].size(), 1u);
    bmc->clearFaults();
    EXPECT_EQ(reading(), good);
    EXPECT_FALSE(bmc->describe().contains("faults"));
}

TEST_F(Faults, areOfEachKind) {
    bmc->addFault({sensorEvent, getSensorReading, Fault::ShortAnswer, 2, 0, 1});
    bmc->addFault({sensorEvent, getSensorReading, Fault::ShortAnswer, 99, 0, 1});
    EXPECT_EQ(reading(), (Bytes{0, 7}));
    EXPECT_EQ(reading(), good) << "longer than the answer";

    bmc->addFault({sensorEvent, getSensorReading, Fault::Late, 50, 0, 1});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(reading(), good);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));

    bmc->addFault({sensorEvent, getSensorReading, Fault::Late, 1001, 0, 1});
    EXPECT_THROW(reading(), ipmi::TransportError) << "later than the session waits";
    EXPECT_EQ(reading(), good);

    bmc->addFault({sensorEvent, getSensorReading, Fault::Silent, 0, 0, 1});
    EXPECT_THROW(reading(), ipmi::TransportError);
    EXPECT_EQ(reading(), good);
    EXPECT_THROW(bmc->addFault({sensorEvent, getSensorReading, Fault::CompletionCode, 0}), vbmc::Error);
    EXPECT_THROW(bmc->addFault({sensorEvent, getSensorReading, Fault::CompletionCode, 0x100}), vbmc::Error);
    EXPECT_THROW(bmc->addFault({sensorEvent, getSensorReading, Fault::ShortAnswer, 0}), vbmc::Error);
}

TEST_F(Faults, keepACommandFromItsEffectOnlyWhereItFails) {
    const auto set = [&](std::uint8_t value) {
        try {
            ask(*session, sensorEvent, setSensorHysteresis, {1, 0xFF, value, value});
        } catch (const ipmi::TransportError&) {
        }
        return ask(*session, sensorEvent, getSensorHysteresis, {1, 0xFF})[1];
    };
    bmc->addFault({sensorEvent, setSensorHysteresis, Fault::CompletionCode, 0xC0, 0, 1});
    bmc->addFault({sensorEvent, setSensorHysteresis, Fault::Silent, 0, 0, 1});
    bmc->addFault({sensorEvent, setSensorHysteresis, Fault::ShortAnswer, 1, 0, 1});
    bmc->addFault({sensorEvent, setSensorHysteresis, Fault::Late, 1, 0, 1});
    EXPECT_EQ(set(1), 0);
    EXPECT_EQ(set(2), 0);
    EXPECT_EQ(set(3), 3);
    EXPECT_EQ(set(4), 4);
}

TEST_F(Faults, messagesAreRecordedUpToTheLimit) {
    reading();
    EXPECT_THAT(bmc->recordedMessages(), IsEmpty());
    bmc->recordMessages(3);
    bmc->addFault({sensorEvent, getSensorReading, Fault::Silent, 0, 0, 1});
    EXPECT_THROW(reading(), ipmi::TransportError);
    ask(*open(), sensorEvent, getSensorHysteresis, {1, 0xFF});
    ask(*session, 0x3E, 0x99, Bytes(300, 1));
    reading();
    const auto messages = bmc->recordedMessages();
    ASSERT_THAT(messages, SizeIs(3));
    EXPECT_EQ(messages[0].netFn, sensorEvent);
    EXPECT_EQ(messages[0].command, getSensorReading);
    EXPECT_THAT(messages[0].request, ElementsAre(1));
    EXPECT_THAT(messages[0].answer, IsEmpty());
    EXPECT_THAT(messages[1].request, ElementsAre(1, 0xFF));
    EXPECT_THAT(messages[1].answer, ElementsAre(0, 0, 0));
    EXPECT_THAT(messages[2].request, SizeIs(ipmi::maxMessage)) << "cut";
    EXPECT_THAT(messages[2].answer, ElementsAre(0xC1));

    bmc->recordMessages(0);
    reading();
    EXPECT_THAT(bmc->recordedMessages(), IsEmpty());
    bmc->recordMessages(1);
    reading();
    EXPECT_THAT(bmc->recordedMessages(), SizeIs(1));
    create("{}");
    EXPECT_THAT(bmc->recordedMessages(), IsEmpty()) << "a new machine has received none";
}

} // namespace
