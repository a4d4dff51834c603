#include "requests.h"

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
    using Operation = broker::Request::Operation;
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

std::string failureText(const broker::Request& request, const broker::Reply& reply, const Remarks& remarks) {
    std::string text = broker::codeName(reply.code) + " (" + std::to_string(reply.code) + ')';
    if (const auto message = withoutTail(reply.message); !message.empty())
        text.append(": ").append(message);
    if (reply.code == CMPI_RC_ERR_INVALID_CLASS)
        text += didYouMean(request.path.className, classNames());
    if (!remarks.text().empty())
        text += " (" + remarks.text() + ')';
    if (reply.code == CMPI_RC_ERR_FAILED)
        if (const std::string reason = diagnose(); !reason.empty())
            text += " (" + reason + ')';
    return text;
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

void RequestOptions::addTo(CLI::App& command) {
    command.add_flag("--json", json, "Print JSON");
    command.add_option("--namespace", nameSpace, "CIM namespace instead of the one that serves the class");
    command.add_option("--module", module, "Provider module to load instead of the installed one");
    command.add_option("--user", user, "Principal that the request comes from");
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
    : progress_(std::make_shared<LogProgress>(std::cerr, isatty(STDERR_FILENO) != 0)) {
    ipmi::observeExchanges([progress = progress_](auto netFn, auto command, auto sent, auto answer) {
        progress->exchanged(netFn, command, sent, answer);
    });
    const ProviderOutput redirected;
    loadProviders(broker_, options.module);
    broker_.setUser(options.user);
}

broker::Reply Requester::execute(const broker::Request& request, const Remarks& remarks) {
    if (needsInstanceArrays(request))
        provideInstanceArrays();
    broker::Reply reply = [&] {
        const ProviderOutput redirected;
        return broker_.execute(request);
    }();
    progress_->clear();
    if (!reply.ok())
        throw Failure(failureText(request, reply, remarks));
    if (!remarks.text().empty())
        warn(remarks.text());
    return reply;
}

} // namespace phctl
