// Requests to the providers, through the embedded broker.
#pragma once

#include "broker/broker.h"
#include "log_progress.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

namespace phctl {

// Options of every command that asks the providers.
struct RequestOptions {
    bool json = false;
    std::string nameSpace; // empty: the one that serves the class
    std::string module;    // empty: where the installation has it
    std::string user;

    void addTo(CLI::App& command);
};

// Loads the provider module, after making sure that it works on the right machine. Throws Failure.
void loadProviders(broker::Broker& broker, const std::string& module);

// Puts the library where association providers look it up. Throws Failure.
void provideInstanceArrays();

// Tells what a request says of names that no class description has.
class Remarks {
public:
    // "CIM_X has no <kind> <name>; did you mean …?"
    void unknown(std::string_view className, const char* kind, const std::string& name,
                 const std::vector<std::string>& candidates);
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

class Requester {
public:
    explicit Requester(const RequestOptions& options);

    // Executes the request, and shows progress where it reads a long log. Remarks go to stderr, with the
    // error when it fails. Throws Failure.
    broker::Reply execute(const broker::Request& request, const Remarks& remarks = {});

    broker::Broker& broker() { return broker_; }

private:
    std::shared_ptr<LogProgress> progress_;
    broker::Broker broker_;
};

} // namespace phctl
