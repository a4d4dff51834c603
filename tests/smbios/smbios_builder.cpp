#include "smbios_builder.h"

#include <algorithm>
#include <numeric>

namespace {

using Bytes = SmbiosBuilder::Bytes;

constexpr std::size_t tableBegin = 32;

void append(Bytes& bytes, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i)
        bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

// Sets a byte so that those of a part sum to 0.
void balance(Bytes& bytes, std::size_t begin, std::size_t place) {
    bytes[place] = static_cast<std::uint8_t>(
        0x100 - std::accumulate(bytes.begin() + static_cast<std::ptrdiff_t>(begin), bytes.end(), 0U) % 0x100);
}

Bytes behind(Bytes entry, const Bytes& table) {
    entry.resize(tableBegin);
    entry.insert(entry.end(), table.begin(), table.end());
    return entry;
}

} // namespace

SmbiosBuilder& SmbiosBuilder::add(std::uint8_t type, std::uint16_t handle, std::size_t length,
                                  std::initializer_list<Field> fields,
                                  std::initializer_list<std::string> strings) {
    const std::size_t begin = bytes_.size();
    append(bytes_, type, 1);
    append(bytes_, length, 1);
    append(bytes_, handle, 2);
    bytes_.resize(begin + length);
    for (const Field& field : fields)
        for (std::size_t i = 0; i < field.width && field.offset + i < length; ++i)
            bytes_[begin + field.offset + i] = static_cast<std::uint8_t>(field.value >> 8 * i);
    for (const std::string& string : strings) {
        bytes_.insert(bytes_.end(), string.begin(), string.end());
        bytes_.push_back(0);
    }
    append(bytes_, 0, strings.size() == 0 ? 2 : 1);
    longest_ = std::max(longest_, bytes_.size() - begin);
    ++count_;
    return *this;
}

SmbiosBuilder& SmbiosBuilder::raw(std::initializer_list<std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes);
    return *this;
}

Bytes SmbiosBuilder::version2() const {
    constexpr std::size_t dmiBegin = 16;
    Bytes entry{'_', 'S', 'M', '_', 0, 0x1F, 2, 8};
    append(entry, longest_, 2);
    append(entry, 0, 6); // revision, formatted area
    for (const char each : {'_', 'D', 'M', 'I', '_', '\0'})
        entry.push_back(static_cast<std::uint8_t>(each));
    append(entry, bytes_.size(), 2);
    append(entry, tableBegin, 4);
    append(entry, count_, 2);
    append(entry, 0x28, 1);
    balance(entry, dmiBegin, dmiBegin + 5);
    balance(entry, 0, 4);
    return behind(entry, bytes_);
}

Bytes SmbiosBuilder::version3() const {
    Bytes entry{'_', 'S', 'M', '3', '_', 0, 24, 3, 3, 0, 1, 0};
    append(entry, bytes_.size(), 4);
    append(entry, tableBegin, 8);
    balance(entry, 0, 5);
    return behind(entry, bytes_);
}
