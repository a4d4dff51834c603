#include "delivery_fixture.h"

#include <cstdarg>
#include <cstring>

FakeDelivery delivery;

DeliveryFixture::DeliveryFixture() {
    platform = {};
    delivery = {};
    setenv("TZ", "UTC", 1);
}

DeliveryFixture::~DeliveryFixture() {
    EXPECT_EQ(broker.liveObjects(), 0U);
    EXPECT_EQ(platform.openSessions, 0);
    EXPECT_EQ(platform.openHandles, 0);
    EXPECT_EQ(handle, nullptr) << "the description library is closed";
}

void DeliveryFixture::install(const char* module, const char* absolutePath) const {
    std::filesystem::create_symlink(module, sysroot.place(absolutePath));
}

void DeliveryFixture::installEventTexts() const {
    install(PH_EVENT_TEXTS, "/usr/local/lib/libEventLogDes.so");
}

CompactSdr sensorRow(const char* name, int number) {
    CompactSdr row{};
    std::snprintf(row.deviceId, sizeof row.deviceId, "32.%d.0.1.01.99:%s", number, name);
    std::snprintf(row.name, sizeof row.name, "%s", name);
    row.sensorNumber = static_cast<decltype(row.sensorNumber)>(number);
    row.ownerId = 32;
    return row;
}

namespace {

int copy(const std::string& from, char* to, bool isKnown = true) {
    std::strcpy(to, from.c_str());
    return isKnown ? 0 : 1;
}

template <class Map, class Key>
auto valueOf(const Map& map, const Key& key) {
    const auto entry = map.find(key);
    return entry != map.end() ? entry->second : typename Map::mapped_type();
}

int readInfo(const FakeServer& server, CIM_SMTPInfo* info) {
    *info = server.info;
    return server.isReadable ? 0 : 1;
}

int readAddressV6(const FakeServer& server, std::uint8_t* address) {
    std::memcpy(address, server.addressV6, sizeof server.addressV6);
    return 0;
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

int CIM_TRZGetEmailDest(IPMI20_SESSION_T*, uint8_t selector, uint8_t* userId, char* subject, char* message,
                        uint8_t, int) {
    *userId = valueOf(delivery.users, selector);
    std::strcpy(subject, "not mailed");
    std::strcpy(message, "not mailed");
    return delivery.users.count(selector) == 1 ? 0 : 1;
}
int CIM_TRZGetUserEmail(IPMI20_SESSION_T*, uint8_t userId, char* address, int) {
    return copy(valueOf(delivery.addresses, userId), address, delivery.addresses.count(userId) == 1);
}
int CIM_TRZGetSMTPInfo(IPMI20_SESSION_T*, CIM_SMTPInfo* info, uint8_t, int) {
    return readInfo(delivery.servers[0], info);
}
int CIM_TRZGetSMTPServerInfo(IPMI20_SESSION_T*, char* address, uint8_t, int) {
    return copy(delivery.servers[0].address, address);
}
int CIM_TRZGetSMTPServerInfoIPv6(IPMI20_SESSION_T*, uint8_t* address, uint8_t, int) {
    return readAddressV6(delivery.servers[0], address);
}
int CIM_TRZGetSMTP2Info(IPMI20_SESSION_T*, CIM_SMTPInfo* info, uint8_t, int) {
    return readInfo(delivery.servers[1], info);
}
int CIM_TRZGetSMTPServer2Info(IPMI20_SESSION_T*, char* address, uint8_t, int) {
    return copy(delivery.servers[1].address, address);
}
int CIM_TRZGetSMTPServer2InfoIPv6(IPMI20_SESSION_T*, uint8_t* address, uint8_t, int) {
    return readAddressV6(delivery.servers[1], address);
}

int db_get_listener_destination(SMASH_DB_HANDLE, CimxmlDestinationRow* row) {
    return copy(valueOf(delivery.listeners, row->name), row->destination,
                delivery.listeners.count(row->name) == 1);
}
int db_get_MessageID(SMASH_DB_HANDLE, const char* description, int32_t* messageId) {
    *messageId = valueOf(delivery.messageIds, description);
    return delivery.messageIds.count(description) == 1 ? 0 : 1;
}

void IDBG_LINUXAPP_DbgOut(int level, const char* format, ...) {
    char line[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    delivery.debugLines.push_back(std::to_string(level) + ' ' + line);
}

int smtp_mail(const AlertMailRequest* request) {
    delivery.mail(*request);
    return 0;
}

// What the modules of this test ask for.
int testEventText(const char* entry, const uint8_t*, char* text) {
    delivery.eventQueries.emplace_back(entry);
    return copy(valueOf(delivery.eventTexts, entry), text, delivery.eventTexts.count(entry) == 1);
}
int testGenerate(const CMPIInstance* indication, char** text) {
    return delivery.generate(indication, text);
}
int testSend(const char* url, const char* text) {
    delivery.send(url, text);
    return 1; // nobody looks at it
}

} // extern "C"
#pragma GCC visibility pop
