// bmc login: whether the virtual BMC knows a user and a password.
#include "commands.h"
#include "errors.h"
#include "machine.h"
#include "secrets.h"
#include "text_layout.h"

#include <cstring>
#include <iostream>
#include <memory>

namespace phctl {
namespace {

struct LoginOptions {
    std::string stateFile, user, passwordFile;
};

int logIn(const LoginOptions& options) {
    std::string password = readSecret("--password-file", options.passwordFile);
    const bool isIn = openMachine(options.stateFile).letsIn(options.user, password);
    explicit_bzero(password.data(), password.size());
    if (!isIn)
        throw Failure("the BMC does not let " + options.user + " in with this password");
    std::cout << "The BMC lets " << printable(options.user) << " in\n";
    return done;
}

void addLoginOptions(Command command) {
    const auto options = std::make_shared<LoginOptions>();
    addMachineOption(command, options->stateFile);
    command.option("USER", options->user, "Name of the user").required();
    command
        .option("--password-file", options->passwordFile,
                "File whose first line is the password; - is standard input")
        .required();
    command.footer("Example:\n  phctl mi CIM_Account 'IPMI User-2' --from-file UserPassword=password.txt\n  "
                   "phctl bmc login root --password-file password.txt");
    command.action([options] { return logIn(*options); });
}

} // namespace

void addLoginCommand(Command bmc) {
    bmc.subcommand("login", "Try a user's name and password", addLoginOptions);
}

} // namespace phctl
