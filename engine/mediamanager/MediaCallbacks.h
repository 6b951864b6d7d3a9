// The functions that the library registered with the media manager. One set in the process; any thread.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/common/GuardedCallback.h"
#include "platform/MediaManager.h"

namespace Corvanta::Engine {

struct MediaCallbacks {
    [[nodiscard]] static MediaCallbacks& Get();

    // Forgets all of them, waiting for calls in progress on other threads.
    void Clear();

    GuardedCallback<FrameCallback*(const std::string&)> addRemoteVideoSource;
    GuardedCallback<void(std::string)> videoTrackAdded;
    GuardedCallback<FrameCallback*(StreamType, std::string)> addLocalVideoSource;
    GuardedCallback<std::vector<DataChannelCallback>()> dataChannelHandlers;
    GuardedCallback<void(std::string)> removeRemoteVideoSource;
    GuardedCallback<void(std::string, bool)> connectionStatus;
    GuardedCallback<void(const std::string&, bool)> filePlaybackStatus;
    GuardedCallback<void(std::string)> removeLocalVideoSource;
    GuardedCallback<void()> capturedWindowClosed;
    GuardedCallback<VideoFrameAdaptation()> localVideoAdaptation;
};

}  // namespace Corvanta::Engine
