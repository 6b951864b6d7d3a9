// The machine's cameras, how one of them is chosen and changed, and how its pictures are to be.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "engine/Engine.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/PluggedCameras.h"
#include "tests/engine/SharingVisitor.h"

namespace Corvanta::Engine {
namespace {

const std::string kSource = "camera-0";
const std::vector<PluggedCameras::Camera> kTwoCameras{{"White", 0xFFFFFF}, {"Black", 0x000000}};

int32_t IndexOf(const char* name) {
    // The platform takes what the host hands through.
    return WebRTC_GetVideoCaptureIndex(const_cast<char*>(name), nullptr, nullptr, nullptr);
}

// As the library changes the camera; the index that it then asks after.
int32_t ChangeTo(const char* name) {
    const int32_t index = IndexOf(name);
    if (index < 0) WebRTC_SetEnabledLocalVideoTrack(false, 0);
    MediaManager_StopLocalVideoSource(kSource);
    const std::string other = MediaManager_IsLocalVideoSourceRunning(index);
    if (!other.empty()) MediaManager_StopLocalVideoSource(other);
    Connections_RenegotiateOutboundPeerConnection(false, true,
                                                  Connections_GetLocalUserStreamID(StreamType::Camera));
    return index;
}

// Receives what the tile would, once the library has registered its sink again.
struct Tile {
    std::atomic<int> luma = -1;
    std::atomic<int> width = 0;
    FrameCallback sink = [this](const std::shared_ptr<VideoFrameBuffer>& frame) {
        width = frame->GetWidth();
        const auto* const planar = dynamic_cast<const YUVFrameBuffer*>(frame.get());
        luma = planar != nullptr ? planar->GetDataY()[0] : -1;
    };

