#include "requests.h"

#include "computed_readings.h"
#include "database.h"
#include "errors.h"
#include "libraries.h"
#include "names.h"
#include "private_root.h"
#include "provider_output.h"
#include "served_classes.h"
#include "text_layout.h"

#include <iostream>
#include <string_view>

namespace phctl {
namespace {

using Operation = broker::Request::Operation;
namespace fs = std::filesystem;

constexpr char moduleName[] = "libProviderHelperProviders.so";
// The library looks itself up here, for the instances of a class by its name.
constexpr char instanceArrays[] = "/usr/local/lib/libProviderHelper.so";

std::string findModule() {
    const fs::path file = installedLibrary(moduleName);
    if (file.empty())
        throw Failure(std::string("the provider module ") + moduleName +
                      " is not installed beside phctl: name it with --module");
    return file;
}

// Tells whether the provider has to look for associated elements.
bool needsInstanceArrays(const broker::Request& request) {
    switch (request.operation) {
    case Operation::Associators:
    case Operation::AssociatorNames:
    case Operation::References:
    case Operation::ReferenceNames:
        return true;
    default:
        const schema::Class* described = schema::find(request.path.className);
        return described != nullptr && described->isAssociation;
    }
}

// Some messages of providers end with blanks or a line end.
std::string_view withoutTail(std::string_view message) {
    return message.substr(0, message.find_last_not_of(" \n") + 1);
}

// Tells of sensors that the reply lacks. Names are those of all sensors.
std::string unreadableSensorsOf(const ExchangeWatch& watch, const broker::Request& request,
                                const broker::Reply& reply) {
    if (request.operation == Operation::EnumerateInstanceNames)
        return {};
    const std::size_t known =
        request.operation == Operation::EnumerateInstances ? sensorCount(request.path.className) : 0;
    const std::size_t returned = reply.instances.size() + reply.taken;
    return watch.unreadableSensors(known > returned ? known - returned : 0);
}

// The database, or a BMC that cannot be reached, come before what the BMC refused: that may be usual.
std::string reasonOfFailure(const ExchangeWatch& watch) {
    if (watch.hasSilence())
        return watch.lastFailure();
    const std::string reason = diagnose();
    return !reason.empty() ? reason : watch.lastFailure();
}

// The library waits for a BMC that may still be starting. Only the user makes a virtual one.
void requireRightMachine() {
    const auto row = sessionRow();
    if (!row)
        return;
    const auto settings = settingsOf(*row);
    requirePrivateRoot(settings);
    requireBmc(settings);
}

} // namespace

void RequestOptions::addTo(Command command) {
    command.flag("--json", json, "Print JSON");
    command.option("--namespace", nameSpace, "CIM namespace instead of the one that serves the class");
    command.option("--module", module, "Provider module to load instead of the installed one");
    command.option("--user", user, "Principal that the request comes from");
    command.option("--timeout", timeout, "Seconds that the whole command may take").range(1, 86400);
}

void RequestOptions::addPresentationTo(Command command) {
    command.flag("--words", words, "Print what a value means beside it, as in 5 (OK)");
    command.flag("--wide", wide, "Make tables as wide as they are, not as the terminal is");
}

void loadProviders(broker::Broker& broker, const std::string& module) {
    requireRightMachine();
    try {
        broker.loadProvider(module.empty() ? findModule() : fs::absolute(module).string(), "ProviderHelper");
    } catch (const broker::LoadError& error) {
        throw Failure(error.what());
    }
}

void provideInstanceArrays() {
    provideLibrary(instanceArrays, "associations cannot be followed without it");
}

void Remarks::unknown(std::string_view className, const char* kind, const std::string& name,
                      const std::vector<std::string>& candidates) {
    text_ += (text_.empty() ? "" : "; ") + std::string(className) + " has no " + kind + ' ' + name +
             didYouMean(name, candidates);
}

Requester::Requester(const RequestOptions& options)
    : watch_(std::make_shared<ExchangeWatch>(std::cerr, isatty(STDERR_FILENO) != 0)) {
    ipmi::observeExchanges([watch = watch_](auto netFn, auto command, auto sent, auto answer) {
        watch->exchanged(netFn, command, sent, answer);
        keepReading(netFn, command, sent, answer);
    });
    if (options.timeout > 0)
        limit_ =
            std::make_unique<TimeLimit>(options.timeout, [watch = watch_] { return watch->lastFailure(); });
    const ProviderOutput redirected;
    loadProviders(broker_, options.module);
    broker_.setUser(options.user);
}

std::string Requester::failureText(const broker::Request& request, const broker::Reply& reply,
                                   const Remarks& remarks) const {
    std::string text = broker::codeName(reply.code) + " (" + std::to_string(reply.code) + ')';
    if (const auto message = withoutTail(reply.message); !message.empty())
        text.append(": ").append(message);
    if (reply.code == CMPI_RC_ERR_INVALID_CLASS)
        text += didYouMean(request.path.className, classNames());
    if (!remarks.text().empty())
        text += " (" + remarks.text() + ')';
    if (reply.code == CMPI_RC_ERR_FAILED)
        if (const std::string reason = reasonOfFailure(*watch_); !reason.empty())
            text += " (" + reason + ')';
    return text;
}

broker::Reply Requester::ask(const broker::Request& request, const Remarks& remarks) {
    if (needsInstanceArrays(request))
        provideInstanceArrays();
    watch_->begin();
    broker::Reply reply = [&] {
        const ProviderOutput redirected;
        return broker_.execute(request);
    }();
    watch_->end();
    if (limit_)
        limit_->check();
    if (!reply.ok())
        throw Failure(failureText(request, reply, remarks));
    unreadableSensors_ = unreadableSensorsOf(*watch_, request, reply);
    return reply;
}

broker::Reply Requester::execute(const broker::Request& request, const Remarks& remarks) {
    broker::Reply reply = ask(request, remarks);
    for (const std::string& warning : {remarks.text(), unreadableSensors()})
        if (!warning.empty())
            warn(warning);
    return reply;
}

} // namespace phctl
