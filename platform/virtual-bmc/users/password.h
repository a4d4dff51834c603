// Passwords as the controller keeps them: hashed with a salt of their own (crypt(3)), so that the state file
// does not reveal them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace vbmc {

// Throws Error when the system cannot hash.
std::string hashPassword(std::span<const std::uint8_t> password);

bool isPassword(const std::string& hash, std::span<const std::uint8_t> password);

} // namespace vbmc
