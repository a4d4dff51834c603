// Numbers that follow from a seed alone, the same on every machine.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace hostile {

// SplitMix64.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15;
        std::uint64_t value = state_;
        value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9;
        value = (value ^ value >> 27) * 0x94D049BB133111EB;
        return value ^ value >> 31;
    }
    // From 0 on; 0 for a limit of 0.
    std::size_t below(std::size_t limit) { return limit != 0 ? static_cast<std::size_t>(next() % limit) : 0; }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    std::uint8_t byte() { return static_cast<std::uint8_t>(next()); }
    template <class Choices>
    const auto& of(const Choices& choices) {
        return choices[below(std::size(choices))];
    }

private:
    std::uint64_t state_;
};

} // namespace hostile
