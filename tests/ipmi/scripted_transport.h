// A transport that plays back one answer and keeps what it was asked.
#pragma once

#include "ipmi/transport.h"

#include <algorithm>
#include <vector>

struct ScriptedTransport : ipmi::Transport {
    std::vector<std::uint8_t> answer;
    std::vector<std::uint8_t> codesBefore; // one an exchange, answered alone before `answer` is
    unsigned exchanges = 0;

    std::uint8_t netFn = 0;
    std::uint8_t command = 0;
    std::vector<std::uint8_t> request;

    std::size_t exchange(std::uint8_t netFunction, std::uint8_t commandNumber,
                         std::span<const std::uint8_t> data, std::span<std::uint8_t> out) override {
        netFn = netFunction;
        command = commandNumber;
        request.assign(data.begin(), data.end());
        if (exchanges < codesBefore.size()) {
            out[0] = codesBefore[exchanges++];
            return 1;
        }
        ++exchanges;
        std::copy_n(answer.begin(), std::min(answer.size(), out.size()), out.begin());
        return answer.size();
    }
};
