#include "engine/common/EngineLoop.h"

#include <exception>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

gboolean RunTask(gpointer data) {
    try {
        (*static_cast<std::function<void()>*>(data))();
    } catch (const std::exception& error) {
        // GLib's frames cannot be unwound.
        LOG(kLogError, "A task of the engine failed: %s", error.what());
    }
    return G_SOURCE_REMOVE;
}

void DeleteTask(gpointer data) {
    delete static_cast<std::function<void()>*>(data);
}

}  // namespace

EngineLoop::EngineLoop() : context(g_main_context_new()), loop(g_main_loop_new(context, FALSE)) {}

EngineLoop::~EngineLoop() {
    g_main_loop_unref(loop);
    g_main_context_unref(context);
}

void EngineLoop::Start(std::function<void()> body) {
    const std::lock_guard lock(threadMutex);
    thread = std::thread([this, task = std::move(body)] {
        // Libraries that look for a context of their own must not find the host's. The references are this
        // thread's own, since the body may let go of the loop.
        GMainContext* own = g_main_context_ref(context);
        g_main_context_push_thread_default(own);
        task();
        g_main_context_pop_thread_default(own);
        g_main_context_unref(own);
    });
}

void EngineLoop::Run() {
    GMainLoop* own = g_main_loop_ref(loop);
    g_main_loop_run(own);
    g_main_loop_unref(own);
}

void EngineLoop::Quit() {
    // As a task, so that it also works before the loop runs.
    Post([this] { g_main_loop_quit(loop); });
}

void EngineLoop::Join() {
    std::thread ended;
    {
        const std::lock_guard lock(threadMutex);
        ended.swap(thread);
    }
    if (ended.joinable()) ended.join();
}

void EngineLoop::Detach() {
    isDetached = true;
    const std::lock_guard lock(threadMutex);
    if (thread.joinable()) thread.detach();
}

void EngineLoop::Post(std::function<void()> task) {
    PostAfter(std::chrono::milliseconds::zero(), std::move(task));
}

void EngineLoop::PostAfter(std::chrono::milliseconds delay, std::function<void()> task) {
    GSource* source =
        delay.count() > 0 ? g_timeout_source_new(static_cast<guint>(delay.count())) : g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, RunTask, new std::function<void()>(std::move(task)), DeleteTask);
    g_source_attach(source, context);
    g_source_unref(source);
}

}  // namespace Corvanta::Engine
