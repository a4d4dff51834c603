// Cursors over the bytes of an IPMI message or record: little-endian, bounds-checked, remembering their first
// error.
//
// A decoder reads straight down and asks once, at the end, whether everything fitted. After an overrun every
// further read gives 0 or nothing, so no value of a short message is ever taken from a wrong place.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

namespace ipmi {

class Reader {
public:
    explicit constexpr Reader(std::span<const std::uint8_t> bytes) : left_(bytes) {}

    constexpr std::uint8_t u8() { return static_cast<std::uint8_t>(little(1)); }
    constexpr std::uint16_t u16() { return static_cast<std::uint16_t>(little(2)); }
    constexpr std::uint32_t u24() { return little(3); }
    constexpr std::uint32_t u32() { return little(4); }

    // Returns the next `count` bytes; an empty span when there are fewer.
    constexpr std::span<const std::uint8_t> bytes(std::size_t count) {
        if (!ok_ || count > left_.size()) {
            ok_ = false;
            return {};
        }
        const auto taken = left_.first(count);
        left_ = left_.subspan(count);
        return taken;
    }
    // Returns all that is left, which may be nothing.
    constexpr std::span<const std::uint8_t> rest() { return bytes(left()); }
    constexpr void skip(std::size_t count) { (void)bytes(count); }

    constexpr std::size_t left() const { return ok_ ? left_.size() : 0; }
    constexpr bool ok() const { return ok_; }

private:
    constexpr std::uint32_t little(std::size_t width) {
        std::uint32_t value = 0;
        unsigned shift = 0;
        for (const std::uint8_t byte : bytes(width)) {
            value |= std::uint32_t{byte} << shift;
            shift += 8;
        }
        return value;
    }

    std::span<const std::uint8_t> left_;
    bool ok_ = true;
};

// Writes into storage of the caller's. A value that does not fit is left out whole, and so is all that
// follows.
class Writer {
public:
    explicit constexpr Writer(std::span<std::uint8_t> storage) : storage_(storage) {}

    constexpr Writer& u8(std::uint8_t value) { return little(value, 1); }
    constexpr Writer& u16(std::uint16_t value) { return little(value, 2); }
    constexpr Writer& u24(std::uint32_t value) { return little(value, 3); }
    constexpr Writer& u32(std::uint32_t value) { return little(value, 4); }

    constexpr Writer& bytes(std::span<const std::uint8_t> values) {
        if (const auto place = take(values.size()); ok_)
            std::copy(values.begin(), values.end(), place.begin());
        return *this;
    }
    constexpr Writer& bytes(std::initializer_list<std::uint8_t> values) {
        return bytes(std::span<const std::uint8_t>{values.begin(), values.size()});
    }
    constexpr Writer& fill(std::size_t count, std::uint8_t value) {
        std::ranges::fill(take(count), value);
        return *this;
    }

    constexpr std::span<const std::uint8_t> written() const { return storage_.first(size_); }
    constexpr std::size_t size() const { return size_; }
    constexpr std::size_t room() const { return ok_ ? storage_.size() - size_ : 0; }
    constexpr bool ok() const { return ok_; }

private:
    constexpr std::span<std::uint8_t> take(std::size_t count) {
        if (!ok_ || count > storage_.size() - size_) {
            ok_ = false;
            return {};
        }
        size_ += count;
        return storage_.subspan(size_ - count, count);
    }
    constexpr Writer& little(std::uint32_t value, std::size_t width) {
        for (std::uint8_t& byte : take(width)) {
            byte = static_cast<std::uint8_t>(value);
            value >>= 8;
        }
        return *this;
    }

    std::span<std::uint8_t> storage_;
    std::size_t size_ = 0;
    bool ok_ = true;
};

} // namespace ipmi
