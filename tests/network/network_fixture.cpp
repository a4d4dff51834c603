#include "network_fixture.h"

#include "ipmi/command.h"
#include "ipmi/lan_configuration.h"

#include <cstring>

std::vector<unsigned int> pauses;

extern "C" __attribute__((visibility("default"))) unsigned int sleep(unsigned int seconds) {
    pauses.push_back(seconds);
    return 0;
}

namespace {

template <std::size_t N>
void put(char (&field)[N], const std::string& text) {
    ASSERT_LT(text.size(), N);
    std::strcpy(field, text.c_str());
}

} // namespace

Network::Network() {
    pauses.clear();
    createBmc(twoLans);
    SMASH_DB_HANDLE handle = nullptr;
    EXPECT_EQ(smash_db_init(&handle), 0);
    IPMISessionInfo session{};
    put(session.address, stateFile.string());
    put(session.interfaceType, "2");
    EXPECT_EQ(db_set_ipmi_session_info(handle, &session), 0);
    DeviceRecord device{};
    device.type = SMASH_DEVICE_SP;
    put(device.deviceId, "20");
    EXPECT_EQ(db_set_device(handle, &device), 0);
    EXPECT_EQ(db_close(handle), 0);
    broker.loadProvider(TEST_PROVIDERS, "ProviderHelper");
}

Network::~Network() {
    EXPECT_EQ(broker.liveObjects(), 0U);
}

void Network::createBmc(const std::string& model) const {
    vbmc::createFromText(stateFile, model, "model", vbmc::Existing::Replace);
}

std::string Network::lan(const std::string& name, const char* member) const {
    const auto machine = bmc().describe();
    for (const auto& row : machine["lans"])
        if (row["name"] == name)
            return row[member].is_string() ? row[member].get<std::string>() : row[member].dump();
    return "(none)";
}

void Network::failCommand(std::uint8_t netFn, std::uint8_t command, std::uint8_t code, unsigned skip) const {
    bmc().addFault({.netFn = netFn,
                    .command = command,
                    .kind = vbmc::Fault::CompletionCode,
                    .value = code,
                    .skip = skip});
}

std::vector<std::vector<std::uint8_t>> Network::changesOfLans() const {
    std::vector<std::vector<std::uint8_t>> changes;
    for (const vbmc::Message& message : bmc().recordedMessages())
        if (ipmi::CommandCode{message.netFn, message.command} == ipmi::command::setLanConfiguration)
            changes.push_back(message.request);
    return changes;
}

broker::ObjectPath Network::path(const std::string& className, broker::NamedValues keys) {
    return {.host = {}, .nameSpace = "root/cimv2", .className = className, .keys = std::move(keys)};
}

broker::Value Network::reference(const broker::ObjectPath& path) {
    return {CMPI_ref, std::make_shared<const broker::ObjectPath>(path)};
}

std::vector<broker::Instance> Network::list(const std::string& className) {
    const broker::Reply reply = broker.enumerateInstances(path(className));
    EXPECT_TRUE(reply.ok()) << className << ": " << reply.message;
    return reply.instances;
}

broker::Instance Network::instance(const std::string& className, std::size_t index) {
    const auto all = list(className);
    EXPECT_LT(index, all.size());
    return index < all.size() ? all[index] : broker::Instance{};
}

std::string Network::get(const broker::Instance& instance, const char* property) {
    const broker::Value* const value = broker::find(instance.properties, property);
    return value != nullptr ? broker::toText(*value) : "(none)";
}

Network::Job Network::job(const broker::Reply& reply) {
    const broker::Value* const value = broker::find(reply.arguments, "Job");
    if (value == nullptr || value->as<broker::Value::Reference>() == nullptr)
        return {};
    const broker::ObjectPath& jobPath = **value->as<broker::Value::Reference>();
    const broker::Reply found = broker.getInstance(jobPath);
    EXPECT_EQ(found.instances.size(), 1U) << found.message;
    if (found.instances.empty())
        return {};
    const broker::Instance& job = found.instances[0];
    const broker::Reply errors = broker.invokeMethod(jobPath, "GetErrors");
    EXPECT_TRUE(errors.ok()) << errors.message;
    const broker::Value* const list = broker::find(errors.arguments, "Errors");
    return {get(job, "JobState"), get(job, "OperationalStatus"),
            list != nullptr ? list->as<broker::Value::Array>()->size() : 0, get(job, "ElementName")};
}

Network::Job Network::lastJob() {
    const auto jobs = list("CIM_ConcreteJob");
    if (jobs.empty())
        return {};
    broker::Reply reply;
    reply.arguments = {
        {"Job", reference(path("CIM_ConcreteJob", {{"InstanceID", text(get(jobs.back(), "InstanceID"))}}))}};
    return job(reply);
}
