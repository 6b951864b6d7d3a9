// The data channel of one participant: what it sends goes to the library's handlers. The engine's thread.
#pragma once

#include <vector>

#include "engine/common/CallTracker.h"
#include "platform/DataChannelMessage.h"
#include "platform/MediaManager.h"

namespace Corvanta::Engine {

class DataChannel final {
public:
    // Asks the library for its handlers, which hold from then on.
    void Open();
    // Lets go of the handlers and of what they hold.
    void Close();

    // Calls each handler by itself: an exception of one is logged, and the next is called all the same.
    void Deliver(const DataChannelMessage& message);

private:
    std::vector<DataChannelCallback> handlers;
    // A handler may close the room, which must not wait for the thread that it is on.
    CallTracker tracker;
};

}  // namespace Corvanta::Engine
