#include "managed_bmc.h"

#include <algorithm>

void PrintTo(const Job& job, std::ostream* stream) {
    *stream << job.name << " in state " << job.state << ", status " << job.status << ", " << job.errors
            << " errors";
}

namespace {

// The database is not counted: the platform keeps a connection to it, or to one that is gone.
std::ptrdiff_t openFiles() {
    std::error_code error; // a file may be closed meanwhile
    return std::ranges::count_if(std::filesystem::directory_iterator("/proc/self/fd"), [&](const auto& file) {
        return !std::filesystem::read_symlink(file, error).filename().string().starts_with("smash.db");
    });
}

} // namespace

ManagedBmc::ManagedBmc(const std::string& model) {
    sysroot.standInForCommands();
    createBmc(model);
    synchronise(stateFile);
    write("/conf/system_names.ini", "[names]\nhost = server\nsp = controller\n");
    openFiles_ = openFiles();
    platformCalls.clear();
}

void ManagedBmc::TearDown() {
    EXPECT_EQ(platformCalls.openSessions, 0);
    EXPECT_EQ(platformCalls.openHandles, 0);
    EXPECT_EQ(broker.liveObjects(), 0U);
    EXPECT_EQ(openFiles(), openFiles_ + keptFiles) << "sessions and handles are closed";
    platformCalls.clear();
}

void ManagedBmc::createBmc(const std::string& model) const {
    vbmc::createFromText(stateFile, model, "model", vbmc::Existing::Replace);
}

nlohmann::ordered_json ManagedBmc::row(const char* table, const char* key,
                                       const nlohmann::ordered_json& value) const {
    const auto machine = bmc().describe();
    for (const auto& row : machine[table])
        if (row[key] == value)
            return row;
    return {};
}

void ManagedBmc::failCommand(ipmi::CommandCode command, unsigned skip) const {
    bmc().clearFaults();
    addFault(command, skip);
}

void ManagedBmc::addFault(ipmi::CommandCode command, unsigned skip, unsigned calls) const {
    bmc().addFault(
        {.netFn = command.netFn, .command = command.number, .value = 0xFF, .skip = skip, .calls = calls});
}

std::vector<std::vector<std::uint8_t>> ManagedBmc::requests(ipmi::CommandCode command) const {
    std::vector<std::vector<std::uint8_t>> found;
    for (const vbmc::Message& message : bmc().recordedMessages())
        if (ipmi::CommandCode{message.netFn, message.command} == command)
            found.push_back(message.request);
    return found;
}

std::vector<std::string> ManagedBmc::commands() const {
    std::vector<std::string> lines;
    std::ifstream file(sysroot.place("/commands"));
    for (std::string line; std::getline(file, line);)
        if (line != "ps ax")
            lines.push_back(line);
    std::filesystem::remove(sysroot.place("/commands"));
    return lines;
}

Job ManagedBmc::readJob(const broker::ObjectPath& path) const {
    EXPECT_EQ(path.nameSpace + ':' + path.className, "root/cimv2:CIM_ConcreteJob");
    const auto observed = std::exchange(platformCalls, {});
    Job job;
    if (const auto found = jobs.get(path).instances; !found.empty())
        job = {textOf(found[0], "ElementName"), textOf(found[0], "JobState"),
               textOf(found[0], "OperationalStatus"), 0};
    const broker::Reply reply = jobs.invoke(path, "GetErrors");
    if (const broker::Value* errors = broker::find(reply.arguments, "Errors"))
        job.errors = errors->as<broker::Value::Array>()->size();
    EXPECT_EQ(std::exchange(platformCalls, observed).openHandles, 0);
    return job;
}

Job ManagedBmc::jobOf(const broker::Reply& reply) const {
    const broker::Value* job = broker::find(reply.arguments, "Job");
    return job != nullptr ? readJob(**job->as<broker::Value::Reference>()) : Job{};
}

Job ManagedBmc::lastJob() const {
    const auto paths = jobs.names().paths;
    return paths.empty() ? Job{} : readJob(paths.back());
}

broker::Instance ManagedBmc::only(const ClassRequests& requests) {
    const broker::Reply reply = requests.enumerate();
    EXPECT_EQ(reply.instances.size(), 1U) << reply.message;
    return reply.instances.at(0);
}
