// The structures of an SMBIOS table (DSP0134), with every access checked against their bounds.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace smbios {

// Thrown for bytes that are no SMBIOS table.
struct NoTable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Larger than any table that firmware makes; what claims to be larger is refused.
inline constexpr std::size_t largestTable = 1 << 20;

// Structures grew with the versions of SMBIOS, and have no version themselves: a field that lies beyond the
// structure's length is one that its firmware did not know, and has the value that means so.
class Structure {
public:
    Structure(std::span<const std::uint8_t> formatted, std::vector<std::span<const std::uint8_t>> strings)
        : formatted_(formatted), strings_(std::move(strings)) {}

    std::uint8_t type() const { return formatted_[0]; }
    std::uint16_t handle() const { return u16(2); }

    // Whether the structure is long enough for a field.
    bool has(std::size_t offset, std::size_t width) const { return offset + width <= formatted_.size(); }
    std::uint8_t u8(std::size_t offset, std::uint8_t missing = 0) const {
        return static_cast<std::uint8_t>(number(offset, 1, missing));
    }
    std::uint16_t u16(std::size_t offset, std::uint16_t missing = 0) const {
        return static_cast<std::uint16_t>(number(offset, 2, missing));
    }
    std::uint32_t u32(std::size_t offset, std::uint32_t missing = 0) const {
        return static_cast<std::uint32_t>(number(offset, 4, missing));
    }
    std::uint64_t u64(std::size_t offset, std::uint64_t missing = 0) const {
        return number(offset, 8, missing);
    }
    std::span<const std::uint8_t> bytes(std::size_t offset, std::size_t count) const {
        return has(offset, count) ? formatted_.subspan(offset, count) : std::span<const std::uint8_t>();
    }

    // The string whose number the byte at `offset` has, as UTF-8 without blanks around it; empty for number 0.
    // Returns nothing for a number that the structure has no string of.
    std::optional<std::string> string(std::size_t offset) const;

private:
    std::uint64_t number(std::size_t offset, std::size_t width, std::uint64_t missing) const;

    std::span<const std::uint8_t> formatted_; // with the header
    std::vector<std::span<const std::uint8_t>> strings_;
};

// Something of the table that is not as it should be.
struct Problem {
    std::string place; // "structure 0x0011 (memory device)"
    std::string reason;
    bool isLoss = true; // a structure, or more, could not be read
};

class Table {
public:
    // Takes a table as Linux has it (/sys/firmware/dmi/tables/DMI), or one behind its entry point ("_SM_", "_DMI_",
    // "_SM3_"), which then says where in these bytes it begins, as dmidecode dumps it. Reads the structures that are whole; the
    // others are problems. Throws NoTable.
    explicit Table(std::vector<std::uint8_t> bytes);
    Table(Table&&) = default;
    Table& operator=(Table&&) = default;
    Table(const Table&) = delete; // structures refer to the bytes
    Table& operator=(const Table&) = delete;
    ~Table() = default;

    const std::vector<Structure>& structures() const { return structures_; }
    // Returns the first structure with this handle, if it is of the type.
    const Structure* find(std::uint16_t handle, std::uint8_t type) const;
    const std::vector<Problem>& problems() const { return problems_; }

private:
    void walk(std::span<const std::uint8_t> table, std::optional<std::size_t> count);

    std::vector<std::uint8_t> bytes_;
    std::vector<Structure> structures_;
    std::vector<Problem> problems_;
};

// Reads a file. Throws NoTable, which names it, where there is none, or no table in it.
Table readTable(const std::filesystem::path& file);

// "structure 0x0011 (memory device)"
std::string placeOf(const Structure& structure);

} // namespace smbios
