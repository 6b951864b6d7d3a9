// Sibling library Corvanta.MediaManager: the video sources of the room and their data channels. Functions may
// be called on any thread. The registered functions are copied and called on threads of the media layer, with
// no lock of the media layer held; an empty function ends the calls, and on return no call of the old one is
// in progress on another thread.
//
// Reconciled forms: MediaManager_IsLocalVideoSourceRunning returns the id (empty when nothing runs) instead
// of filling an argument; the two senders return whether the text was accepted, which callers may leave
// unread; the registered sinks are pointers to a FrameCallback, told apart by their address.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Api.h"
#include "platform/Connections.h"
#include "platform/DataChannelMessage.h"
#include "platform/VideoFrameAdaptation.h"
#include "platform/VideoFrameBuffer.h"
#include "platform/VideoSourceData.h"

namespace Corvanta {

// Where a stream of SDLinterface_VideoRoomAddStream comes from. Every value but Local is a remote source.
enum class StreamSourceType : int32_t { Local = 0, Remote = 1 };

// A handler of data-channel messages.
using DataChannelCallback = std::function<void(const DataChannelMessage&)>;

}  // namespace Corvanta

extern "C" {

// Start and stop of the library. Close ends every source and channel; on return no registered function is in
// progress on another thread, and none follows until the next Init. All registrations are forgotten.
CORVANTA_PLATFORM_API void MediaManager_Init();
CORVANTA_PLATFORM_API void MediaManager_Close();

// A remote source exists. The function returns a new FrameCallback that the media manager owns and calls for
// every frame of the stream on its decode thread, or null, whereupon the source is offered again later.
CORVANTA_PLATFORM_API void MediaManager_SetAddRemoteVideoSourceSDLCallback(
    std::function<Corvanta::FrameCallback*(const std::string& streamId)> callback);
// The video track of a remote stream has arrived.
CORVANTA_PLATFORM_API void MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback(
    std::function<void(std::string streamId)> callback);
// A local source runs under this media source id. The result is owned as for remote sources and called on the
// capture thread.
CORVANTA_PLATFORM_API void MediaManager_SetAddLocalVideoSourceSDLCallback(
    std::function<Corvanta::FrameCallback*(Corvanta::StreamType type, std::string sourceId)> callback);
// Asked once for each data channel; the handlers are called one by one for every message, on that channel's
// thread. An exception of one is logged and the next is called.
CORVANTA_PLATFORM_API void MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList(
    std::function<std::vector<Corvanta::DataChannelCallback>()> callback);
// A remote source is gone; no frame of it follows.
CORVANTA_PLATFORM_API void MediaManager_SetRemoveRemoteVideoSourceSDLCallback(
    std::function<void(std::string streamId)> callback);
// The connection of a stream was lost, or came back.
CORVANTA_PLATFORM_API void MediaManager_SetOnConnectionStatusUpdateSDLCallback(
    std::function<void(std::string streamId, bool lost)> callback);
// The shared file began (true) or ended to play.
CORVANTA_PLATFORM_API void MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback(
    std::function<void(const std::string& streamId, bool status)> callback);
// A local source is gone; no frame of it follows.
CORVANTA_PLATFORM_API void MediaManager_SetRemoveLocalVideoSourceSDLCallback(
    std::function<void(std::string sourceId)> callback);
// The window that was being shared has closed.
CORVANTA_PLATFORM_API void MediaManager_SetOnWindowCapturedClosedCallback(std::function<void()> callback);

// Asked on the capture thread before each frame of the local camera is encoded.
CORVANTA_PLATFORM_API void MediaManager_SetLocalVideoFrameAdaptationCallback(
    std::function<Corvanta::VideoFrameAdaptation()> callback);

// Feeds a further sink with the frames of a source, on its capture or decode thread. The sink is borrowed
// until it is unregistered; Unregister waits for a call in progress on another thread. Null, an unknown
// source, a pair that is known already or not at all: nothing happens.
CORVANTA_PLATFORM_API void MediaManager_RegisterCallback(const std::string& sourceId,
                                                         Corvanta::FrameCallback* sink);
CORVANTA_PLATFORM_API void MediaManager_UnregisterCallback(const std::string& sourceId,
                                                           Corvanta::FrameCallback* sink);

// Media source id under which the capture device of that index runs; empty when it does not run.
CORVANTA_PLATFORM_API std::string MediaManager_IsLocalVideoSourceRunning(int32_t captureIndex);
// Ends a local source. An unknown id is ignored.
CORVANTA_PLATFORM_API void MediaManager_StopLocalVideoSource(const std::string& sourceId);

// Send a zero-terminated UTF-8 text to the other participants, over the room's data channel and over that of
// the local user's native stream. The text is copied and sent in the background. False when there is no
// channel.
CORVANTA_PLATFORM_API bool MediaManager_SendDatachannelMessage(const char* text);
CORVANTA_PLATFORM_API bool MediaManager_SendNativeStreamDatachannelMessage(const char* text);
}
