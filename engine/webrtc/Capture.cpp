// The functions of platform/WebRTC.h that concern what the local user captures.
#include "engine/connections/Room.h"
#include "engine/webrtc/CameraChoice.h"
#include "platform/WebRTC.h"

namespace {

using Corvanta::StreamType;
using Corvanta::Engine::Room;

bool IsShared(StreamType type) {
    const auto room = Room::Current();
    return room && room->Streams().Find(type) != nullptr;
}

}  // namespace

void WebRTC_StopAllLocalVideoCaptures() {
    const auto room = Room::Current();
    if (!room) return;
    room->Camera().Stop();
    room->Streams().StopAll();
}

// The answer is also the room's next camera: the renegotiation that follows a question brings it.
int32_t WebRTC_GetVideoCaptureIndex(void* deviceName, void*, void*, void*) {
    const int32_t index = Corvanta::Engine::CaptureIndexOf(static_cast<const char*>(deviceName));
    if (const auto room = Room::Current()) room->Camera().Choose(index);
    return index;
}

void WebRTC_SetLocalCameraProperties(int32_t width, int32_t height, int32_t frameRate, int32_t bitrate) {
    const auto before = Corvanta::Engine::GetCameraProperties().shape;
    Corvanta::Engine::SetCameraProperties(width, height, frameRate, bitrate);
    const auto room = Room::Current();
    if (room && Corvanta::Engine::GetCameraProperties().shape != before) room->Camera().Reopen();
}

uint32_t WebRTC_GetLocalCameraTargetBitrate() {
    return Corvanta::Engine::GetCameraProperties().bitrate;
}

bool WebRTC_IsScreenShareCapturing() {
    return IsShared(StreamType::Screenshare);
}

bool WebRTC_IsNativeStreamCapturing(StreamType type) {
    return IsShared(type);
}
