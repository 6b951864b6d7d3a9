// The functions of platform/WebRTC.h that concern what the local user captures.
#include "engine/EngineSettings.h"
#include "engine/connections/Room.h"
#include "platform/WebRTC.h"

namespace {

using Corvanta::Engine::CurrentOptions;
using Corvanta::Engine::Room;
using Corvanta::Engine::RoomCamera;

// Enough for a camera's 1280x720 at 30 pictures a second.
constexpr uint32_t kCameraTargetBitrate = 2'500'000;
constexpr int32_t kNoCamera = -1;

}  // namespace

void WebRTC_StopAllLocalVideoCaptures() {
    const auto room = Room::Current();
    if (const auto camera = room ? room->Camera() : nullptr) camera->Stop();
}

int32_t WebRTC_GetVideoCaptureIndex(void*, void*, void*, void*) {
    const auto room = Room::Current();
    const bool hasCamera = room ? room->Camera() != nullptr : !CurrentOptions().camera.empty();
    return hasCamera ? RoomCamera::kCaptureIndex : kNoCamera;
}

void WebRTC_SetLocalCameraProperties(int32_t, int32_t, int32_t, int32_t) {}

uint32_t WebRTC_GetLocalCameraTargetBitrate() {
    return kCameraTargetBitrate;
}
