// A GLib main context whose sources are served inside another one, on the same thread: what hangs on it runs
// along with the outer loop, and can still be brought to an end by itself when that loop runs no more. Made,
// used and destroyed on the outer context's thread, outside a call of its own sources.
#pragma once

#include <glib.h>

#include <chrono>
#include <functional>

#include "engine/signalling/OwnedSource.h"

namespace Corvanta::Engine {

class NestedContext final {
public:
    explicit NestedContext(GMainContext* outer);
    ~NestedContext();
    NestedContext(const NestedContext&) = delete;
    NestedContext& operator=(const NestedContext&) = delete;

    // Runs the task; what it starts asynchronously hangs on this context.
    void Run(const std::function<void()>& task) const;
    // Serves this context alone until the condition holds or the time is over. The outer loop need not run.
    void ServeUntil(const std::function<bool()>& condition, std::chrono::milliseconds longest) const;

    [[nodiscard]] GMainContext* Context() const { return context; }

private:
    GMainContext* const context;
    OwnedSource source;
};

}  // namespace Corvanta::Engine
