// Time that passes at once: sleeping moves the steady clock of the process on instead.
#pragma once

#include <chrono>

namespace hostile {

void pass(std::chrono::nanoseconds time);

} // namespace hostile
