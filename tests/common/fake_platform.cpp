#include "fake_platform.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

FakePlatform platform;

namespace {

bool fails(const char* function) {
    return platform.failing.count(function) != 0;
}

template <class Row>
int handOut(const std::vector<Row>& from, Row** rows) {
    *rows = from.empty() ? nullptr : static_cast<Row*>(std::malloc(sizeof(Row) * from.size()));
    if (*rows != nullptr)
        std::memcpy(*rows, from.data(), sizeof(Row) * from.size());
    return *rows != nullptr || from.empty() ? 0 : 1;
}

template <class Row>
int handOutAll(const char* function, const std::vector<Row>& from, Row** rows, int* count) {
    EXPECT_GT(platform.openHandles, 0);
    *count = static_cast<int>(from.size());
    return fails(function) ? 1 : handOut(from, rows);
}

} // namespace

extern "C" {

unsigned int sleep(unsigned int seconds) {
    platform.pauses.push_back(seconds);
    return 0;
}

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char*, uint16_t, const char*, const char*, int,
                              int, int, int, int, int) {
    if (fails(__func__))
        return 1;
    session->platform.handle = &platform;
    ++platform.openSessions;
    return 0;
}

int CIM_Close_Session(IPMI20_SESSION_T* session) {
    platform.openSessions -= session->platform.handle != nullptr;
    session->platform.handle = nullptr;
    return fails(__func__) ? 1 : 0;
}

int CIM_GetSensorReading(IPMI20_SESSION_T* session, uint8_t sensorNumber, CIM_SensorReading* answer,
                         int timeout) {
    EXPECT_EQ(timeout, 30);
    if (session->platform.handle == nullptr)
        return 1;
    const auto reading = platform.readings.find(sensorNumber);
    if (fails(__func__) || reading == platform.readings.end())
        return 1;
    *answer = reading->second;
    return 0;
}

int OEM_GetHostSystemName(char* name) {
    std::snprintf(name, 256, "rack7");
    return fails(__func__) ? 1 : 0;
}

int db_init(SMASH_DB_HANDLE*) {
    platform.openHandles += !fails(__func__);
    return fails(__func__) ? 1 : 0;
}

int db_close(SMASH_DB_HANDLE) {
    --platform.openHandles;
    return fails(__func__) ? 1 : 0;
}

int db_get_ipmi_session_info(SMASH_DB_HANDLE, IPMISessionInfo** info) {
    return fails(__func__) ? 1 : handOut(std::vector<IPMISessionInfo>(1), info);
}

int db_get_device_bytype(SMASH_DB_HANDLE, int, DeviceRecord** device) {
    return fails(__func__) ? 1 : handOut(std::vector<DeviceRecord>(1), device);
}

int db_get_all_compact_sdrs(SMASH_DB_HANDLE, CompactSdr** rows, int* count) {
    return handOutAll(__func__, platform.sensors, rows, count);
}

int db_get_all_full_sdrs(SMASH_DB_HANDLE, FullSdr** rows, int* count) {
    return handOutAll(__func__, platform.numericSensors, rows, count);
}

} // extern "C"
