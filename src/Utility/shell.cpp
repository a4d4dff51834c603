#include "Utility/shell.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace ph {
namespace {

std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

// Where a word of the command begins with an absolute path.
bool beginsPath(std::string_view command, std::size_t position) {
    return command[position] == '/' && (position == 0 || command[position - 1] == ' ');
}

std::string belowSysroot(std::string_view command, std::string_view root) {
    const std::string place = quoted(root);
    std::string result = "PATH=";
    for (const char* folder : {"/usr/sbin:", "/usr/bin:", "/sbin:", "/bin:"})
        result += place + folder;
    result += "/usr/bin:/bin; export PATH; ";
    for (std::size_t i = 0; i < command.size(); ++i) {
        if (beginsPath(command, i))
            result += place;
        result += command[i];
    }
    return result;
}

std::string adapted(const char* command) {
    const char* root = secure_getenv("PH_SYSROOT");
    return root != nullptr && *root != '\0' ? belowSysroot(command, root) : command;
}

} // namespace

int runCommand(const char* command) {
    return std::system(adapted(command).c_str()); // NOLINT(cert-env33-c): the commands are fixed texts
}

int readCommand(const char* command, std::size_t lineSize,
                const std::function<bool(std::string_view)>& visit) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(adapted(command).c_str(), "re"), pclose);
    if (pipe == nullptr)
        return -1;
    std::vector<char> line(lineSize);
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe.get()) != nullptr)
        if (!visit(line.data()))
            break;
    return 0;
}

} // namespace ph
