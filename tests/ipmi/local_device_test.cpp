// The local device against a stand-in for the driver: a pipe that is readable while an answer waits, and an
// ioctl of this program.
#include "ipmi/command.h"

#include <cstdarg>
#include <deque>
#include <gmock/gmock.h>
#include <linux/ipmi.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sysroot_fixture.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

struct Reply {
    Bytes bytes;
    long age = 0; // which request before the latest it answers
    int type = IPMI_RESPONSE_RECV_TYPE;
};

struct Driver {
    std::deque<Reply> replies;
    int sendError = 0;
    Bytes sent; // network function, command, data
    ipmi_system_interface_addr peer{};
    long lastId = 0;
} driver;

int fail(int error) {
    errno = error;
    return -1;
}

int sendCommand(int device, const ipmi_req& request) {
    if (driver.sendError != 0)
        return fail(driver.sendError);
    driver.peer = *reinterpret_cast<ipmi_system_interface_addr*>(request.addr);
    driver.sent = {request.msg.netfn, request.msg.cmd};
    driver.sent.insert(driver.sent.end(), request.msg.data, request.msg.data + request.msg.data_len);
    driver.lastId = request.msgid;
    for (std::size_t i = 0; i < driver.replies.size(); ++i)
        EXPECT_EQ(::write(device, "", 1), 1);
    return 0;
}

int receiveMessage(int device, ipmi_recv& message) {
    char mark = 0;
    EXPECT_EQ(::read(device, &mark, 1), 1);
    const Reply reply = driver.replies.front();
    driver.replies.pop_front();
    message.recv_type = reply.type;
    message.msgid = driver.lastId - reply.age;
    const bool isCut = reply.bytes.size() > message.msg.data_len;
    if (!isCut)
        message.msg.data_len = static_cast<unsigned short>(reply.bytes.size());
    std::copy_n(reply.bytes.begin(), message.msg.data_len, message.msg.data);
    return isCut ? fail(EMSGSIZE) : 0;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int ioctl(int device, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (request == IPMICTL_SEND_COMMAND)
        return sendCommand(device, *static_cast<ipmi_req*>(argument));
    if (request == IPMICTL_RECEIVE_MSG_TRUNC)
        return receiveMessage(device, *static_cast<ipmi_recv*>(argument));
    return fail(ENOTTY);
}

namespace {

class LocalDevice : public SysrootFixture {
protected:
    void SetUp() override {
        driver = {};
        std::filesystem::create_directory(sysroot.place("/dev"));
    }
    void makeDevice(const char* path) const { ASSERT_EQ(mkfifo(sysroot.place(path).c_str(), 0600), 0); }
    static std::unique_ptr<ipmi::Transport> open(const std::string& address = "", int timeout = 1) {
        ipmi::SessionSettings settings;
        settings.address = address;
        settings.interfaceType = ipmi::SessionSettings::LocalDevice;
        settings.timeout = timeout;
        return ipmi::openTransport(settings);
    }
    // What an exchange says that cannot succeed.
    static std::string failure(ipmi::Transport& bmc) {
        try {
            ipmi::run(bmc, ipmi::command::getDeviceId);
        } catch (const ipmi::TransportError& error) {
            return error.what();
        }
        ADD_FAILURE() << "succeeded";
        return {};
    }
};

TEST_F(LocalDevice, exchangesMessagesWithTheBmc) {
    makeDevice("/dev/ipmi0");
    const auto bmc = open();
    driver.replies = {{{0x00, 0x1F, 0xC0}}};
    EXPECT_THAT(ipmi::run(*bmc, ipmi::command::getSensorReading, {0x07}).data(), ElementsAre(0x1F, 0xC0));
    EXPECT_THAT(driver.sent, ElementsAre(0x04, 0x2D, 0x07));
    EXPECT_EQ(driver.peer.addr_type, IPMI_SYSTEM_INTERFACE_ADDR_TYPE);
    EXPECT_EQ(driver.peer.channel, IPMI_BMC_CHANNEL);
    EXPECT_EQ(driver.peer.lun, 0);
}

TEST_F(LocalDevice, isFoundWhereSystemsPutIt) {
    for (const char* folder : {"/dev/ipmi", "/dev/ipmidev"}) {
        std::filesystem::create_directory(sysroot.place(folder));
        makeDevice((std::string(folder) + "/0").c_str());
        EXPECT_NE(open("openipmi"), nullptr) << folder;
        std::filesystem::remove_all(sysroot.place(folder));
    }
    EXPECT_THROW(open("openipmi"), ipmi::TransportError);
}

TEST_F(LocalDevice, takesOnlyTheAnswerToItsOwnRequest) {
    makeDevice("/dev/ipmi0");
    const auto bmc = open();
    driver.replies = {{{0x00, 0x01}, 1}, {{0x00, 0x02}, 0, IPMI_ASYNC_EVENT_RECV_TYPE}, {{0x00, 0x03}}};
    EXPECT_THAT(ipmi::run(*bmc, ipmi::command::getDeviceId).data(), ElementsAre(0x03));
}

TEST_F(LocalDevice, saysWhatWentWrong) {
    makeDevice("/dev/ipmi0");
    const auto bmc = open();
    driver.replies = {{Bytes(ipmi::maxMessage + 1)}};
    EXPECT_THAT(failure(*bmc), HasSubstr("too long"));
    driver.replies = {{{}}};
    EXPECT_THAT(failure(*bmc), HasSubstr("without a completion code"));
    driver.sendError = EIO;
    EXPECT_THAT(failure(*bmc), HasSubstr("Input/output error"));
}

TEST_F(LocalDevice, keepsTheTime) {
    makeDevice("/dev/ipmi0");
    const auto bmc = open("", 1);
    const auto start = ipmi::Clock::now();
    EXPECT_THAT(failure(*bmc), HasSubstr("no answer in time"));
    EXPECT_GE(ipmi::Clock::now() - start, std::chrono::seconds(1));
    bmc->endBy(ipmi::Clock::now() + std::chrono::milliseconds(100));
    const auto second = ipmi::Clock::now();
    EXPECT_THAT(failure(*bmc), HasSubstr("no answer in time"));
    EXPECT_LT(ipmi::Clock::now() - second, std::chrono::milliseconds(900));
    driver.sent.clear();
    EXPECT_THROW(ipmi::run(*bmc, ipmi::command::getDeviceId), ipmi::DeadlineError);
    EXPECT_THAT(driver.sent, testing::IsEmpty());
}

} // namespace
