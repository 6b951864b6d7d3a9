#include "engine/webrtc/CameraChoice.h"

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <vector>

#include "engine/Engine.h"
#include "engine/EngineSettings.h"

namespace Corvanta::Engine {

namespace {

// Enough for a camera's 1280x720 at 30 pictures a second.
constexpr uint32_t kDefaultBitrate = 2'500'000;
constexpr int kMaxSide = 8192;
constexpr int kMaxRate = 120;

// What the option `camera` stands for, among the names of devices.
constexpr const char* kStandIn = "";

struct Choices {
    static Choices& Get() {
        static Choices choices;
        return choices;
    }

    std::mutex choicesMutex;  // guards: everything below
    // By index. Names stay when their devices go, so that an index keeps its meaning.
    std::vector<std::string> names;
    CameraProperties properties{.shape = std::nullopt, .bitrate = kDefaultBitrate};
};

int32_t IndexOf(const std::string& name) {
    Choices& choices = Choices::Get();
    const std::lock_guard lock(choices.choicesMutex);
    const auto found = std::find(choices.names.begin(), choices.names.end(), name);
    const auto index = found - choices.names.begin();
    if (found == choices.names.end()) choices.names.push_back(name);
    return static_cast<int32_t>(index);
}

int32_t DefaultIndex(const std::vector<std::string>& devices) {
    const std::string standIn = CurrentOptions().camera;
    if (standIn.empty()) return kNoCapture;
    if (standIn == kDefaultCamera) return IndexOf(devices.front());
    return IndexOf(standIn == "test" ? kTestPicture : kStandIn);
}

}  // namespace

int32_t CaptureIndexOf(const char* deviceName) {
    const std::vector<std::string> devices = ListDevices(DeviceKind::Camera);
    // The order of the list is that of the indices where no device has gone.
    for (const std::string& device : devices) static_cast<void>(IndexOf(device));
    std::string name = deviceName != nullptr ? deviceName : "";
    if (name.empty()) name = ReadSetting("Device.Camera");
    if (name.empty()) return DefaultIndex(devices);
    const bool isKnown = std::find(devices.begin(), devices.end(), name) != devices.end();
    return isKnown ? IndexOf(name) : kNoCapture;
}

std::optional<Capture> FindCapture(int32_t index) {
    Choices& choices = Choices::Get();
    const std::lock_guard lock(choices.choicesMutex);
    if (index < 0 || static_cast<std::size_t>(index) >= choices.names.size()) return std::nullopt;
    return Capture{choices.names[static_cast<std::size_t>(index)]};
}

void ForgetCaptures() {
    Choices& choices = Choices::Get();
    const std::lock_guard lock(choices.choicesMutex);
    choices.names.clear();
}

void SetCameraProperties(int32_t width, int32_t height, int32_t frameRate, int32_t bitrate) {
    CameraProperties properties{.shape = std::nullopt, .bitrate = kDefaultBitrate};
    if (width > 0 && height > 0 && frameRate > 0) {
        properties.shape = PictureShape{std::min(width, kMaxSide), std::min(height, kMaxSide),
                                        std::min(frameRate, kMaxRate)};
    }
    if (bitrate > 0) properties.bitrate = static_cast<uint32_t>(bitrate);
    Choices& choices = Choices::Get();
    const std::lock_guard lock(choices.choicesMutex);
    choices.properties = properties;
}

CameraProperties GetCameraProperties() {
    Choices& choices = Choices::Get();
    const std::lock_guard lock(choices.choicesMutex);
    return choices.properties;
}

}  // namespace Corvanta::Engine
