// The library on the virtual BMC: a sysroot with a database as a sync leaves it, system names, stand-ins for
// the commands that are run, and the jobs that methods leave behind.
#pragma once

#include "bmc_session.h"
#include "class_requests.h"
#include "ipmi/commands.h"
#include "platform_calls.h"
#include "provider_helper/jobs.h"
#include "virtual-bmc/virtual_bmc.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sysroot_fixture.h>

// What a method's job tells: ElementName, JobState, OperationalStatus, and how many errors it has.
struct Job {
    std::string name, state, status;
    std::size_t errors = 0;

    bool operator==(const Job&) const = default;
    static Job completed(std::string name) { return {std::move(name), "7", "{17, 2}", 0}; }
    static Job failed(std::string name) { return {std::move(name), "10", "{17, 6}", 1}; }
};
void PrintTo(const Job& job, std::ostream* stream);

class ManagedBmc : public SysrootFixture {
protected:
    explicit ManagedBmc(const std::string& model = "{}");
    void TearDown() override;

    // Another one in its place.
    void createBmc(const std::string& model) const;
    vbmc::VirtualBmc bmc() const { return vbmc::VirtualBmc(stateFile); }
    // The row of a table of the BMC's where `key` is `value`; null for none.
    nlohmann::ordered_json row(const char* table, const char* key, const nlohmann::ordered_json& value) const;
    // Every call of the command after the first `skip` fails, and no other's.
    void failCommand(ipmi::CommandCode command, unsigned skip = 0) const;
    // Those of this command too, `calls` of them; 0: all.
    void addFault(ipmi::CommandCode command, unsigned skip = 0, unsigned calls = 0) const;
    // The requests of a command since recordMessages.
    std::vector<std::vector<std::uint8_t>> requests(ipmi::CommandCode command) const;

    // Commands that were run since this was asked last, `ps` left out.
    std::vector<std::string> commands() const;

    // The job that a method returned, or the newest one; not counted among the platform's calls.
    Job jobOf(const broker::Reply& reply) const;
    Job lastJob() const;
    std::size_t jobCount() const { return jobs.names().paths.size(); }

    // A class's only instance.
    static broker::Instance only(const ClassRequests& requests);

    std::ptrdiff_t keptFiles = 0; // that are to outlive the test
    const std::filesystem::path stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
    broker::Broker broker;
    const ClassRequests jobs{broker, PH_CLASS_FUNCTIONS(ConcreteJob)};

private:
    Job readJob(const broker::ObjectPath& path) const;

    std::ptrdiff_t openFiles_ = 0;
};

// The code and text of a refusal, which hands nothing out.
MATCHER_P2(Refuses, code, message, "") {
    *result_listener << "code " << arg.code << ", message \"" << arg.message << "\"";
    return arg.code == code && arg.message == message && arg.arguments.empty();
}
// A method's value, and how it ended.
MATCHER_P(Returns, value, "") {
    *result_listener << "code " << arg.code << ", message \"" << arg.message << "\"";
    return arg.ok() && arg.values.size() == 1 && broker::toText(arg.values[0]) == std::to_string(value);
}
