#include "indications_fixture.h"

#include "ipmi/command.h"

#include <cstdio>
#include <cstring>

Indications::Indications() {
    createBmc("{}");
    onDatabase([&](SMASH_DB_HANDLE handle) {
        IPMISessionInfo session{};
        std::snprintf(session.address, sizeof session.address, "%s", stateFile.c_str());
        std::strcpy(session.interfaceType, "2");
        EXPECT_EQ(db_set_ipmi_session_info(handle, &session), 0);
        DeviceRecord device{};
        device.type = SMASH_DEVICE_SP;
        std::strcpy(device.deviceId, "20");
        EXPECT_EQ(db_set_device(handle, &device), 0);
    });
    platformCalls.clear();
}

Indications::~Indications() {
    EXPECT_EQ(broker.liveObjects(), 0U);
    EXPECT_EQ(platformCalls.openSessions, 0);
    EXPECT_EQ(platformCalls.openHandles, 0);
}

void Indications::createBmc(const std::string& model) const {
    vbmc::createFromText(stateFile, model, "model", vbmc::Existing::Replace);
}

Bytes Indications::ask(std::uint8_t netFn, std::uint8_t command, const Bytes& request) const {
    ipmi::SessionSettings settings;
    settings.address = stateFile.string();
    settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
    const auto transport = ipmi::openTransport(settings);
    const auto answer = ipmi::run(*transport, netFn, command, request);
    return {answer.data().begin(), answer.data().end()};
}

broker::ObjectPath Indications::path(const std::string& className, const std::string& name) {
    return {.host = {},
            .nameSpace = "root/interop",
            .className = className,
            .keys = {{"SystemCreationClassName", text("CIM_SPComputerSystem")},
                     {"CreationClassName", text(className)},
                     {"SystemName", text("IPMI Controller 20")},
                     {"Name", text(name)}}};
}

broker::Instance Indications::instance(const std::string& className, const std::string& name,
                                       const broker::NamedValues& properties) {
    broker::Instance instance;
    instance.path = path(className, name);
    instance.properties = instance.path.keys;
    for (const auto& property : properties)
        instance.properties.push_back(property);
    return instance;
}

std::vector<broker::Instance> Indications::list(const std::string& className) {
    const broker::Reply reply = classes.at(className).enumerate();
    EXPECT_THAT(reply, Succeeds());
    return reply.instances;
}

std::vector<std::string> Indications::names(const std::string& className) {
    std::vector<std::string> names;
    for (const auto& instance : list(className))
        names.push_back(get(instance, "Name"));
    return names;
}

std::string Indications::get(const broker::Instance& instance, const char* property) {
    const broker::Value* const value = broker::find(instance.properties, property);
    return value != nullptr ? broker::toText(*value) : "(none)";
}

std::vector<std::string> Indications::failEachCall(const std::function<void()>& prepare,
                                                   const std::function<broker::Reply()>& request,
                                                   const std::vector<Refusal>& refusals) {
    std::vector<std::string> failed;
    for (unsigned nth = 1;; ++nth) {
        prepare();
        platformCalls.clear();
        platformCalls.failing = nth;
        const broker::Reply reply = request();
        EXPECT_EQ(platformCalls.openSessions, 0);
        EXPECT_EQ(platformCalls.openHandles, 0);
        const bool hasFailed = platformCalls.hasFailed;
        platformCalls.failing = 0;
        if (!hasFailed) {
            EXPECT_THAT(reply, Succeeds());
            return failed;
        }
        failed.push_back(platformCalls.made[nth - 1]);
        SCOPED_TRACE("call " + std::to_string(nth) + " fails: " + failed.back());
        if (reply.ok())
            EXPECT_THAT(failed.back(),
                        testing::AnyOf("CIM_Create_IPMI20_Session", "CIM_Close_Session", "db_close"));
        else
            EXPECT_THAT(refusals, testing::Contains(Refusal{reply.code, reply.message}))
                << "code " << reply.code << ", message \"" << reply.message << '"';
    }
}

void Indications::onDatabase(const std::function<void(SMASH_DB_HANDLE)>& work) {
    SMASH_DB_HANDLE handle = nullptr;
    ASSERT_EQ(smash_db_init(&handle), 0) << db_last_error();
    work(handle);
    EXPECT_EQ(db_close(handle), 0);
}
