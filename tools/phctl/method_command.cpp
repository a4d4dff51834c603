// cm: calls a method, and follows the job that it starts.
#include "arguments.h"
#include "commands.h"
#include "database.h"
#include "errors.h"
#include "instance_output.h"
#include "json_text.h"
#include "secrets.h"
#include "selection.h"
#include "served_classes.h"
#include "text_layout.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

namespace phctl {
namespace {

using broker::Value;
using Operation = broker::Request::Operation;

struct MethodOptions : RequestOptions {
    Target target;
    std::vector<std::string> call; // of the name, the method and its arguments
    SecretValues secrets;
    bool wait = false;
};

// How long a job has to end, without --timeout.
constexpr unsigned secondsOfJob = 300;

// Method values of CIM_EnabledLogicalElement and its kin; any other one is a refusal.
constexpr std::int64_t completed = 0;
constexpr std::int64_t jobStarted = 4096;

// CIM_ConcreteJob.JobState: 7 completed; what follows are the other ends.
constexpr std::uint64_t jobCompleted = 7;

struct Call {
    Target target;
    std::string method;
    std::vector<std::string> arguments;
};

// A name may stand between class and method.
Call callOf(const MethodOptions& options) {
    Call call{options.target, {}, options.call};
    const auto take = [&] {
        if (call.arguments.empty())
            throw UsageError("the method is missing");
        std::string word = call.arguments.front();
        call.arguments.erase(call.arguments.begin());
        return word;
    };
    call.method = take();
    if (!call.target.isClass() || call.arguments.empty())
        return call;
    const schema::Class* described = servedClass(call.target.text);
    const bool isMethod = described != nullptr && servedMethod(*described, call.method) != nullptr;
    if (!isMethod && call.arguments.front().find('=') == std::string::npos) {
        call.target.name = call.method;
        call.method = take();
    }
    return call;
}

broker::Request makeRequest(Requester& requester, const MethodOptions& options, Remarks& remarks) {
    Call call = callOf(options);
    options.secrets.appendTo(call.arguments);
    broker::Request request{.operation = Operation::InvokeMethod,
                            .path = selectOne(requester, call.target, options.nameSpace),
                            .method = call.method};
    std::vector<schema::Parameter> parameters;
    std::vector<std::string> unknown;
    const schema::Class* described = servedClass(request.path.className);
    const schema::Method* method = described != nullptr ? servedMethod(*described, call.method) : nullptr;
    if (method != nullptr) {
        request.method = method->name;
        std::ranges::copy_if(method->parameters, std::back_inserter(parameters), &schema::Parameter::isIn);
    }
    request.arguments = parseArguments(
        call.arguments, declared(std::span<const schema::Parameter>(parameters)), options.nameSpace, unknown);
    if (method != nullptr)
        for (const std::string& name : unknown)
            remarks.unknown(std::string(described->name) + '.' + std::string(method->name), "argument", name,
                            namesOf(parameters));
    else if (described != nullptr)
        remarks.unknown(described->name, "method", call.method, namesOf(described->servedMethods()));
    return request;
}

// Reads a value of whichever integer type the method has; a value that is no number gives nothing.
bool isSuccess(const Value& result) {
    std::int64_t number = completed;
    if (const auto* value = result.as<std::uint64_t>())
        number = static_cast<std::int64_t>(*value);
    else if (const auto* signedValue = result.as<std::int64_t>())
        number = *signedValue;
    return number == completed || number == jobStarted;
}

const broker::ObjectPath* returnedJob(const broker::NamedValues& arguments) {
    for (const auto& argument : arguments)
        if (const auto* path = argument.value.as<Value::Reference>())
            if (broker::sameName((*path)->className, "CIM_ConcreteJob"))
                return path->get();
    return nullptr;
}

std::uint64_t stateOf(const broker::Instance& job) {
    const Value* state = broker::find(job.properties, "JobState");
    const auto* number = state != nullptr ? state->as<std::uint64_t>() : nullptr;
    if (number == nullptr)
        throw Failure("the job " + broker::toText(job.path) + " has no JobState");
    return *number;
}

// Returns the job when it has ended.
broker::Instance follow(Requester& requester, broker::ObjectPath path, const MethodOptions& options) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds pause(250);
    if (path.nameSpace.empty())
        path.nameSpace = options.nameSpace.empty() ? defaultNameSpace(path.className) : options.nameSpace;
    const unsigned seconds = options.timeout > 0 ? options.timeout : secondsOfJob;
    // The last question has to be answered within the time too.
    const auto end = requester.deadline().value_or(Clock::now() + std::chrono::seconds(seconds)) - pause;
    for (;;) {
        const auto reply = requester.execute({.operation = Operation::GetInstance, .path = path});
        if (reply.instances.empty())
            throw Failure("the provider returned no instance of the job " + broker::toText(path));
        if (stateOf(reply.instances.front()) >= jobCompleted)
            return reply.instances.front();
        if (Clock::now() >= end)
            throw Failure("the job " + broker::toText(path) + " did not end within " +
                          std::to_string(seconds) + " s");
        std::this_thread::sleep_for(pause);
    }
}

// Prints instances, as GetErrors returns them, one below the other.
void printArgument(const std::string& name, const Value& value, const Presentation& how) {
    Value::Array elements;
    if (const auto* array = value.as<Value::Array>())
        elements = *array;
    else
        elements.push_back(value);
    if (elements.empty() || elements.front().as<Value::Embedded>() == nullptr) {
        std::cout << name << " = " << valueText(value) << '\n';
        return;
    }
    for (std::size_t i = 0; i < elements.size(); ++i) {
        std::cout << name << (value.isArray() ? '[' + std::to_string(i) + ']' : "") << " = ";
        if (const auto* instance = elements[i].as<Value::Embedded>())
            printInstance(std::cout, **instance, how);
    }
}

int callMethod(const MethodOptions& options) {
    Remarks remarks;
    Requester requester(options);
    const broker::Request request = makeRequest(requester, options, remarks);
    const broker::Reply reply = requester.execute(request, remarks);
    const Value result = reply.values.empty() ? Value{} : reply.values.front();
    bool succeeded = isSuccess(result);

    const Presentation how{.hasWords = options.words};
    nlohmann::ordered_json json{{"returnValue", toJson(result)}, {"arguments", toJson(reply.arguments)}};
    if (!options.json) {
        std::cout << "ReturnValue = " << valueText(result) << '\n';
        for (const auto& [name, value] : reply.arguments)
            printArgument(name, value, how);
        std::cout.flush(); // the job may take a while
    }
    const broker::ObjectPath* path = options.wait ? returnedJob(reply.arguments) : nullptr;
    if (path != nullptr) {
        const broker::Instance job = follow(requester, *path, options);
        succeeded = succeeded && stateOf(job) == jobCompleted;
        json["job"] = toJson(job, how);
        if (!options.json)
            printInstance(std::cout, job, how);
    }
    if (options.json)
        printJson(std::cout, json);
    if (!isSuccess(result) && returnedJob(reply.arguments) == nullptr) // which would have said why
        if (const std::string reason = diagnose(); !reason.empty())
            complain(reason, failed);
    return succeeded ? done : failed;
}

void addMethodOptions(Command command) {
    command.footer(
        "Exit status 1 when the method's value is neither 0 (completed) nor 4096 (job started), or the "
        "awaited job\nended otherwise than completed.\n\nExamples:\n"
        "  phctl cm CIM_HostComputerSystem RequestStateChange RequestedState=2 --wait\n"
        "  phctl cm CIM_ConcreteJob '*' GetErrors");
    const auto options = std::make_shared<MethodOptions>();
    options->target.addTo(command, false);
    command
        .option("METHOD", options->call,
                "Method, and its arguments as Name=value, typed as the class says; arrays with commas "
                "(a\\,b is one element), or repeated; "
                "embedded instances as JSON")
        .required();
    options->secrets.addTo(command);
    command.flag("--words", options->words, "Print what a value means beside it, as in 5 (OK)");
    command.flag("--wait", options->wait, "Follow the job that the method returns to its end");
    options->addTo(command);
    command.action([options] { return callMethod(*options); });
}

} // namespace

void addMethodCommand(Command program) {
    program.subcommand("cm", "Call a method of an instance", addMethodOptions)
        .alias("call-method")
        .alias("invoke-method");
}

} // namespace phctl
