// The library on the virtual BMC: a sysroot with a database whose session leads to it, and system names.
#pragma once

#include "broker/broker.h"
#include "platform/smash_db.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <sysroot_fixture.h>

class ManagedBmc : public SysrootFixture {
protected:
    explicit ManagedBmc(std::string_view model) {
        vbmc::createFromText(stateFile, model, "model");
        write("/conf/system_names.ini", "[names]\nhost = server\nsp = controller\n");
        IPMISessionInfo info{};
        std::snprintf(info.interfaceType, sizeof info.interfaceType,
                      "2"); // virtual BMC, its usual state file
        SMASH_DB_HANDLE database = nullptr;
        EXPECT_EQ(smash_db_init(&database), 0);
        EXPECT_EQ(db_set_ipmi_session_info(database, &info), 0);
        EXPECT_EQ(db_close(database), 0);
        openFiles_ = openFiles();
    }
    void TearDown() override {
        EXPECT_EQ(broker.liveObjects(), 0U);
        EXPECT_EQ(openFiles(), openFiles_) << "sessions and handles are closed";
    }

    // Every call of an IPMI command after the first `skip` fails.
    void failCommand(std::uint8_t netFn, std::uint8_t command, unsigned skip = 0) const {
        vbmc::VirtualBmc bmc(stateFile);
        bmc.clearFaults();
        bmc.addFault({.netFn = netFn, .command = command, .value = 0xC0, .skip = skip});
    }
    void mendCommands() const { vbmc::VirtualBmc(stateFile).clearFaults(); }

    const std::filesystem::path stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
    broker::Broker broker;

private:
    static std::ptrdiff_t openFiles() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator());
    }
    std::ptrdiff_t openFiles_ = 0;
};

inline broker::Value text(std::string value) {
    return {CMPI_string, std::move(value)};
}
inline broker::Value texts(std::vector<std::string> values) {
    broker::Value::Array array;
    for (auto& value : values)
        array.push_back(text(std::move(value)));
    return {CMPI_stringA, std::move(array)};
}
inline broker::Value number(std::uint16_t value) {
    return {CMPI_uint16, std::uint64_t{value}};
}
inline broker::Value reference(const char* className) {
    return {CMPI_ref, std::make_shared<const broker::ObjectPath>(broker::ObjectPath{
                          .host = {}, .nameSpace = "root/cimv2", .className = className, .keys = {}})};
}

// The property's value as text, "<none>" when the instance does not have it.
inline std::string textOf(const broker::Instance& instance, std::string_view property) {
    const broker::Value* value = broker::find(instance.properties, property);
    return value != nullptr ? broker::toText(*value) : "<none>";
}
