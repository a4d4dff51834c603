#include "status_line.h"

#include <ostream>

namespace phctl {
namespace {

constexpr std::string_view eraseLine = "\r\x1B[K";

} // namespace

void StatusLine::show(std::string_view text) {
    const std::lock_guard lock(mutex_);
    isShown_ = isTerminal;
    if (isTerminal)
        out_ << eraseLine << text << std::flush;
    else
        out_ << text << std::endl;
}

void StatusLine::clear() {
    const std::lock_guard lock(mutex_);
    if (isShown_)
        out_ << eraseLine << std::flush;
    isShown_ = false;
}

} // namespace phctl
