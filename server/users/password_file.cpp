#include "users/password_file.h"

#include <crypt.h>
#include <cstring>
#include <fstream>
#include <memory>
#include <openssl/crypto.h>
#include <optional>
#include <stdexcept>
#include <vector>

namespace server {
namespace {

struct AccessName {
    const char* name;
    Access access;
};
constexpr AccessName accessNames[] = {
    {"read", Access::Read}, {"operate", Access::Operate}, {"administer", Access::Administer}};

struct User {
    std::string name, hash;
    Access access = Access::None;
};

std::optional<User> parse(const std::string& line) {
    const std::size_t first = line.find(':');
    const std::size_t last = line.rfind(':');
    if (first == 0 || first == std::string::npos || last <= first + 1)
        return std::nullopt;
    const std::string access = line.substr(last + 1);
    for (const AccessName& each : accessNames)
        if (access == each.name)
            return User{line.substr(0, first), line.substr(first + 1, last - first - 1), each.access};
    return std::nullopt;
}

std::vector<User> readUsers(const std::string& name) {
    std::ifstream file(name);
    std::vector<User> users;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line.front() == '#')
            continue;
        auto user = parse(line);
        if (!user)
            throw std::runtime_error(name + ", line " + std::to_string(number) +
                                     ": expected name:hash:access, with read, operate or administer");
        users.push_back(std::move(*user));
    }
    if (!file.eof())
        throw std::runtime_error("cannot read " + name);
    return users;
}

bool fits(const User& user, const std::string& password) {
    const auto data = std::make_unique<crypt_data>();
    const char* const hash = crypt_r(password.c_str(), user.hash.c_str(), data.get());
    const bool isSame = hash != nullptr && *hash != '*' && std::strlen(hash) == user.hash.size() &&
                        CRYPTO_memcmp(hash, user.hash.data(), user.hash.size()) == 0;
    explicit_bzero(data.get(), sizeof *data);
    return isSame;
}

} // namespace

PasswordFile::PasswordFile(std::string file) : file_(std::move(file)) {
    readUsers(file_);
}

Access PasswordFile::check(const std::string& user, const std::string& password) {
    for (const User& each : readUsers(file_))
        if (each.name == user)
            return fits(each, password) ? each.access : Access::None;
    return Access::None;
}

} // namespace server
