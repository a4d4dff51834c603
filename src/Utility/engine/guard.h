// The border between C++ and the C interface.
#pragma once

namespace ph {

// The result of `function`, or `failure` when it throws.
template <class Result, class Function>
Result guarded(Result failure, Function&& function) noexcept {
    try {
        return function();
    } catch (...) {
        return failure;
    }
}

} // namespace ph
