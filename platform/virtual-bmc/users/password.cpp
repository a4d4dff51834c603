#include "virtual-bmc/users/password.h"

#include "ipmi/secret.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cerrno>
#include <crypt.h>
#include <memory>

namespace vbmc {
namespace {

constexpr char method[] = "$5$"; // SHA-256 crypt

// crypt's working memory, which is wiped because it holds what was hashed.
struct Workspace {
    crypt_data data{};
    Workspace() = default;
    ~Workspace() { explicit_bzero(&data, sizeof data); }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
};

// A password consists of bytes and crypt wants a text, so the bytes are written in hexadecimal digits.
std::string crypt(std::span<const std::uint8_t> password, const char* setting) {
    constexpr char digits[] = "0123456789abcdef";
    constexpr std::size_t longest = 20;
    ipmi::SecretBytes<2 * longest + 1> text;
    auto* out = text.bytes().data();
    for (const std::uint8_t byte : password.first(std::min(password.size(), longest))) {
        *out++ = static_cast<std::uint8_t>(digits[byte >> 4]);
        *out++ = static_cast<std::uint8_t>(digits[byte & 0x0F]);
    }
    const auto workspace = std::make_unique<Workspace>();
    const char* const hash =
        crypt_r(reinterpret_cast<const char*>(text.bytes().data()), setting, &workspace->data);
    if (hash == nullptr || *hash == '*')
        throw Error("the password cannot be hashed");
    return hash;
}

} // namespace

std::string hashPassword(std::span<const std::uint8_t> password) {
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    if (crypt_gensalt_rn(method, 0, nullptr, 0, setting, sizeof setting) == nullptr)
        throw Error("there is no salt for a password");
    return crypt(password, setting);
}

bool isPassword(const std::string& hash, std::span<const std::uint8_t> password) {
    return crypt(password, hash.c_str()) == hash;
}

} // namespace vbmc
