#include "room/ActionQueue.h"

#include <SDL.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/Logger.h"
#include "ui/LockOrder.h"

namespace Corvanta::Room {
namespace {

void Carry(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& error) {
        LOG(4, "An action of the toolbar failed: %s", error.what());
    } catch (...) {
        LOG(4, "An action of the toolbar failed");
    }
}

// Unlike a thread's id it is never given again, not even to the queue's own thread.
uint64_t NumberOfThisThread() {
    static std::atomic<uint64_t> last{0};
    thread_local const uint64_t number = ++last;
    return number;
}

}  // namespace

// Shared with the thread, which may outlive the queue when an action destroys it.
struct ActionQueue::State {
    void Work() {
        std::unique_lock lock(mutex);
        while (true) {
            wake.wait(lock, [this] { return closed || !waiting.empty(); });
            if (closed) break;
            const std::function<void()> action = std::move(waiting.front());
            waiting.pop_front();
            lock.unlock();
            Carry(action);
            lock.lock();
        }
        // SDL keeps an error text for each thread that calls it, and frees only its own threads'.
        SDL_TLSCleanup();
    }

    UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> mutex;
    // guards: everything below
    std::condition_variable_any wake;
    std::deque<std::function<void()>> waiting;
    bool closed = false;
    // Started by the first action: most rooms see none.
    std::thread actionThread;
};

ActionQueue::ActionQueue() : state_(std::make_shared<State>()), maker_(NumberOfThisThread()) {}

ActionQueue::~ActionQueue() {
    Close();
    std::thread ending;
    {
        const std::scoped_lock lock(state_->mutex);
        ending = std::move(state_->actionThread);
    }
    if (!ending.joinable()) return;
    if (maker_ == NumberOfThisThread()) {
        ending.join();
    } else {
        ending.detach();
    }
}

void ActionQueue::Run(std::function<void()> action) {
    const std::scoped_lock lock(state_->mutex);
    if (state_->closed) return;
    state_->waiting.push_back(std::move(action));
    if (!state_->actionThread.joinable()) {
        state_->actionThread = std::thread([state = state_] { state->Work(); });
    }
    state_->wake.notify_one();
}

void ActionQueue::Close() {
    const std::scoped_lock lock(state_->mutex);
    state_->closed = true;
    state_->waiting.clear();
    state_->wake.notify_one();
}

}  // namespace Corvanta::Room
