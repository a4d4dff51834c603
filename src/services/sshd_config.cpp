#include "services/sshd_config.h"

#include "Utility/back-ends/shared_file.h"

#include <algorithm>
#include <cctype>
#include <fcntl.h>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>

namespace ph {
namespace {

constexpr const char* file = "/etc/ssh/sshd_config";
constexpr std::size_t mostBytes = 64 * 1024;

struct Keyword {
    const char* name;
    std::string SshdConfig::*value;
};
constexpr Keyword keywords[] = {
    {"Protocol", &SshdConfig::protocol},        {"Ciphers", &SshdConfig::ciphers},
    {"TCPKeepAlive", &SshdConfig::keepAlive},   {"KeepAlive", &SshdConfig::keepAlive}, // its older name
    {"X11Forwarding", &SshdConfig::forwardX11}, {"Compression", &SshdConfig::compression},
};

bool isName(std::string_view text, const char* name) {
    return text.size() == std::string_view(name).size() && strncasecmp(text.data(), name, text.size()) == 0;
}

// Takes the next word off a line. A keyword may be followed by '=', and a value may stand in quotes.
std::string_view takeWord(std::string_view& line, std::string_view separators) {
    line.remove_prefix(std::min(line.find_first_not_of(separators), line.size()));
    const bool isQuoted = line.starts_with('"');
    line.remove_prefix(isQuoted ? 1 : 0);
    const std::string_view word = line.substr(0, line.find_first_of(isQuoted ? "\"" : separators));
    line.remove_prefix(word.size());
    return word;
}

bool isText(std::string_view text) {
    return std::ranges::all_of(text, [](unsigned char c) { return c >= ' ' || std::isspace(c) != 0; });
}

std::string readWhole(std::FILE* stream) {
    struct stat status {};
    std::string text;
    if (fstat(fileno(stream), &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::uint64_t>(status.st_size) > mostBytes)
        return text;
    text.resize(static_cast<std::size_t>(status.st_size));
    text.resize(std::fread(text.data(), 1, text.size(), stream));
    return text;
}

} // namespace

SshdConfig parseSshdConfig(const std::string& text) {
    SshdConfig config;
    if (!isText(text))
        return config;
    for (std::string_view rest = text; !rest.empty();) {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::string_view name = takeWord(line, " \t\r=");
        if (isName(name, "Match") || isName(name, "Include"))
            break;
        for (const Keyword& keyword : keywords) {
            std::string& value = config.*keyword.value;
            if (isName(name, keyword.name) && value.empty()) // the first one counts
                value = takeWord(line, " \t\r=");
        }
    }
    return config;
}

SshdConfig readSshdConfig() {
    char path[4096];
    if (PH_SysrootPath(file, path, sizeof(path)) != 0)
        return {};
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const FilePtr stream(descriptor != -1 ? fdopen(descriptor, "r") : nullptr, std::fclose);
    return stream != nullptr ? parseSshdConfig(readWhole(stream.get())) : SshdConfig{};
}

} // namespace ph
