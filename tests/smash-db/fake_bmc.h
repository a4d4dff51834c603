// A BMC with device ID, GUIDs, SDRs and FRU devices, which can misbehave.
#pragma once

#include "ipmi/transport.h"

#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

class FakeBmc : public ipmi::Transport {
public:
    std::vector<Bytes> sdrs; // their record IDs are 1, 2, 3, …
    std::map<std::uint8_t, Bytes> frus;
    std::optional<Bytes> deviceGuid;
    std::optional<Bytes> systemGuid;

    std::size_t largestPart = 255; // of an SDR; asked for more, it answers with this code
    std::uint8_t tooMuchCode = 0xCA;
    std::uint16_t nextOfLast = 0xFFFF;
    bool isFruWordAddressed = false;
    int silentAfter = std::numeric_limits<int>::max(); // exchanges
    // Called before each Get SDR with the number of those before it; a code other than 0 is the answer.
    std::function<std::uint8_t(int)> onGetSdr = [](int) -> std::uint8_t { return 0; };

    void cancelReservation() { ++reservation_; }

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override;

private:
    Bytes answerTo(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request);
    Bytes getSdr(std::span<const std::uint8_t> request);
    Bytes readFru(std::span<const std::uint8_t> request) const;

    std::uint16_t reservation_ = 1;
    std::uint16_t reserved_ = 0;
    int getSdrs_ = 0;
};

// A FRU image: common header, and a board area (or a product area) with these texts.
Bytes fruImage(std::initializer_list<const char*> texts, bool isProduct = false);
