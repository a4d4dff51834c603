// Sensors read before they are asked for: while the caller works on some, a thread has the BMC answer for the next.
#pragma once

#include "hooks/session.h"
#include "ipmi/command.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace hooks {

class ReadingAhead {
public:
    // So few sensors are asked for faster without.
    static bool isWorth(std::size_t sensors);

    // Begins to read these sensors in this order, some of them ahead of the caller. The session is this object's as
    // long as it lives. `timeout` is each reading's, in seconds. Throws std::system_error when there is no thread to be
    // had.
    ReadingAhead(Session& session, std::vector<std::uint8_t> sensors, int timeout);
    // Waits for the reading under way.
    ~ReadingAhead();
    ReadingAhead(const ReadingAhead&) = delete;
    ReadingAhead& operator=(const ReadingAhead&) = delete;

    // Waits for the answer of the next sensor, if that is this one. Throws what its reading threw, which was the last
    // one. Returns nothing for a sensor that is not read ahead (any more).
    std::optional<ipmi::Answer> take(std::uint8_t sensor);

private:
    void run();
    void read();
    // Returns false when nothing more is wanted.
    bool waitForRoom();
    // Waits until something has been read, and fills the batch with it. It stays empty when there is nothing more.
    void fetch();

    Session& session_;
    const std::vector<std::uint8_t> sensors_;
    const int timeout_;

    // The caller's.
    std::size_t taken_ = 0;
    std::deque<ipmi::Answer> batch_;

    std::mutex mutex_; // of what follows
    std::condition_variable changed_;
    std::deque<ipmi::Answer> answers_;
    std::exception_ptr failure_;
    bool isFinished_ = false;
    bool isStopping_ = false;

    std::thread thread_;
};

} // namespace hooks
