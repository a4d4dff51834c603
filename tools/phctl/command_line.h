// The command line: commands, their options, and what was typed. CLI11 is behind it, in one source alone: a
// compiler takes ten seconds for it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace phctl {

// An option of a command, or an argument that its place tells.
class Option {
public:
    Option() = default;
    explicit Option(CLI::Option* option) : option_(option) {}

    // What it must be like. Each returns the option itself.
    Option required() const;
    Option range(int least, int most) const;
    Option range(double least, double most) const;
    Option oneOf(std::vector<std::string> values) const;
    Option existingFile() const;
    Option needs(Option other) const;
    Option excludes(Option other) const; // and the other way round

    // How its values are given.
    Option oneValueEachTime() const;                   // of a list: what follows the value is none of it
    Option separatedByCommas() const;                  // values of a list, which are one word
    Option mayLackValue(std::string value = {}) const; // this is its value then

    // What --help tells of it.
    Option showsDefault() const; // the variable's present value
    Option valueName(std::string name) const;

    // Tells whether the command line had it.
    bool isGiven() const;

private:
    CLI::Option* option_ = nullptr;
};

// A command, or the program itself.
class Command {
public:
    using Action = std::function<int()>; // returns the exit status
    using AddOptions = std::function<void(Command)>;

    Command(CLI::App* app, Action* chosen) : app_(app), chosen_(chosen) {}

    // Adds a command to it. `addOptions` is called once the command line has named that: to set up the options
    // of all commands takes longer than most commands do.
    Command subcommand(std::string name, std::string about, AddOptions addOptions) const;
    Command subcommand(std::string name, std::string about) const;
    // The command line has to name one of them.
    void requireSubcommand() const;
    Command alias(std::string name) const;
    void footer(std::string text) const;
    // Runs after the whole command line is understood, if it names this command.
    void action(Action action) const;

    // Adds an option that sets a variable, which is there as long as the action is. Names are as in
    // "--result-class,--assoc-class", or that of an argument: "CLASS".
    template <class Value>
    Option option(std::string names, Value& variable, std::string about) const;
    Option flag(std::string name, bool& variable, std::string about) const;
    // Adds a flag for true, and its contrary.
    void flags(const std::string& yes, const std::string& no, std::optional<bool>& variable,
               const std::string& about) const;
    // Exactly one of the options that this gets has to be given. The title is that of --help.
    Command alternatives(std::string title) const;

private:
    CLI::App* app_;
    Action* chosen_;
};

class CommandLine {
public:
    // `version` is what --version prints.
    CommandLine(std::string program, std::string about, const std::string& version);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    Command program();
    // Returns false when nothing is left to do: --help and --version print here. Throws UsageError.
    bool parse(int argc, const char* const* argv);
    // Returns the names of the command that was understood, from the program on: "phctl bmc create".
    std::string commandName() const;
    // Does what the command does.
    int run() const { return chosen_(); }

private:
    std::unique_ptr<CLI::App> app_;
    Command::Action chosen_;
};

} // namespace phctl
