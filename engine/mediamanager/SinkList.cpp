#include "engine/mediamanager/SinkList.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

void SinkList::AddOwned(std::unique_ptr<FrameCallback> sink) {
    if (!sink) return;
    auto entry = std::make_shared<Sink>();
    entry->callback = sink.get();
    entry->owned = std::move(sink);
    const std::lock_guard lock(sinksMutex);
    sinks.push_back(std::move(entry));
}

void SinkList::AddBorrowed(FrameCallback* sink) {
    if (sink == nullptr) return;
    const std::lock_guard lock(sinksMutex);
    for (const auto& entry : sinks) {
        if (entry->callback == sink) return;
    }
    auto entry = std::make_shared<Sink>();
    entry->callback = sink;
    sinks.push_back(std::move(entry));
}

void SinkList::Remove(FrameCallback* sink) {
    std::shared_ptr<Sink> gone;
    {
        const std::lock_guard lock(sinksMutex);
        const auto found = std::find_if(sinks.begin(), sinks.end(),
                                        [&](const auto& entry) { return entry->callback == sink; });
        if (found == sinks.end()) return;
        gone = std::move(*found);
        sinks.erase(found);
    }
    gone->tracker.Close();
}

void SinkList::Clear() {
    std::vector<std::shared_ptr<Sink>> gone;
    {
        const std::lock_guard lock(sinksMutex);
        gone.swap(sinks);
    }
    for (const auto& entry : gone) entry->tracker.Close();
}

std::size_t SinkList::Deliver(const std::function<std::shared_ptr<VideoFrameBuffer>()>& makeFrame) {
    std::size_t taken = 0;
    for (std::size_t index = 0;; ++index) {
        std::shared_ptr<Sink> sink;
        {
            const std::lock_guard lock(sinksMutex);
            if (index >= sinks.size()) return taken;
            sink = sinks[index];
        }
        const CallTracker::Call call(sink->tracker);
        if (!call) continue;
        try {
            (*sink->callback)(makeFrame());
            ++taken;
        } catch (const std::exception& error) {
            if (!exceptionWasLogged.exchange(true)) {
                LOG(kLogError, "A sink of \"%s\" threw: %s", name.c_str(), error.what());
            }
        }
    }
}

}  // namespace Corvanta::Engine
