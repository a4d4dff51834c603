// The line on stderr that says what a command is doing.
#pragma once

#include <iosfwd>
#include <mutex>
#include <string_view>

namespace phctl {

// On a terminal it is written over and over, by any thread; elsewhere each text is a line of its own.
class StatusLine {
public:
    StatusLine(std::ostream& out, bool onTerminal) : isTerminal(onTerminal), out_(out) {}
    ~StatusLine() { clear(); }
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    void show(std::string_view text);
    void clear(); // leaves a terminal's line empty

    const bool isTerminal;

private:
    std::ostream& out_;
    std::mutex mutex_;
    bool isShown_ = false;
};

} // namespace phctl
