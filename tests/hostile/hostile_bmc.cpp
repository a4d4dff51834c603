#include "hostile_bmc.h"

#include "ipmi/transport_library.h"
#include "random.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <optional>
#include <thread>

namespace hostile {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;
using CommandKey = std::pair<std::uint8_t, std::uint8_t>; // network function, command

// An answer on its way.
struct Exchange {
    Random& random;
    CommandKey command;
    Bytes answer; // completion code first; empty: it is lost
    std::chrono::seconds delay{0};
};

// ---- What may happen to an answer

Bytes lastAnswer;
std::map<CommandKey, std::vector<Bytes>> earlierAnswers; // a few of each command

void changeCode(Exchange& exchange) {
    constexpr std::uint8_t usual[] = {0xC0, 0xC1, 0xC3, 0xC5, 0xC7, 0xC9, 0xCA,
                                      0xCB, 0xCC, 0xD4, 0xD5, 0xFF, 0x80};
    exchange.answer.resize(exchange.random.oneIn(2) ? 1 : exchange.answer.size());
    exchange.answer[0] = exchange.random.oneIn(2) ? exchange.random.of(usual) : exchange.random.byte();
}
void cut(Exchange& exchange) {
    exchange.answer.resize(exchange.random.below(exchange.answer.size()));
}
void lengthen(Exchange& exchange) {
    const std::size_t room = ipmi::maxMessage - exchange.answer.size();
    const std::size_t more =
        exchange.random.oneIn(2) ? 1 + exchange.random.below(4) : 1 + exchange.random.below(room);
    for (std::size_t i = 0; i < std::min(more, room); ++i)
        exchange.answer.push_back(exchange.random.byte());
}
void changeBytes(Exchange& exchange) {
    if (exchange.answer.size() < 2)
        return changeCode(exchange);
    for (std::size_t changes = 1 + exchange.random.below(4); changes > 0; --changes) {
        std::uint8_t& byte = exchange.answer[1 + exchange.random.below(exchange.answer.size() - 1)];
        const std::uint8_t values[] = {0x00,
                                       0xFF,
                                       0x7F,
                                       0x80,
                                       exchange.random.byte(),
                                       static_cast<std::uint8_t>(byte + 1),
                                       static_cast<std::uint8_t>(byte - 1),
                                       static_cast<std::uint8_t>(byte ^ 1U << exchange.random.below(8))};
        byte = exchange.random.of(values);
    }
}
void fill(Exchange& exchange) {
    constexpr std::uint8_t values[] = {0x00, 0xFF, 0x20, 0xA5};
    std::fill(exchange.answer.begin() + 1, exchange.answer.end(), exchange.random.of(values));
}
void replace(Exchange& exchange) {
    exchange.answer.resize(1 + exchange.random.below(exchange.random.oneIn(2) ? 32 : ipmi::maxMessage - 1));
    std::ranges::generate(exchange.answer, [&] { return exchange.random.byte(); });
    exchange.answer[0] = 0;
}
void repeatLast(Exchange& exchange) {
    exchange.answer = lastAnswer;
}
void repeatEarlier(Exchange& exchange) {
    exchange.answer = exchange.random.of(earlierAnswers[exchange.command]);
}
void comeLate(Exchange& exchange) {
    exchange.delay = std::chrono::seconds(1 + exchange.random.below(40));
}
void getLost(Exchange& exchange) {
    exchange.answer.clear();
    exchange.delay = 1h;
}

using Bend = void (*)(Exchange&);
constexpr Bend bends[] = {changeCode, cut,        lengthen,      changeBytes, changeBytes, fill,
                          replace,    repeatLast, repeatEarlier, comeLate,    getLost};

// ---- Which answers it happens to

class Mood {
public:
    explicit Mood(std::uint64_t seed) : random_(seed) {
        if (random_.oneIn(3))
            only_ = random_.of(bends);
        const std::size_t reach = std::size_t{1} << random_.below(8); // most requests take a few messages
        switch (random_.below(4)) {
        case 0:
            one_ = random_.below(reach);
            break;
        case 1:
            firstOfCommand_ = random_.below(reach);
            break;
        default:
            constexpr std::size_t rates[] = {1, 2, 3, 4, 8, 64};
            rate_ = random_.of(rates);
        }
    }

