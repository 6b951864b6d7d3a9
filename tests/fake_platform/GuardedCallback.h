// A callback that the code under test has registered with the fake platform. As the real libraries promise,
// replacing it waits until a call in progress on another thread has ended. Every operation may be called on
// any thread.
#pragma once

#include <functional>
#include <mutex>
#include <utility>

#include "tests/fake_platform/UncountedScope.h"

namespace Corvanta::Testing {

template <typename Signature>
class GuardedCallback;

template <typename Result, typename... Arguments>
class GuardedCallback<Result(Arguments...)> final {
public:
    using Function = std::function<Result(Arguments...)>;

    void Set(Function function) {
        const std::lock_guard busy(busy_);
        std::swap(function_, function);
    }

    // A copy, which outlives its replacement: for calls that come too late.
    [[nodiscard]] Function Get() const {
        const std::lock_guard busy(busy_);
        return function_;
    }

    [[nodiscard]] bool IsSet() const {
        const std::lock_guard busy(busy_);
        return static_cast<bool>(function_);
    }

    // Calls it; a default-made result when it is empty.
    Result operator()(Arguments... arguments) const {
        const std::lock_guard busy(busy_);
        const Function function = Copy();
        if (!function) {
            return Result();
        }
        return function(std::forward<Arguments>(arguments)...);
    }

private:
    Function Copy() const {
        const UncountedScope uncounted;
        return function_;
    }

    // Recursive, since a callback may replace itself. Guards: function_, and a call in progress.
    mutable std::recursive_mutex busy_;
    Function function_;
};

}  // namespace Corvanta::Testing
