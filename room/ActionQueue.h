// The thread of the bar's long actions, such as choosing what to share: they run in the host, may take as
// long as a person does, and so are never waited for inside a tick. One at a time and in order. Any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace Corvanta::Room {

class ActionQueue final {
public:
    ActionQueue();
    // What has not started is dropped; what runs is waited for on the thread that made the queue. On any
    // other it is left to its end: a media thread may be the last to let go of a room, and an action may wait
    // for what waits for that thread.
    ~ActionQueue();
    ActionQueue(const ActionQueue&) = delete;
    ActionQueue& operator=(const ActionQueue&) = delete;

    // Returns at once. action: runs on the queue's thread with no lock held; what it throws is logged.
    void Run(std::function<void()> action);
    // What has not started is dropped, and nothing starts from here on.
    void Close();

private:
    struct State;
    const std::shared_ptr<State> state_;
    const uint64_t maker_;
};

}  // namespace Corvanta::Room
