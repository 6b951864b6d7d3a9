// A running engine loop, on whose thread a test has things done.
#pragma once

#include <functional>
#include <future>

#include "engine/common/EngineLoop.h"

namespace Corvanta::Engine {

class LoopThread final {
public:
    LoopThread() {
        loop.Start([this] { loop.Run(); });
    }
    ~LoopThread() {
        loop.Quit();
        loop.Join();
    }
    LoopThread(const LoopThread&) = delete;
    LoopThread& operator=(const LoopThread&) = delete;

    // On return the task has run.
    void Do(const std::function<void()>& task) {
        std::promise<void> done;
        loop.Post([&] {
            task();
            done.set_value();
        });
        done.get_future().wait();
    }

    [[nodiscard]] GMainContext* Context() const { return loop.Context(); }

private:
    EngineLoop loop;
};

}  // namespace Corvanta::Engine
