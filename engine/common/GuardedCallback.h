// A registered function of the library that may be replaced at any time on any thread. Setting it waits for
// calls of the old one on other threads, so that afterwards the old one is gone for good. No lock is held
// during a call.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>

#include "engine/common/CallTracker.h"

namespace Corvanta::Engine {

template <class Signature>
class GuardedCallback;

template <class Result, class... Arguments>
class GuardedCallback<Result(Arguments...)> {
public:
    using Function = std::function<Result(Arguments...)>;

    // An empty function ends the calls.
    void Set(Function function) {
        std::shared_ptr<Callee> replacement;
        if (function) replacement = std::make_shared<Callee>(std::move(function));
        std::shared_ptr<Callee> old;
        {
            const std::lock_guard lock(calleeMutex);
            old = std::exchange(callee, std::move(replacement));
        }
        // What the function holds is let go of here and not on a thread that happened to look at it.
        if (old && old->tracker.Close()) old->function = nullptr;
    }

    // Calls the function on this thread. For a result: empty when no function is set. Without one: whether a
    // function was called.
    auto Call(Arguments... arguments) {
        const std::shared_ptr<Callee> current = Current();
        if constexpr (std::is_void_v<Result>) {
            if (!current) return false;
            const CallTracker::Call call(current->tracker);
            if (call) current->function(std::forward<Arguments>(arguments)...);
            return static_cast<bool>(call);
        } else {
            std::optional<Result> result;
            if (!current) return result;
            const CallTracker::Call call(current->tracker);
            if (call) result = current->function(std::forward<Arguments>(arguments)...);
            return result;
        }
    }

private:
    struct Callee {
        explicit Callee(Function callable) : function(std::move(callable)) {}
        Function function;
        CallTracker tracker;
    };

    std::shared_ptr<Callee> Current() {
        const std::lock_guard lock(calleeMutex);
        return callee;
    }

    std::mutex calleeMutex;  // guards: callee
    std::shared_ptr<Callee> callee;
};

}  // namespace Corvanta::Engine
