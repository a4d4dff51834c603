// PH_GetInstArray over libraries made for it.
#include "broker_fixture.h"
#include "provider_helper/utility.h"

#include <cstdarg>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <sysroot_fixture.h>

namespace {

std::vector<std::string> logLines;
time_t now = 1'000'000;

} // namespace

// In place of the platform's log and of the clock.
extern "C" {
void IDBG_LINUXAPP_Runtime_DbgOut(int, const char* format, ...) {
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof(line), format, arguments);
    va_end(arguments);
    const char* head = std::strchr(line, ']');
    logLines.emplace_back(head != nullptr ? head + 1 : line);
}
time_t time(time_t* result) {
    if (result != nullptr)
        *result = now;
    return now;
}
}

namespace {

using broker::ObjectPath;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* oemLibrary = "/usr/local/lib/libOEMProviderHelper.so";
constexpr const char* ownLibrary = "/usr/local/lib/libProviderHelper.so";
constexpr const char* objectManager = "/usr/local/lib/libqom.so";

class InstanceDispatch : public BrokerFixture {
protected:
    void SetUp() override {
        g_corefeatures = {};
        logLines.clear();
    }
    void TearDown() override {
        BrokerFixture::TearDown();
        for (const char* library : {oemLibrary, ownLibrary, objectManager})
            EXPECT_EQ(dlopen(sysroot.place(library).c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr)
                << library << " is still open";
    }

    void install(const char* library, const char* place) const {
        std::filesystem::copy_file(library, sysroot.place(place));
    }

    CMPIArray* getArray(const std::string& className, const char** properties = nullptr) {
        return PH_GetInstArray(scope->make(ObjectPath{"", "root/cimv2", className, {}}), handle,
                               scope->makeContext(), properties);
    }
    // The function that was called.
    std::string called(const std::string& className, const char** properties = nullptr) {
        CMPIArray* array = getArray(className, properties);
        if (array == nullptr)
            return "none";
        const CMPIData element = CMGetArrayElementAt(array, 0, nullptr);
        std::string name = broker::toString(element.value.string);
        EXPECT_EQ(CMRelease(array).rc, CMPI_RC_OK);
        return name;
    }

    Sysroot sysroot;
};

TEST_F(InstanceDispatch, nothingWithoutLibraries) {
    EXPECT_EQ(called("CIM_Fan"), "none");
    broker.failCall("getClassName", 1);
    EXPECT_EQ(called("CIM_Fan"), "none");
}

TEST_F(InstanceDispatch, oemLibraryComesFirst) {
    install(OWN_LIBRARY, ownLibrary);
    EXPECT_EQ(called("CIM_Fan"), "PH_Fan_GetInstArray");
    install(OEM_LIBRARY, oemLibrary);
    EXPECT_EQ(called("CIM_Fan"), "PH_OEM_Fan_GetInstArray");
    EXPECT_EQ(called("CIM_Pump"), "PH_Pump_GetInstArray");
    EXPECT_EQ(called("XYZ_Pump"), "PH_Pump_GetInstArray") << "whatever the first four characters";
    EXPECT_EQ(called("CIM_HostComputerSystem"), "PH_HostComputerSystem_GetInstArray");
    EXPECT_EQ(called("CIM_SPComputerSystem"), "PH_SPComputerSystem_GetInstArray");
}

TEST_F(InstanceDispatch, propertiesArePassedOn) {
    install(OWN_LIBRARY, ownLibrary);
    const char* properties[] = {"Name", nullptr};
    EXPECT_EQ(called("CIM_Fan", properties), "Name");
}

TEST_F(InstanceDispatch, objectManagerKnowsOtherPrefixes) {
    install(OWN_LIBRARY, ownLibrary);
    EXPECT_EQ(called("QOM_Thermometer"), "none");
    install(OBJECT_MANAGER, objectManager);
    EXPECT_EQ(called("QOM_Thermometer"), "PH_Sensor_GetInstArray");
    EXPECT_EQ(called("QOM_Pump"), "PH_Pump_GetInstArray") << "its own function needs no other name";
    EXPECT_EQ(called("QOM_Empty"), "none");
    EXPECT_EQ(called("QOM_Failing"), "none");
    EXPECT_EQ(called(""), "PH_Sensor_GetInstArray");
    EXPECT_EQ(called(std::string(300, 'x')), "PH_Sensor_GetInstArray") << "a symbol too long to be looked up";
}

TEST_F(InstanceDispatch, cacheKeepsCostlyArraysFor180Seconds) {
    install(OWN_LIBRARY, ownLibrary);
    install(OBJECT_MANAGER, objectManager);
    g_corefeatures.words[63] = 1;
    const auto fetched = [&](const char* className) {
        broker.resetCalls();
        EXPECT_EQ(called(className), "PH_Sensor_GetInstArray");
        EXPECT_EQ(broker.calls("clone"), 1U);
        return broker.calls("newArray") == 1;
    };
    EXPECT_TRUE(fetched("CIM_Sensor"));
    EXPECT_FALSE(fetched("CIM_Sensor"));
    EXPECT_FALSE(fetched("cim_sensor"))
        << "the entry is found whatever the case, its function by another name";
    now += 179;
    EXPECT_FALSE(fetched("CIM_Sensor"));
    EXPECT_THAT(logLines, ElementsAre("\n CIM_Sensor Fetching New \n", "\n CIM_Sensor Cached \n",
                                      "\n cim_sensor Cached \n", "\n CIM_Sensor Cached \n"));
    now += 1;
    EXPECT_TRUE(fetched("CIM_Sensor"));
    EXPECT_FALSE(fetched("CIM_Sensor"));
    now -= 1000;
    EXPECT_TRUE(fetched("CIM_Sensor")) << "stored in a future that a clock set back has left";

    logLines.clear();
    EXPECT_EQ(called("CIM_Fan"), "PH_Fan_GetInstArray") << "not one of the six";
    g_corefeatures.words[63] = 2;
    broker.resetCalls();
    EXPECT_EQ(called("CIM_Sensor"), "PH_Sensor_GetInstArray") << "the feature is off";
    EXPECT_EQ(broker.calls("newArray"), 1U);
    EXPECT_THAT(logLines, IsEmpty());

    keptObjects = 1; // the clone of the cache, not those that it had before
}

TEST_F(InstanceDispatch, failedFetchIsNotCached) {
    install(OWN_LIBRARY, ownLibrary);
    g_corefeatures.words[63] = 1;
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(called("CIM_DNSSettingData"), "none");
    EXPECT_THAT(logLines, ElementsAre("\n CIM_DNSSettingData Fetching New \n",
                                      "\n CIM_DNSSettingData Fetching New \n"));
}

} // namespace
