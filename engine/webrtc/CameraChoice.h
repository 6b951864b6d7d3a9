// Which camera the local user has chosen, as an index that names the same device until the engine is shut
// down, and how its pictures are to be. Any thread, from memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/webrtc/PictureShape.h"

namespace Corvanta::Engine {

inline constexpr int32_t kNoCapture = -1;

// Index of the camera of that name; of the one that the setting "Device.Camera" names for a null or empty
// name. kNoCapture for the choice of none and for an unknown name.
[[nodiscard]] int32_t CaptureIndexOf(const char* deviceName);

struct Capture {
    // A name of ListDevices(DeviceKind::Camera); empty for what the option `camera` stands for.
    std::string device;
};
// Nothing for an index that CaptureIndexOf has never given.
[[nodiscard]] std::optional<Capture> FindCapture(int32_t index);

// At the end of the engine.
void ForgetCaptures();

struct CameraProperties {
    // Empty: as the source has it.
    std::optional<PictureShape> shape;
    // Bits a second.
    uint32_t bitrate = 0;
};

// Values below 1 leave the shape, or the bit rate, to the engine.
void SetCameraProperties(int32_t width, int32_t height, int32_t frameRate, int32_t bitrate);
[[nodiscard]] CameraProperties GetCameraProperties();

}  // namespace Corvanta::Engine
