#include "secrets.h"

#include "errors.h"

#include <fstream>
#include <iostream>
#include <termios.h>
#include <unistd.h>

namespace phctl {
namespace {

// While it lives, a terminal does not show what is typed.
class NoEcho {
public:
    NoEcho() : isTerminal_(tcgetattr(STDIN_FILENO, &before_) == 0) {
        if (!isTerminal_)
            return;
        termios silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~NoEcho() {
        if (isTerminal_)
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    }
    NoEcho(const NoEcho&) = delete;
    NoEcho& operator=(const NoEcho&) = delete;
    bool isTerminal() const { return isTerminal_; }

private:
    termios before_{};
    bool isTerminal_;
};

bool ask(const std::string& name, std::string& line) {
    const NoEcho silence;
    if (silence.isTerminal())
        std::cerr << name << ": " << std::flush;
    const bool isRead = static_cast<bool>(std::getline(std::cin, line));
    if (silence.isTerminal())
        std::cerr << '\n';
    return isRead;
}

} // namespace

std::string readSecret(const std::string& name, const std::string& file) {
    std::string line;
    bool isRead = false;
    if (file == "-") {
        isRead = ask(name, line);
    } else {
        std::ifstream stream(file);
        isRead = static_cast<bool>(std::getline(stream, line));
    }
    if (!isRead)
        throw UsageError(name + ": cannot read a line of " + (file == "-" ? "standard input" : file));
    return line;
}

void SecretValues::addTo(Command command) {
    command
        .option("--from-file", sources_,
                "Name=FILE: a value that others must not see, such as a password, from the first line of a "
                "file; - is standard input")
        .oneValueEachTime();
}

void SecretValues::appendTo(std::vector<std::string>& values) const {
    for (const std::string& source : sources_) {
        const std::size_t sign = source.find('=');
        if (sign == 0 || sign == std::string::npos || sign + 1 == source.size())
            throw UsageError("--from-file: expected Name=FILE instead of \"" + source + '"');
        const std::string name = source.substr(0, sign);
        values.push_back(name + '=' + readSecret(name, source.substr(sign + 1)));
    }
}

} // namespace phctl
