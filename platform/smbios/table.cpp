#include "smbios/table.h"

#include "ipmi/message.h"
#include "ipmi/text.h"
#include "smbios/names.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numeric>

namespace smbios {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t headerSize = 4;
constexpr std::uint8_t endOfTable = 127;

struct Place {
    std::size_t begin, size;
    std::optional<std::size_t> structures; // how many there are, where the entry point says so
};

bool beginsWith(Bytes bytes, std::string_view anchor) {
    return bytes.size() >= anchor.size() && std::memcmp(bytes.data(), anchor.data(), anchor.size()) == 0;
}

Bytes checked(Bytes bytes, std::size_t size) {
    if (size > bytes.size())
        throw NoTable("the entry point is cut short");
    if (std::accumulate(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size), 0U) % 0x100 != 0)
        throw NoTable("the checksum of the entry point is wrong");
    return bytes.first(size);
}

// DSP0134, 5.2.2.
Place placeIn64BitEntryPoint(Bytes bytes) {
    constexpr std::size_t leastSize = 24, lengthByte = 6, sizeField = 12;
    if (bytes.size() < leastSize || bytes[lengthByte] < leastSize)
        throw NoTable("the entry point is cut short");
    ipmi::Reader reader(checked(bytes, bytes[lengthByte]).subspan(sizeField));
    const std::uint32_t most = reader.u32();
    const std::uint64_t low = reader.u32(), high = reader.u32();
    const std::uint64_t address = high << 32 | low;
    if (address >= bytes.size())
        throw NoTable("the table that the entry point names is not in it");
    // What the entry point gives is the most that the table may have; an end mark ends it.
    const auto begin = static_cast<std::size_t>(address);
    return {begin, std::min<std::size_t>(most, bytes.size() - begin), {}};
}

// DSP0134, 5.2.1, bytes 10h to 1Eh; older firmware has these alone.
Place placeInDmiEntryPoint(Bytes bytes, std::size_t begin) {
    constexpr std::size_t size = 15, lengthField = 6;
    if (begin + size > bytes.size() || !beginsWith(bytes.subspan(begin), "_DMI_"))
        throw NoTable("the entry point is cut short");
    ipmi::Reader reader(checked(bytes.subspan(begin), size).subspan(lengthField));
    const std::uint16_t length = reader.u16();
    const std::uint32_t address = reader.u32();
    const std::uint16_t count = reader.u16();
    if (address >= bytes.size())
        throw NoTable("the table that the entry point names is not in it");
    return {address, std::min<std::size_t>(length, bytes.size() - address), count};
}

Place placeOfTable(Bytes bytes) {
    constexpr std::size_t lengthByte = 5, dmiEntryPoint = 16;
    constexpr std::size_t leastLength = 0x1E; // what SMBIOS 2.1 took for the length of 31 bytes
    if (beginsWith(bytes, "_SM3_"))
        return placeIn64BitEntryPoint(bytes);
    if (beginsWith(bytes, "_SM_")) {
        if (bytes.size() <= lengthByte || bytes[lengthByte] < leastLength)
            throw NoTable("the entry point is cut short");
        checked(bytes, bytes[lengthByte]);
        return placeInDmiEntryPoint(bytes, dmiEntryPoint);
    }
    if (beginsWith(bytes, "_DMI_"))
        return placeInDmiEntryPoint(bytes, 0);
    return {0, bytes.size(), {}};
}

// Takes the strings behind the formatted part off, with the two zeros that end them. Returns nothing where they
// have no end.
std::optional<std::vector<Bytes>> takeStrings(Bytes& left) {
    constexpr std::uint8_t end[] = {0, 0};
    const auto found = std::search(left.begin(), left.end(), std::begin(end), std::end(end));
    if (found == left.end())
        return std::nullopt;
    Bytes text = left.first(static_cast<std::size_t>(found - left.begin()));
    left = left.subspan(text.size() + std::size(end));
    std::vector<Bytes> strings;
    while (!text.empty()) {
        const auto length = static_cast<std::size_t>(std::ranges::find(text, 0) - text.begin());
        strings.push_back(text.first(length));
        text = text.subspan(std::min(length + 1, text.size()));
    }
    return strings;
}

std::string hexadecimal(unsigned number) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", number);
    return text;
}

std::string placeOf(std::uint8_t type, std::uint16_t handle) {
    return "structure " + hexadecimal(handle) + " (" + typeName(type) + ')';
}

} // namespace

std::optional<std::string> Structure::string(std::size_t offset) const {
    const std::uint8_t number = u8(offset);
    if (number == 0)
        return std::string();
    if (number > strings_.size())
        return std::nullopt;
    std::string text = ipmi::decodeUtf8(strings_[number - 1U]);
    text.erase(text.find_last_not_of(' ') + 1);
    text.erase(0, text.find_first_not_of(' '));
    return text;
}

std::uint64_t Structure::number(std::size_t offset, std::size_t width, std::uint64_t missing) const {
    if (!has(offset, width))
        return missing;
    std::uint64_t value = 0;
    for (std::size_t i = width; i-- > 0;)
        value = value << 8 | formatted_[offset + i];
    return value;
}

Table::Table(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {
    if (bytes_.size() > largestTable)
        throw NoTable("it has more than " + std::to_string(largestTable) + " bytes");
    const Place place = placeOfTable(bytes_);
    walk(Bytes(bytes_).subspan(place.begin, place.size), place.structures);
    if (structures_.empty())
        throw NoTable("it has no structures" + (problems_.empty() ? "" : ": " + problems_.front().reason));
}

void Table::walk(Bytes table, std::optional<std::size_t> count) {
    Bytes left = table;
    const auto offset = [&] { return "byte " + std::to_string(table.size() - left.size()); };
    bool isEnded = false;
    std::size_t found = 0;
    while (!isEnded && !left.empty() && found != count) {
        if (left.size() < headerSize || left[1] < headerSize)
            return problems_.push_back({offset(), "no structure begins here: what follows is lost"});
        const std::uint8_t type = left[0];
        const std::size_t length = left[1];
        const std::string place = placeOf(type, static_cast<std::uint16_t>(left[2] | left[3] << 8));
        if (length > left.size())
            return problems_.push_back({place, "it is cut short"});
        const Bytes formatted = left.first(length);
        left = left.subspan(length);
        auto strings = takeStrings(left);
        isEnded = type == endOfTable;
        if (!strings && !isEnded)
            return problems_.push_back({place, "its strings have no end"});
        ++found;
        if (!isEnded)
            structures_.emplace_back(formatted, std::move(*strings));
    }
    if (count && found < *count)
        problems_.push_back(
            {"the table", "it has " + std::to_string(found) + " structures of " + std::to_string(*count)});
    else if (!count && !isEnded)
        problems_.push_back({"the table", "it has no end mark: structures may be missing", false});
}

const Structure* Table::find(std::uint16_t handle, std::uint8_t type) const {
    const auto found = std::ranges::find(structures_, handle, &Structure::handle);
    return found != structures_.end() && found->type() == type ? &*found : nullptr;
}

Table readTable(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::uint8_t> bytes(largestTable + 1);
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    try {
        if (!stream && bytes.empty())
            throw NoTable("it cannot be read");
        return Table(std::move(bytes));
    } catch (const NoTable& error) {
        throw NoTable(file.string() + ": " + error.what());
    }
}

std::string placeOf(const Structure& structure) {
    return placeOf(structure.type(), structure.handle());
}

} // namespace smbios
