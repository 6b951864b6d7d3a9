// A source of a GLib main context that ends with its owner: on return of reset it is not called any more. On
// the context's thread.
#pragma once

#include <glib.h>

#include <chrono>
#include <functional>
#include <memory>

namespace Corvanta::Engine {

struct SourceEnder {
    void operator()(GSource* source) const {
        g_source_destroy(source);
        g_source_unref(source);
    }
};

using OwnedSource = std::unique_ptr<GSource, SourceEnder>;

// Calls the function once after that time, on the context's thread. It may end its own source.
[[nodiscard]] OwnedSource StartTimer(GMainContext* context, std::chrono::milliseconds delay,
                                     std::function<void()> function);

}  // namespace Corvanta::Engine
