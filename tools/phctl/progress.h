// How far a long command is, on stderr.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace phctl {

// Writes over one line on a terminal; otherwise writes a line for each quarter of a phase.
class Progress {
public:
    Progress(std::ostream& out, bool isTerminal) : out_(out), isTerminal_(isTerminal) {}
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::string_view phase, std::size_t step, std::size_t total);
    void clear(); // leaves a terminal's line empty

private:
    std::ostream& out_;
    bool isTerminal_;
    bool isShown_ = false;
    std::string phase_;
    std::size_t quarter_ = 0;
};

} // namespace phctl
