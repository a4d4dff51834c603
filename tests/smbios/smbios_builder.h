// SMBIOS tables byte by byte, as firmware of any version may have made them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

class SmbiosBuilder {
public:
    using Bytes = std::vector<std::uint8_t>;
    struct Field {
        std::size_t offset;
        std::uint64_t value;
        std::size_t width = 1;
    };

    // A structure of this length with these fields, zeros elsewhere, and these strings behind it.
    SmbiosBuilder& add(std::uint8_t type, std::uint16_t handle, std::size_t length,
                       std::initializer_list<Field> fields = {},
                       std::initializer_list<std::string> strings = {});
    SmbiosBuilder& end() { return add(127, 0xFEFF, 4); }
    SmbiosBuilder& raw(std::initializer_list<std::uint8_t> bytes);

    // As Linux has it.
    const Bytes& bare() const { return bytes_; }
    // Behind an entry point, as dmidecode dumps it.
    Bytes version2() const; // "_SM_"
    Bytes version3() const; // "_SM3_"

private:
    Bytes bytes_;
    std::uint16_t count_ = 0;
    std::size_t longest_ = 0;
};
