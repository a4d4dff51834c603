// The records that the BMC adds to its event log, each once: over a clear, a log that drops its oldest
// records, and a restart of this process.
#pragma once

#include "sel_position.h"

#include <functional>

class SelFollower {
public:
    using Take = std::function<void(const std::uint8_t (&record)[CIM_SEL_RECORD_SIZE])>;

    SelFollower() = default;
    ~SelFollower();
    SelFollower(const SelFollower&) = delete;
    SelFollower& operator=(const SelFollower&) = delete;

    // Hands over what is new since the call before, oldest first. The first call ever takes nothing: it finds
    // out where the log ends. One exchange with the BMC where nothing has changed. A BMC that does not answer
    // is asked again with the next call.
    void poll(const Take& take);
    // Ends the session.
    void close();
    // Forgets the position: the next call is the first again.
    void forget();

private:
    struct Lost {}; // the BMC does not answer, or contradicts itself
    struct Next {
        std::uint16_t id;
        bool mayBeOld; // and what follows it: was taken before
    };

    bool open();
    bool read(std::uint16_t recordId, CIM_SELEntry& entry);
    CIM_SELInfo info();
    void begin(const CIM_SELInfo& info);
    Next findNext(const CIM_SELInfo& info);
    bool takeNew(const CIM_SELInfo& info, const Take& take); // whether there was something, or may be more

    IPMI20_SESSION_T session_{};
    bool isOpen_ = false;
    bool isLoaded_ = false;
    std::optional<SelPosition> position_;
    CIM_SELInfo seen_{};
    bool isSettled_ = false; // seen_ was so twice, and the second time nothing was new
};
