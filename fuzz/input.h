// An input that is read part by part; at its end there are zeros.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

    std::uint8_t byte() {
        const auto taken = bytes(1);
        return taken.empty() ? 0 : taken[0];
    }
    // As many as there are, at most `count`.
    std::span<const std::uint8_t> bytes(std::size_t count) {
        const auto taken = left_.first(std::min(count, left_.size()));
        left_ = left_.subspan(taken.size());
        return taken;
    }
    std::span<const std::uint8_t> rest() { return bytes(left_.size()); }
    bool isEmpty() const { return left_.empty(); }

private:
    std::span<const std::uint8_t> left_;
};

// As C functions take it: up to the first NUL.
inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return std::string(reinterpret_cast<const char*>(data), size).c_str();
}