    void meet(Exchange& exchange) {
        if (isMeant(exchange.command))
            (only_ != nullptr ? only_ : random_.of(bends))(exchange);
        ++count_;
    }
    bool refusesSessions() { return random_.oneIn(64); }
    Random& random() { return random_; }

private:
    bool isMeant(const CommandKey& command) {
        if (one_)
            return count_ == *one_;
        if (firstOfCommand_) {
            if (count_ == *firstOfCommand_)
                command_ = command;
            return command_ == command;
        }
        return random_.oneIn(rate_);
    }

    Random random_;
    Bend only_ = nullptr;                       // always the same
    std::optional<std::size_t> one_;            // only to this exchange
    std::optional<std::size_t> firstOfCommand_; // to the command of this exchange, from then on
    std::optional<CommandKey> command_;
    std::size_t rate_ = 1; // to one answer in so many
    std::size_t count_ = 0;
};

std::optional<Mood> mood;
Counts total;

// ---- Sessions

class HostileTransport final : public ipmi::Transport {
public:
    explicit HostileTransport(const ipmi::SessionSettings& settings) : timeout_(settings.timeout) {
        ipmi::SessionSettings inner = settings;
        inner.interfaceType = ipmi::SessionSettings::VirtualBmc;
        bmc_ = ipmi::openTransport(inner);
    }

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        // A message takes its time, so that what asks for ever runs into its deadline.
        std::this_thread::sleep_for(5ms);
        std::uint8_t storage[ipmi::maxMessage];
        const std::size_t size = bmc_->exchange(netFn, command, request, storage);
        const Bytes right(storage, storage + size);
        ++total.exchanges;
        if (!mood)
            return hand(right, answer);
        remember({netFn, command}, right);
        Exchange exchange{mood->random(), {netFn, command}, right};
        mood->meet(exchange);
        total.bent += exchange.answer != right || exchange.delay > 0s ? 1 : 0;
        lastAnswer = right;
        wait(exchange.delay);
        return hand(exchange.answer, answer);
    }
    void endBy(ipmi::Clock::time_point deadline) override { deadline_ = deadline; }

private:
    static void remember(const CommandKey& command, const Bytes& answer) {
        constexpr std::size_t kept = 8;
        auto& answers = earlierAnswers[command];
        if (answers.size() < kept)
            answers.push_back(answer);
        else
            answers[mood->random().below(kept)] = answer;
    }
    // As a driver does, that gives up when the time is over.
    void wait(std::chrono::seconds delay) const {
        const ipmi::Clock::duration patience = std::min<ipmi::Clock::duration>(
            timeout_, std::max(deadline_ - ipmi::Clock::now(), ipmi::Clock::duration::zero()));
        std::this_thread::sleep_for(std::min<ipmi::Clock::duration>(delay, patience));
        if (delay > patience)
            throw ipmi::TransportError("the BMC does not answer");
    }
    static std::size_t hand(const Bytes& bytes, std::span<std::uint8_t> answer) {
        const std::size_t size = std::min(bytes.size(), answer.size());
        std::copy_n(bytes.begin(), size, answer.begin());
        return size;
    }

    std::unique_ptr<ipmi::Transport> bmc_;
    std::chrono::seconds timeout_;
    ipmi::Clock::time_point deadline_ = ipmi::Clock::time_point::max();
};

std::unique_ptr<ipmi::Transport> open(const ipmi::SessionSettings& settings) {
    if (mood && mood->refusesSessions()) {
        std::this_thread::sleep_for(std::chrono::seconds(settings.timeout));
        throw ipmi::SessionError("the BMC does not answer", ipmi::SessionProblem::NoAnswer);
    }
    return std::make_unique<HostileTransport>(settings);
}

} // namespace

void misbehave(std::uint64_t seed) {
    lastAnswer = {0};
    earlierAnswers.clear();
    mood.emplace(seed);
}

void behave() {
    mood.reset();
}

Counts counts() {
    return total;
}

} // namespace hostile

const ipmi::TransportLibrary PH_IpmiTransports{.open = hostile::open};
