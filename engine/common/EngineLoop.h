// The engine's own thread with a GLib main context of its own; the default context belongs to the host's
// toolkit. Pipelines are built, watched and taken down on it. Posting: any thread. The rest as each says.
#pragma once

#include <glib.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>

namespace Corvanta::Engine {

class EngineLoop final {
public:
    EngineLoop();
    // The thread must have ended, or be about to: Join or Detach came before.
    ~EngineLoop();
    EngineLoop(const EngineLoop&) = delete;
    EngineLoop& operator=(const EngineLoop&) = delete;

    // Runs `body` on the new thread; it ends when Run inside it returns.
    void Start(std::function<void()> body);

    // On the loop's thread: handles what comes until Quit is called.
    void Run();
    // Any thread, also before Run: makes Run return.
    void Quit();
    // Not on the loop's thread: waits for the body to return.
    void Join();
    // Lets the thread run to its end by itself; what its body uses must live that long.
    void Detach();
    [[nodiscard]] bool IsDetached() const { return isDetached; }

    // Runs a task on the loop's thread; tasks that are left when the loop ends are dropped.
    void Post(std::function<void()> task);
    void PostAfter(std::chrono::milliseconds delay, std::function<void()> task);

    [[nodiscard]] GMainContext* Context() const { return context; }

private:
    GMainContext* context;
    GMainLoop* loop;
    // The new thread may detach itself before Start has even returned.
    std::mutex threadMutex;  // guards: thread
    std::thread thread;
    std::atomic<bool> isDetached = false;
};

}  // namespace Corvanta::Engine
