#include "engine/mediamanager/DataChannel.h"

#include <exception>
#include <utility>

#include "engine/mediamanager/MediaCallbacks.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kFailed = "A handler of the messages of \"%s\" failed: %s";

}  // namespace

void DataChannel::Open() {
    if (auto given = MediaCallbacks::Get().dataChannelHandlers.Call()) handlers = std::move(*given);
}

void DataChannel::Close() {
    handlers.clear();
}

void DataChannel::Deliver(const DataChannelMessage& message) {
    const CallTracker::Call call(tracker);
    for (const DataChannelCallback& handler : handlers) {
        if (!handler) continue;
        try {
            handler(message);
        } catch (const std::exception& error) {
            LOG(kLogWarning, kFailed, message.senderId.c_str(), error.what());
        } catch (...) {
            // Whatever it is, the handlers after it have to hear the message.
            LOG(kLogWarning, kFailed, message.senderId.c_str(), "no standard exception");
        }
    }
}

}  // namespace Corvanta::Engine
