// The frame sinks of one source. Sinks come and go on any thread while frames are delivered; no lock is held
// while a sink is called.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/common/CallTracker.h"
#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Engine {

class SinkList final {
public:
    // `sourceName` is for the log.
    explicit SinkList(std::string sourceName) : name(std::move(sourceName)) {}
    ~SinkList() { Clear(); }
    SinkList(const SinkList&) = delete;
    SinkList& operator=(const SinkList&) = delete;

    // A sink that is deleted when it leaves the list and no call of it is in progress.
    void AddOwned(std::unique_ptr<FrameCallback> sink);
    // A sink that stays its owner's. One that is known already is not added again.
    void AddBorrowed(FrameCallback* sink);
    // Waits for a call in progress on another thread. An unknown sink is ignored.
    void Remove(FrameCallback* sink);
    // Removes every sink, as Remove does.
    void Clear();

    // Calls each sink with a frame object of its own, made by `makeFrame`. An exception of a sink is logged
    // once for each source and the next sink is called. Returns how many sinks took the frame.
    std::size_t Deliver(const std::function<std::shared_ptr<VideoFrameBuffer>()>& makeFrame);

private:
    struct Sink {
        FrameCallback* callback = nullptr;
        std::unique_ptr<FrameCallback> owned;
        CallTracker tracker;
    };

    std::string name;
    std::atomic<bool> exceptionWasLogged = false;
    std::mutex sinksMutex;  // guards: sinks
    std::vector<std::shared_ptr<Sink>> sinks;
};

}  // namespace Corvanta::Engine
