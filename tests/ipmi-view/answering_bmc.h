// A BMC that has an answer for each command that a test gives it.
#pragma once

#include "ipmi/command.h"

#include <map>
#include <vector>

class AnsweringBmc final : public ipmi::Transport {
public:
    using Bytes = std::vector<std::uint8_t>;

    // Completion code first, by the command's number; C1h where there is none.
    std::map<std::uint8_t, Bytes> answers;
    std::vector<Bytes> requests; // command and data

    std::size_t exchange(std::uint8_t, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        Bytes& asked = requests.emplace_back(1, command);
        asked.insert(asked.end(), request.begin(), request.end());
        const auto known = answers.find(command);
        const Bytes bytes = known != answers.end() ? known->second : Bytes{ipmi::completion::invalidCommand};
        std::ranges::copy(bytes, answer.begin());
        return bytes.size();
    }
};
