#include "indications_fixture.h"

#include "ipmi/command.h"

Bytes Indications::ask(ipmi::CommandCode command, const Bytes& request) const {
    ipmi::SessionSettings settings;
    settings.address = stateFile.string();
    settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
    const auto transport = ipmi::openTransport(settings);
    const auto answer = ipmi::run(*transport, command, request);
    return {answer.data().begin(), answer.data().end()};
}

broker::ObjectPath Indications::path(const std::string& className, const std::string& name) {
    return {.host = {},
            .nameSpace = "root/interop",
            .className = className,
            .keys = {{"SystemCreationClassName", text("CIM_SPComputerSystem")},
                     {"CreationClassName", text(className)},
                     {"SystemName", text("controller")},
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
        names.push_back(textOf(instance, "Name"));
    return names;
}

void Indications::onDatabase(const std::function<void(SMASH_DB_HANDLE)>& work) {
    SMASH_DB_HANDLE handle = nullptr;
    ASSERT_EQ(smash_db_init(&handle), 0) << db_last_error();
    work(handle);
    EXPECT_EQ(db_close(handle), 0);
}
