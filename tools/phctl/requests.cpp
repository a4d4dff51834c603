#include "requests.h"

#include "database.h"
#include "errors.h"
#include "names.h"
#include "text_layout.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace phctl {
namespace {

namespace fs = std::filesystem;

constexpr char moduleName[] = "libProviderHelperProviders.so";

// Beside the program in a build tree, in the module folder of an installation.
std::string findModule() {
    const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
    for (const char* folder : {"../lib", PH_MODULE_DIR, "../lib/cmpi", "."}) {
        const fs::path file = programs / folder / moduleName;
        if (exists(file))
            return file.lexically_normal();
    }
    throw Failure(std::string("the provider module ") + moduleName + " is not installed beside " +
                  programs.string() + ": name it with --module");
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

// While it lives, what providers print does not mix with our output: an object manager has no output either.
// It goes to stderr for who debugs them, and nowhere otherwise.
class ProviderOutput {
public:
    ProviderOutput() {
        std::cout.flush();
        std::fflush(stdout);
        const char* debug = std::getenv("DEBUG_PROVIDER");
        const bool isWanted = debug != nullptr && std::string_view(debug) == "YES";
        const Descriptor target(isWanted ? dup(STDERR_FILENO) : ::open("/dev/null", O_WRONLY | O_CLOEXEC));
        if (!own_ || !target || dup2(target.get(), STDOUT_FILENO) < 0)
            throw std::system_error(errno, std::generic_category(), "cannot redirect the providers' output");
    }
    ~ProviderOutput() {
        std::fflush(stdout);
        dup2(own_.get(), STDOUT_FILENO);
    }
    ProviderOutput(const ProviderOutput&) = delete;
    ProviderOutput& operator=(const ProviderOutput&) = delete;

private:
    class Descriptor {
    public:
        explicit Descriptor(int number) : number_(number) {}
        ~Descriptor() { ::close(number_); }
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        explicit operator bool() const { return number_ >= 0; }
        int get() const { return number_; }

    private:
        int number_;
    };

    const Descriptor own_{fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)};
};

// The library waits for a BMC that may still be starting. A virtual one is made by nobody but the user.
void requireVirtualBmc() {
    if (const auto row = sessionRow())
        requireBmc(settingsOf(*row));
}

} // namespace

void RequestOptions::addTo(CLI::App& command) {
    command.add_flag("--json", json, "Print JSON");
    command.add_option("--namespace", nameSpace, "CIM namespace")->capture_default_str();
    command.add_option("--module", module, "Provider module to load instead of the installed one");
    command.add_option("--user", user, "Principal that the request comes from");
}

void Remarks::unknown(const std::string& className, const char* kind, const std::string& name,
                      const std::vector<std::string>& candidates) {
    text_ += (text_.empty() ? "" : "; ") + className + " has no " + kind + ' ' + name +
             didYouMean(name, candidates);
}

Requester::Requester(const RequestOptions& options)
    : progress_(std::make_shared<LogProgress>(std::cerr, isatty(STDERR_FILENO) != 0)) {
    requireVirtualBmc();
    ipmi::observeExchanges([progress = progress_](auto netFn, auto command, auto sent, auto answer) {
        progress->exchanged(netFn, command, sent, answer);
    });
    const std::string module = options.module.empty() ? findModule() : fs::absolute(options.module).string();
    const ProviderOutput redirected;
    try {
        broker_.loadProvider(module, "ProviderHelper");
    } catch (const broker::LoadError& error) {
        throw Failure(error.what());
    }
    broker_.setUser(options.user);
}

broker::Reply Requester::execute(const broker::Request& request, const Remarks& remarks) {
    broker::Reply reply = [&] {
        const ProviderOutput redirected;
        return broker_.execute(request);
    }();
    progress_->clear();
    if (!reply.ok())
        throw Failure(failureText(request, reply, remarks));
    if (!remarks.text().empty())
        std::cerr << "phctl: warning: " << printable(remarks.text()) << '\n';
    return reply;
}

} // namespace phctl
