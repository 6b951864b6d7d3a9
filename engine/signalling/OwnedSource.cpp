#include "engine/signalling/OwnedSource.h"

#include <exception>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

gboolean RunOnce(gpointer data) {
    try {
        (*static_cast<std::function<void()>*>(data))();
    } catch (const std::exception& error) {
        // GLib's frames cannot be unwound.
        LOG(kLogError, "A timer of a room failed: %s", error.what());
    }
    return G_SOURCE_REMOVE;
}

void Delete(gpointer data) {
    delete static_cast<std::function<void()>*>(data);
}

}  // namespace

OwnedSource StartTimer(GMainContext* context, std::chrono::milliseconds delay,
                       std::function<void()> function) {
    OwnedSource source(g_timeout_source_new(static_cast<guint>(delay.count())));
    g_source_set_callback(source.get(), RunOnce, new std::function<void()>(std::move(function)), Delete);
    g_source_attach(source.get(), context);
    return source;
}

}  // namespace Corvanta::Engine
