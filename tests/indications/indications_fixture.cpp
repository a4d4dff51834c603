#include "indications_fixture.h"

#include "ipmi/command.h"

Bytes Indications::ask(ipmi::CommandCode command, const Bytes& request) const {
    const auto transport = ipmi::openTransport(virtualBmc(stateFile));
    const auto answer = ipmi::run(*transport, command, request);
    return {answer.data().begin(), answer.data().end()};
}

broker::ObjectPath Indications::path(const std::string& className, const std::string& name) {
    return pathOnProcessor(className, "controller", name, "root/interop");
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
    return textsOf(list(className), "Name");
}

void Indications::onDatabase(const std::function<void(SMASH_DB_HANDLE)>& work) {
    SMASH_DB_HANDLE handle = nullptr;
    ASSERT_EQ(smash_db_init(&handle), 0) << db_last_error();
    work(handle);
    EXPECT_EQ(db_close(handle), 0);
}
