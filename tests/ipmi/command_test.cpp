#include "ipmi/command.h"

#include "scripted_transport.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Command, splitsTheCompletionCodeOff) {
    ScriptedTransport bmc;
    bmc.answer = {0x00, 0x20, 0x81};
    const auto answer = ipmi::run(bmc, ipmi::command::getDeviceId, {0xAB});
    EXPECT_EQ(bmc.netFn, 0x06);
    EXPECT_EQ(bmc.command, 0x01);
    EXPECT_THAT(bmc.request, ElementsAre(0xAB));
    EXPECT_THAT(answer.data(), ElementsAre(0x20, 0x81));
}

TEST(Command, anAnswerMayHaveNoData) {
    ScriptedTransport bmc;
    bmc.answer = {0x00};
    const auto answer = ipmi::run(bmc, ipmi::command::chassisControl, {0x00});
    EXPECT_TRUE(answer.data().empty());
    auto reader = answer.reader();
    EXPECT_NO_THROW(answer.verify(reader));
    reader.u8();
    EXPECT_THROW(answer.verify(reader), ipmi::ShortAnswerError);
}

TEST(Command, aCompletionCodeIsATypedError) {
    ScriptedTransport bmc;
    bmc.answer = {0xCB, 0x01, 0x02};
    try {
        ipmi::run(bmc, ipmi::command::getSensorReading, {0x07});
        FAIL() << "completion code CBh is no success";
    } catch (const ipmi::CompletionCodeError& error) {
        EXPECT_EQ(error.command.netFn, 0x04);
        EXPECT_EQ(error.command.number, 0x2D);
        EXPECT_EQ(error.code, 0xCB);
        EXPECT_THAT(error.what(), HasSubstr("not present"));
    }
}

TEST(Command, asksABusyBmcAgainButNotForEver) {
    ScriptedTransport bmc;
    bmc.codesBefore = {0xC0, 0xC3};
    bmc.answer = {0x00, 0x20};
    EXPECT_THAT(ipmi::run(bmc, ipmi::command::getDeviceId).data(), ElementsAre(0x20));
    EXPECT_EQ(bmc.exchanges, 3u);

    bmc = {};
    bmc.answer = {0xC0};
    EXPECT_EQ(ipmi::ask(bmc, ipmi::command::getDeviceId, {}).code(), 0xC0);
    EXPECT_EQ(bmc.exchanges, 4u);
}

TEST(Command, refusesATransportThatBreaksItsPromise) {
    ScriptedTransport bmc;
    for (const std::size_t length : {std::size_t{0}, ipmi::maxMessage + 1}) {
        bmc.answer.assign(length, 0x00);
        EXPECT_THROW(ipmi::run(bmc, ipmi::command::getDeviceId), ipmi::TransportError) << length;
    }
}

TEST(CompletionCode, unlistedCodesAreNamedByTheirRange) {
    EXPECT_THAT(ipmi::completionCodeText(0x7E), HasSubstr("OEM"));
    EXPECT_THAT(ipmi::completionCodeText(0x80), HasSubstr("this command"));
    EXPECT_THAT(ipmi::completionCodeText(0x7F), HasSubstr("reserved"));
    EXPECT_THAT(ipmi::completionCodeText(0xD7), HasSubstr("reserved"));
}

} // namespace
