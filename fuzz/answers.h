// A BMC whose answers are an input, one behind the other: a length byte, FFh for none, and the answer.
#pragma once

#include "input.h"
#include "ipmi/transport.h"

class AnsweringInput final : public ipmi::Transport {
public:
    explicit AnsweringInput(Input& input) : input_(input) {}

    std::size_t exchange(std::uint8_t, std::uint8_t, std::span<const std::uint8_t>,
                         std::span<std::uint8_t> answer) override {
        constexpr std::uint8_t none = 0xFF;
        const std::uint8_t size = input_.byte();
        if (input_.isEmpty() || size == none)
            throw ipmi::TransportError("no answer");
        const auto bytes = input_.bytes(std::min<std::size_t>(size, answer.size()));
        std::ranges::copy(bytes, answer.begin());
        return bytes.size();
    }

private:
    Input& input_;
};