    [[nodiscard]] bool Shows(const std::function<bool(int)>& isRight) const {
        return Eventually([&] { return isRight(luma); });
    }
};

bool IsWhite(int luma) {
    return luma > 220;
}
bool IsBlack(int luma) {
    return luma >= 0 && luma < 30;
}

TEST(Devices, AreListedInTheirOrderWithTheGeneratedOnesAtTheEnd) {
    const PluggedCameras cameras({{"Twin", 0}, {"Twin", 0}, {kTestPicture, 0}, {"None", 0}});
    const auto names = ListDevices(DeviceKind::Camera);
    ASSERT_GE(names.size(), 5U);
    EXPECT_EQ(names.back(), kTestPicture);
    EXPECT_EQ(std::count(names.begin(), names.end(), kTestPicture), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "None"), 0) << "it is the choice of no device";
    const auto twin = std::find(names.begin(), names.end(), "Twin");
    ASSERT_NE(twin, names.end());
    EXPECT_EQ(*(twin + 1), "Twin (2)");
    EXPECT_EQ(ListDevices(DeviceKind::Microphone).back(), kTestTone);
    const auto speakers = ListDevices(DeviceKind::Speaker);
    EXPECT_EQ(std::count(speakers.begin(), speakers.end(), kTestTone), 0);
    Shutdown();
}

TEST(Devices, TellWhenTheyComeAndGo) {
    PluggedCameras cameras({{"First", 0}});
    std::atomic<int> changes = 0;
    std::vector<std::string> last;
    std::mutex lastMutex;
    const auto has = [&](const std::string& name) {
        const std::lock_guard lock(lastMutex);
        return std::find(last.begin(), last.end(), name) != last.end();
    };
    SetDevicesChangedListener([&] {
        const auto names = ListDevices(DeviceKind::Camera);
        const std::lock_guard lock(lastMutex);
        last = names;
        ++changes;
    });
    static_cast<void>(ListDevices(DeviceKind::Camera));
    cameras.Plug({"Second", 0});
    EXPECT_TRUE(Eventually([&] { return has("First") && has("Second"); }));
    cameras.Pull("Second");
    EXPECT_TRUE(Eventually([&] { return has("First") && !has("Second"); }));
    SetDevicesChangedListener({});
    const int before = changes;
    cameras.Plug({"Third", 0});
    EXPECT_TRUE(Eventually([&] {
        const auto names = ListDevices(DeviceKind::Camera);
        return std::find(names.begin(), names.end(), "Third") != names.end();
    }));
    EXPECT_EQ(changes, before);
    Shutdown();
}

TEST(CameraChoice, IsTheIndexInTheListAndNegativeForNone) {
    const PluggedCameras cameras(kTwoCameras);
    SharingVisitor visitor;
    visitor.Configure("test");
    const int32_t white = IndexOf("White");
    const int32_t black = IndexOf("Black");
    EXPECT_GE(white, 0);
    EXPECT_EQ(black, white + 1);
    EXPECT_GE(IndexOf(kTestPicture), 0);
    EXPECT_LT(IndexOf("None"), 0);
    EXPECT_LT(IndexOf("Nobody's"), 0);
}

TEST(CameraChoice, FollowsTheSettingAndElseTheOption) {
    const PluggedCameras cameras(kTwoCameras);
    SharingVisitor visitor;
    visitor.Configure("test");
    EXPECT_EQ(IndexOf(nullptr), IndexOf(kTestPicture));
    WriteSetting("Device.Camera", "Black");
    EXPECT_EQ(IndexOf(nullptr), IndexOf("Black"));
    EXPECT_EQ(IndexOf(""), IndexOf("Black"));
    WriteSetting("Device.Camera", "None");
    EXPECT_LT(IndexOf(nullptr), 0);
    WriteSetting("Device.Camera", "Gone");
    EXPECT_LT(IndexOf(nullptr), 0);
    WriteSetting("Device.Camera", "");
    visitor.Configure(kDefaultCamera);
    EXPECT_EQ(IndexOf(nullptr), IndexOf(ListDevices(DeviceKind::Camera).front().c_str()));
    visitor.Configure("");
    EXPECT_LT(IndexOf(nullptr), 0);
    visitor.Configure("clip");
    EXPECT_GE(IndexOf(nullptr), 0);
    EXPECT_NE(IndexOf(nullptr), IndexOf(kTestPicture));
}

TEST(CameraChoice, IsShownFromTheRoomsBeginning) {
    const PluggedCameras cameras(kTwoCameras);
    SharingVisitor visitor;
    visitor.Configure("test");
    WriteSetting("Device.Camera", "White");
    visitor.Enter("test");
    ASSERT_TRUE(visitor.GetsMore(kSource));
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(IndexOf("White")), kSource);
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(IndexOf(kTestPicture)), "");
    EXPECT_EQ(visitor.LastFrame(kSource)->GetWidth(), 1280);
    EXPECT_EQ(visitor.LastFrame(kSource)->GetHeight(), 720);
}

TEST(CameraChoice, BringsTheOtherDevicesPictureUnderTheSameId) {
    const PluggedCameras cameras(kTwoCameras);
    Tile tile;
    SharingVisitor visitor;
    visitor.Enter("test");
    ASSERT_TRUE(visitor.GetsMore(kSource));
    int32_t last = IndexOf(kTestPicture);
    using Step = std::pair<const char*, bool (*)(int)>;
    for (const auto& [name, isRight] :
         {Step{"White", IsWhite}, Step{"Black", IsBlack}, Step{"White", IsWhite}}) {
        const int32_t index = ChangeTo(name);
        ASSERT_GE(index, 0);
        EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(index), kSource) << "from memory, at once";
        EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(last), "");
        MediaManager_RegisterCallback(kSource, &tile.sink);
        EXPECT_TRUE(tile.Shows(isRight)) << name;
        last = index;
    }
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 0 " + kSource});
    MediaManager_UnregisterCallback(kSource, &tile.sink);
}

