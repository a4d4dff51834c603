// Taking new firmware: its commands, and the restart.
#include "firmware/image.h"
#include "ipmi/oem_commands.h"
#include "virtual_bmc_fixture.h"

#include <thread>

namespace {

using testing::ElementsAre;

using namespace ipmi::oem;

class Firmware : public VirtualBmcFixture {
protected:
    Bytes ask(ipmi::CommandCode command, const Bytes& request = {}) {
        return VirtualBmcFixture::ask(*bmc, command.netFn, command.number, request);
    }
    static Bytes little(std::size_t number) {
        return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8), 0, 0};
    }
    Bytes begin(std::size_t size) { return ask(beginFirmwareUpdate, little(size)); }
    Bytes write(std::uint8_t transfer, std::size_t offset, const Bytes& bytes) {
        Bytes request = little(offset);
        request.insert(request.begin(), transfer);
        request.insert(request.end(), bytes.begin(), bytes.end());
        return ask(writeFirmwareBlock, request);
    }
    // Hands over as much of the image as there is, in blocks.
    void send(std::uint8_t transfer, const Bytes& image) {
        for (std::size_t i = 0; i < image.size(); i += firmwareBlockSize)
            ASSERT_THAT(write(transfer, i,
                              {image.begin() + static_cast<std::ptrdiff_t>(i),
                               image.begin() + static_cast<std::ptrdiff_t>(
                                                   std::min(image.size(), i + firmwareBlockSize))}),
                        ElementsAre(0));
    }
    static Bytes imageOf(std::uint16_t product = ipmi::oem::product) {
        const Bytes payload(1000, 7);
        const auto head = firmware::writeHead({.major = 3,
                                               .minor = 21,
                                               .auxiliary = {1, 2, 3, 4},
                                               .manufacturerId = manufacturer,
                                               .productId = product},
                                              payload);
        Bytes image(head.begin(), head.end());
        image.insert(image.end(), payload.begin(), payload.end());
        return image;
    }
    Bytes revision() {
        const Bytes device = ask(ipmi::command::getDeviceId);
        return {device.at(3), device.at(4)};
    }
    void start(const char* model) {
        create(model);
        bmc = open();
    }

    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(Firmware, IsTakenAndStarted) {
    start(R"({"firmware": {"restartTime": 400}})");
    const Bytes image = imageOf();
    ASSERT_THAT(begin(image.size()), ElementsAre(0, 1));
    send(1, image);
    EXPECT_EQ(revision(), (Bytes{1, 0}));
    EXPECT_THAT(ask(finishFirmwareUpdate, {1}), ElementsAre(0));
    EXPECT_EQ(revision(), (Bytes{0x81, 0})) << "unavailable, with the former revision";
    EXPECT_THAT(ask(ipmi::command::getChassisStatus), ElementsAre(0xD2));
    EXPECT_EQ(ask(getFirmwareUpdate).at(1), firmwareActivating);
    std::this_thread::sleep_for(std::chrono::milliseconds(450));
    EXPECT_EQ(revision(), (Bytes{3, 0x21}));
    EXPECT_EQ(ask(ipmi::command::getChassisStatus).at(0), 0);
    const Bytes device = ask(ipmi::command::getDeviceId);
    EXPECT_EQ(Bytes(device.end() - 4, device.end()), (Bytes{1, 2, 3, 4}));
}

TEST_F(Firmware, StaysWhenATransferIsInterrupted) {
    start(R"({"firmware": {"restartTime": 0, "largestImage": 2000}})");
    const Bytes image = imageOf();
    ASSERT_THAT(begin(image.size()), ElementsAre(0, 1));
    send(1, {image.begin(), image.begin() + 600});
    EXPECT_THAT(ask(finishFirmwareUpdate, {1}), ElementsAre(0xD5));
    bmc = open(); // another session, of another process
    EXPECT_THAT(ask(getFirmwareUpdate), ElementsAre(0, firmwareReceiving, 0, 0xD0, 7, 0, 0, 0x58, 2, 0, 0));
    EXPECT_THAT(begin(2001), ElementsAre(0xC4));
    ASSERT_THAT(begin(image.size()), ElementsAre(0, 2));
    EXPECT_THAT(write(1, 0, {1}), ElementsAre(0xC5)) << "a block of the former one";
    EXPECT_THAT(write(2, 1, {1}), ElementsAre(0xC9)) << "one is left out";
    EXPECT_THAT(write(2, 0, Bytes(201)), ElementsAre(0xC7));
    send(2, image);
    EXPECT_THAT(write(2, image.size(), {1}), ElementsAre(0xC9));
    EXPECT_THAT(write(2, 600, {image.begin() + 600, image.begin() + 700}), ElementsAre(0)) << "it came twice";
    EXPECT_THAT(ask(cancelFirmwareUpdate, {2}), ElementsAre(0));
    EXPECT_THAT(ask(finishFirmwareUpdate, {2}), ElementsAre(0xD5));
    EXPECT_EQ(revision(), (Bytes{1, 0}));
}

TEST_F(Firmware, IsRefusedWhereItIsNotTheMachines) {
    start(R"({"firmware": {"restartTime": 0}})");
    Bytes damaged = imageOf();
    damaged[500] ^= 1;
    const std::pair<Bytes, std::uint8_t> images[] = {
        {damaged, 0x81}, {Bytes(300), 0x81}, {imageOf(product + 1), 0x80}};
    std::uint8_t transfer = 0;
    for (const auto& [image, code] : images) {
        ASSERT_THAT(begin(image.size()), ElementsAre(0, ++transfer));
        send(transfer, image);
        EXPECT_THAT(ask(finishFirmwareUpdate, {transfer}), ElementsAre(code));
    }
    EXPECT_EQ(revision(), (Bytes{1, 0}));
}

} // namespace
