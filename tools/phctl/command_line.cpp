#include "command_line.h"

#include "errors.h"
#include "names.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <utility>

namespace phctl {
namespace {

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
        for (const std::string& alias : command->get_aliases())
            names.push_back(alias);
    }
    return names;
}

// The innermost command that was understood, and its names from the program on.
const CLI::App& innermost(const CLI::App& app, std::string& name) {
    const CLI::App* command = &app;
    name = app.get_name();
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        name += ' ' + command->get_name();
    }
    return *command;
}

std::string explain(const CLI::App& app, const CLI::ParseError& error) {
    std::string name;
    const auto candidates = commandNames(innermost(app, name));
    const auto rest = app.remaining(true);
    const bool isUnknownCommand = !candidates.empty() && !rest.empty() && !rest.front().starts_with('-');
    return (isUnknownCommand ? "there is no command " + rest.front() + didYouMean(rest.front(), candidates)
                             : std::string(error.what())) +
           " (" + name + " --help)";
}

} // namespace

Option Option::required() const {
    return Option(option_->required());
}

Option Option::range(int least, int most) const {
    return Option(option_->check(CLI::Range(least, most)));
}

Option Option::range(double least, double most) const {
    return Option(option_->check(CLI::Range(least, most)));
}

Option Option::oneOf(std::vector<std::string> values) const {
    return Option(option_->check(CLI::IsMember(std::move(values))));
}

Option Option::existingFile() const {
    return Option(option_->check(CLI::ExistingFile));
}

Option Option::needs(Option other) const {
    return Option(option_->needs(other.option_));
}

Option Option::excludes(Option other) const {
    return Option(option_->excludes(other.option_));
}

Option Option::oneValueEachTime() const {
    return Option(option_->allow_extra_args(false));
}

Option Option::separatedByCommas() const {
    return Option(option_->delimiter(',')->allow_extra_args(false));
}

Option Option::mayLackValue(std::string value) const {
    return Option(option_->expected(0, 1)->default_str(std::move(value)));
}

Option Option::showsDefault() const {
    return Option(option_->capture_default_str());
}

Option Option::valueName(std::string name) const {
    return Option(option_->type_name(std::move(name)));
}

bool Option::isGiven() const {
    return option_->count() > 0;
}

Command Command::subcommand(std::string name, std::string about) const {
    return {app_->add_subcommand(std::move(name), std::move(about)), chosen_};
}

Command Command::subcommand(std::string name, std::string about, AddOptions addOptions) const {
    const Command command = subcommand(std::move(name), std::move(about));
    command.app_->preparse_callback(
        [command, addOptions = std::move(addOptions)](std::size_t) { addOptions(command); });
    return command;
}

void Command::requireSubcommand() const {
    app_->require_subcommand(1);
}

Command Command::alias(std::string name) const {
    return {app_->alias(std::move(name)), chosen_};
}

void Command::footer(std::string text) const {
    app_->footer(std::move(text));
}

void Command::action(Action action) const {
    app_->callback([chosen = chosen_, action = std::move(action)] { *chosen = action; });
}

template <class Value>
Option Command::option(std::string names, Value& variable, std::string about) const {
    return Option(app_->add_option(std::move(names), variable, std::move(about)));
}

// What options set; a further type is a line here.
template Option Command::option(std::string, std::string&, std::string) const;
template Option Command::option(std::string, std::optional<std::string>&, std::string) const;
template Option Command::option(std::string, std::vector<std::string>&, std::string) const;
template Option Command::option(std::string, int&, std::string) const;
template Option Command::option(std::string, unsigned&, std::string) const;
template Option Command::option(std::string, std::optional<unsigned>&, std::string) const;
template Option Command::option(std::string, std::vector<unsigned>&, std::string) const;
template Option Command::option(std::string, std::uint8_t&, std::string) const;
template Option Command::option(std::string, std::optional<std::uint8_t>&, std::string) const;
template Option Command::option(std::string, std::optional<std::uint16_t>&, std::string) const;
template Option Command::option(std::string, double&, std::string) const;
template Option Command::option(std::string, std::optional<double>&, std::string) const;

Option Command::flag(std::string name, bool& variable, std::string about) const {
    return Option(app_->add_flag(std::move(name), variable, std::move(about)));
}

void Command::flags(const std::string& yes, const std::string& no, std::optional<bool>& variable,
                    const std::string& about) const {
    const auto sets = [&variable](bool value) { return [&variable, value] { variable = value; }; };
    CLI::Option* option = app_->add_flag_callback(yes, sets(true), about);
    app_->add_flag_callback(no, sets(false), "The contrary")->excludes(option);
}

Command Command::alternatives(std::string title) const {
    CLI::App* group = app_->add_option_group(std::move(title));
    // An unknown option would go from the group to the command, and back, without an end.
    return {group->require_option(1)->fallthrough(false), chosen_};
}

CommandLine::CommandLine(std::string program, std::string about, const std::string& version)
    : app_(std::make_unique<CLI::App>(std::move(about), std::move(program))) {
    app_->set_version_flag("--version", version);
    app_->fallthrough(); // its options may stand behind a command
}

CommandLine::~CommandLine() = default;

Command CommandLine::program() {
    return {app_.get(), &chosen_};
}

bool CommandLine::parse(int argc, const char* const* argv) {
    try {
        app_->parse(argc, argv);
    } catch (const CLI::Success& asked) { // --help, --version
        app_->exit(asked);
        return false;
    } catch (const CLI::ParseError& error) {
        throw UsageError(explain(*app_, error));
    }
    return true;
}

std::string CommandLine::commandName() const {
    std::string name;
    innermost(*app_, name);
    return name;
}

} // namespace phctl