TEST(CameraChoice, OfNoneStopsAndAnotherBringsItBack) {
    const PluggedCameras cameras(kTwoCameras);
    Tile tile;
    SharingVisitor visitor;
    visitor.Enter("test");
    ASSERT_TRUE(visitor.GetsMore(kSource));
    EXPECT_LT(ChangeTo("None"), 0);
    for (int32_t index = -1; index < 10; ++index) {
        EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(index), "") << index;
    }
    MediaManager_StopLocalVideoSource("");
    const int32_t index = ChangeTo("White");
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(index), kSource);
    MediaManager_RegisterCallback(kSource, &tile.sink);
    EXPECT_TRUE(tile.Shows(IsWhite));
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 0 " + kSource});
    MediaManager_UnregisterCallback(kSource, &tile.sink);
}

TEST(CameraChoice, AnnouncesTheFirstOneOfARoomThatBeganWithout) {
    const PluggedCameras cameras(kTwoCameras);
    SharingVisitor visitor;
    visitor.Enter("");
    Connections_RenegotiateOutboundPeerConnection(false, true, "");
    EXPECT_TRUE(visitor.Events().empty());
    const int32_t index = ChangeTo("Black");
    EXPECT_TRUE(visitor.GetsMore(kSource));
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(index), kSource);
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 0 " + kSource});
}

TEST(CameraProperties, ShapeWhatIsCaptured) {
    const PluggedCameras cameras(kTwoCameras);
    SharingVisitor visitor;
    visitor.Enter("test");
    ASSERT_TRUE(visitor.GetsMore(kSource));
    const auto hasSize = [](int width, int height) {
        return [=](const VideoFrameBuffer& frame) {
            return frame.GetWidth() == width && frame.GetHeight() == height;
        };
    };
    EXPECT_TRUE(visitor.WaitForFrame(kSource, hasSize(1280, 720)));
    WebRTC_SetLocalCameraProperties(640, 360, 10, 700'000);
    EXPECT_EQ(WebRTC_GetLocalCameraTargetBitrate(), 700'000U);
    ASSERT_TRUE(visitor.WaitForFrame(kSource, hasSize(640, 360)));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(visitor.GetsMore(kSource, 10));
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GT(elapsed.count(), 0.8) << "ten pictures take a second";
    Tile tile;
    ChangeTo("White");
    MediaManager_RegisterCallback(kSource, &tile.sink);
    EXPECT_TRUE(Eventually([&] { return tile.width == 640; })) << "cameras too";
    MediaManager_UnregisterCallback(kSource, &tile.sink);
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 0 " + kSource});
}

TEST(CameraProperties, OfNoValueAreTheEnginesOwn) {
    SharingVisitor visitor;
    visitor.Enter("test");
    const uint32_t own = WebRTC_GetLocalCameraTargetBitrate();
    EXPECT_GT(own, 0U);
    WebRTC_SetLocalCameraProperties(0, -5, 30, 0);
    EXPECT_EQ(WebRTC_GetLocalCameraTargetBitrate(), own);
    WebRTC_SetLocalCameraProperties(320, 0, 30, 1'000);
    EXPECT_EQ(WebRTC_GetLocalCameraTargetBitrate(), 1'000U);
    EXPECT_TRUE(visitor.WaitForFrame(kSource,
                                     [](const VideoFrameBuffer& frame) { return frame.GetWidth() == 1280; }));
}

TEST(DeviceStream, ShowsTheDevice) {
    const PluggedCameras cameras(kTwoCameras);
    SharingVisitor visitor;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, "White"), std::nullopt);
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::Device), "White");
    EXPECT_TRUE(visitor.WaitForFrame("device-0", [](const VideoFrameBuffer& frame) {
        const auto* const planar = dynamic_cast<const YUVFrameBuffer*>(&frame);
        return planar != nullptr && IsWhite(planar->GetDataY()[0]);
    }));
}

}  // namespace
}  // namespace Corvanta::Engine
