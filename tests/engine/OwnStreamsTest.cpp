// Files, addresses and devices that the local user shares, as the library meets them.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "engine/Engine.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/ClipFile.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/SharingVisitor.h"

namespace Corvanta::Engine {
namespace {

constexpr std::chrono::milliseconds kAWhile{200};
const std::string kFfv1 = "-c:v ffv1 -pix_fmt yuv420p";

std::string MakeFile(const SharingVisitor& visitor, const std::string& name = "clip.mkv") {
    return MakeClip(visitor.folder, name, kFfv1).string();
}

TEST(OwnStreams, CaptureFromTheMomentOnAtWhichTheyWereAccepted) {
    SharingVisitor visitor;
    // So that nothing of them is in the library yet.
    visitor.refusals = 3;
    visitor.Enter();
    EXPECT_FALSE(WebRTC_IsNativeStreamCapturing(StreamType::Device));
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::Device), "");
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    EXPECT_TRUE(WebRTC_IsNativeStreamCapturing(StreamType::Device));
    EXPECT_FALSE(WebRTC_IsNativeStreamCapturing(StreamType::NDI));
    EXPECT_FALSE(WebRTC_IsScreenShareCapturing());
    EXPECT_EQ(SharedStreams(), std::vector{StreamType::Device});
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::Device), "local-device");
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::Device), kTestPicture);
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::Camera), "Me");
    EXPECT_TRUE(visitor.GetsMore("device-0"));
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 3 device-0"});
}

TEST(OwnStreams, KnowTheirKindsByBothIds) {
    SharingVisitor visitor;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Elgato, kTestPicture), std::nullopt);
    ASSERT_EQ(ShareStream(StreamType::NDI, kTestPicture), std::nullopt);
    EXPECT_EQ(Connections_GetStreamType("local-elgato"), StreamType::Elgato);
    EXPECT_EQ(Connections_GetStreamType("elgato-0"), StreamType::Elgato);
    EXPECT_EQ(Connections_GetStreamType("local-ndi"), StreamType::NDI);
    EXPECT_EQ(Connections_GetStreamType("ndi-0"), StreamType::NDI);
    EXPECT_EQ(Connections_GetStreamType("local-camera"), StreamType::Camera);
    EXPECT_EQ(Connections_GetStreamType("nobody"), StreamType::Camera);
    EXPECT_EQ(SharedStreams(), (std::vector{StreamType::Elgato, StreamType::NDI}));
}

TEST(OwnStreams, AnswerFromInsideTheirOwnAnnouncement) {
    std::string id;
    std::string name;
    SharingVisitor visitor;
    visitor.onAdd = [&](StreamType type, const std::string&) {
        id = Connections_GetLocalUserStreamID(type);
        name = Connections_GetLocalDisplayName(type);
    };
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::DeckLink, kTestPicture), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("decklink-0"));
    EXPECT_EQ(id, "local-decklink");
    EXPECT_EQ(name, kTestPicture);
}

TEST(OwnStreams, PlayAFileInALoopWithItsColours) {
    SharingVisitor visitor;
    visitor.Enter();
    const std::string path = MakeFile(visitor);
    ASSERT_EQ(ShareStream(StreamType::File, path), std::nullopt);
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::File), "clip.mkv");
    // It lasts for 30 pictures.
    ASSERT_TRUE(visitor.GetsMore("file-0", 45));
    const auto frame = visitor.LastFrame("file-0");
    EXPECT_EQ(frame->GetType(), VideoFrameBufferType::YUV420);
    EXPECT_EQ(frame->GetWidth(), 320);
    EXPECT_EQ(frame->GetHeight(), 180);
    // Below 720 lines nothing is said, so it is the small matrix.
    EXPECT_EQ(frame->GetColorSpace().GetMatrix(), ColorMatrix::SMPTE170M);
    EXPECT_EQ(visitor.Events(), (std::vector<std::string>{"add 4 file-0", "plays local-file"}));
    StopSharing(StreamType::File);
    EXPECT_TRUE(visitor.WaitForEvent("remove file-0"));
    EXPECT_TRUE(visitor.WaitForEvent("ended local-file"));
    EXPECT_FALSE(WebRTC_IsNativeStreamCapturing(StreamType::File));
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::File), "");
}

TEST(OwnStreams, PlayAnAddress) {
    SharingVisitor visitor;
    visitor.Enter();
    const std::string uri = " file://" + MakeFile(visitor, "a b.mkv") + "\n";
    std::string encoded = uri;
    encoded.replace(encoded.find("a b"), 3, "a%20b");
    ASSERT_EQ(ShareStream(StreamType::URL, encoded), std::nullopt);
    EXPECT_TRUE(visitor.GetsMore("url-0"));
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::URL), "a b.mkv");
}

TEST(OwnStreams, DeliverNothingAfterAStop) {
    SharingVisitor visitor;
    std::atomic<bool> isStopped = false;
    std::atomic<int> late = 0;
    visitor.onFrame = [&] {
        if (isStopped) ++late;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        if (isStopped) ++late;
    };
    visitor.Enter();
    for (int round = 0; round < 5; ++round) {
        isStopped = false;
        ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
        const std::string id = "device-" + std::to_string(round);
        ASSERT_TRUE(visitor.GetsMore(id));
        StopSharing(StreamType::Device);
        isStopped = true;
        EXPECT_TRUE(SharedStreams().empty());
        EXPECT_TRUE(visitor.WaitForEvent("remove " + id));
    }
    EXPECT_EQ(late, 0);
}

TEST(OwnStreams, AreEndedByTheLibraryThroughTheirSourceId) {
    SharingVisitor visitor;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("device-0"));
    MediaManager_StopLocalVideoSource("device-1");
    EXPECT_TRUE(WebRTC_IsNativeStreamCapturing(StreamType::Device));
    MediaManager_StopLocalVideoSource("device-0");
    EXPECT_FALSE(WebRTC_IsNativeStreamCapturing(StreamType::Device));
    EXPECT_TRUE(visitor.WaitForEvent("remove device-0"));
}

TEST(OwnStreams, EndWithAllCaptures) {
    SharingVisitor visitor;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    ASSERT_EQ(ShareStream(StreamType::NDI, kTestPicture), std::nullopt);
    WebRTC_StopAllLocalVideoCaptures();
    EXPECT_TRUE(SharedStreams().empty());
}

TEST(OwnStreams, ReplaceTheOneOfTheirKind) {
    SharingVisitor visitor;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::File, MakeFile(visitor)), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("file-0"));
    ASSERT_EQ(ShareStream(StreamType::File, MakeFile(visitor, "other.mkv")), std::nullopt);
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::File), "other.mkv");
    EXPECT_TRUE(visitor.GetsMore("file-1"));
    EXPECT_EQ(visitor.Events(),
              (std::vector<std::string>{"add 4 file-0", "plays local-file", "ended local-file",
                                        "remove file-0", "add 4 file-1", "plays local-file"}));
    EXPECT_EQ(SharedStreams(), std::vector{StreamType::File});
    // A file that cannot be shared leaves the one that is alone.
    EXPECT_NE(ShareStream(StreamType::File, "/no/such.mkv"), std::nullopt);
    EXPECT_TRUE(visitor.GetsMore("file-1"));
}

TEST(OwnStreams, FeedRegisteredSinks) {
    std::atomic<int> frames = 0;
    FrameCallback sink = [&](const std::shared_ptr<VideoFrameBuffer>&) { ++frames; };
    SharingVisitor visitor;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    MediaManager_RegisterCallback("device-0", &sink);
    EXPECT_TRUE(Eventually([&] { return frames > 2; }));
    MediaManager_UnregisterCallback("device-0", &sink);
    const int before = frames;
    EXPECT_TRUE(visitor.GetsMore("device-0", 5));
    EXPECT_EQ(frames, before);
}

TEST(OwnStreams, CanBeStoppedBeforeAnybodyHasTakenThem) {
    SharingVisitor visitor;
    visitor.refusals = 1'000'000;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    ASSERT_TRUE(Eventually([&] { return visitor.refusals < 999'999; }));
    StopSharing(StreamType::Device);
    visitor.refusals = 0;
    std::this_thread::sleep_for(kAWhile);
    EXPECT_TRUE(visitor.Events().empty());
}

TEST(OwnStreams, CanBeStoppedFromInsideTheirAnnouncement) {
    SharingVisitor visitor;
    visitor.onAdd = [](StreamType, const std::string& sourceId) {
        MediaManager_StopLocalVideoSource(sourceId);
    };
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    EXPECT_TRUE(visitor.WaitForEvent("remove device-0"));
    EXPECT_EQ(visitor.Frames("device-0"), 0U);
    EXPECT_EQ(visitor.Events(), (std::vector<std::string>{"add 3 device-0", "remove device-0"}));
}

TEST(OwnStreams, EndWithTheirRoom) {
    SharingVisitor visitor;
    visitor.Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("device-0"));
    Connections_CloseConnection();
    const std::size_t before = visitor.Frames("device-0");
    EXPECT_FALSE(WebRTC_IsNativeStreamCapturing(StreamType::Device));
    EXPECT_TRUE(SharedStreams().empty());
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::Device), "");
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(visitor.Frames("device-0"), before);
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 3 device-0"});
}

TEST(OwnStreams, AreRefusedWithOneLineAndNothingStarts) {
    SharingVisitor visitor;
    visitor.Enter();
    const auto refuses = [](StreamType type, const std::string& source, const std::string& word) {
        const auto problem = ShareStream(type, source);
        ASSERT_TRUE(problem) << source;
        EXPECT_NE(problem->find(word), std::string::npos) << *problem;
        EXPECT_EQ(problem->find('\n'), std::string::npos) << *problem;
    };
    const std::string folder = visitor.folder.path.string();
    refuses(StreamType::File, "", "No file");
    refuses(StreamType::File, "/no/such.mkv", "/no/such.mkv does not exist");
    refuses(StreamType::File, folder, "folder");
    refuses(StreamType::URL, "", "No address");
    refuses(StreamType::URL, "not an address", "no address");
    refuses(StreamType::URL, "corvantatest://somewhere", "corvantatest://");
    refuses(StreamType::URL, "file:///no/such.mkv", "does not exist");
    refuses(StreamType::Device, "", "no device");
    refuses(StreamType::Device, "Nobody's camera", "Nobody's camera");
    refuses(StreamType::Elgato, "None", "None");
    refuses(StreamType::Camera, kTestPicture, "camera");
    refuses(static_cast<StreamType>(77), kTestPicture, "cannot be shared");
    EXPECT_TRUE(SharedStreams().empty());
    std::this_thread::sleep_for(kAWhile);
    EXPECT_TRUE(visitor.Events().empty());
    StopSharing(StreamType::File);
    Connections_CloseConnection();
    refuses(StreamType::Device, kTestPicture, "no room");
}

TEST(OwnStreams, GoWhenNothingOfThemCanBePlayed) {
    SharingVisitor visitor;
    visitor.Enter();
    const auto path = visitor.folder.File("noise.mkv");
    visitor.folder.Write("noise.mkv", "this is no film");
    ASSERT_EQ(ShareStream(StreamType::File, path.string()), std::nullopt);
    EXPECT_TRUE(Eventually([] { return SharedStreams().empty(); }));
}

TEST(OwnStreams, ComeAndGoOnManyThreads) {
    SharingVisitor visitor;
    visitor.Enter("test");
    const std::vector types{StreamType::Device, StreamType::NDI, StreamType::Elgato};
    {
        std::vector<std::jthread> threads;
        threads.reserve(3);
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([&, thread] {
                for (int round = 0; round < 12; ++round) {
                    const StreamType type = types[static_cast<std::size_t>(thread + round) % types.size()];
                    EXPECT_EQ(ShareStream(type, kTestPicture), std::nullopt);
                    static_cast<void>(WebRTC_IsNativeStreamCapturing(type));
                    static_cast<void>(Connections_GetLocalDisplayName(type));
                    if (round % 2 == 1) StopSharing(type);
                }
            });
        }
    }
    for (const StreamType type : types) StopSharing(type);
    EXPECT_TRUE(SharedStreams().empty());
    EXPECT_TRUE(visitor.GetsMore("camera-0"));
    // Who was announced has been taken back by then.
    ASSERT_EQ(ShareStream(StreamType::URL, "file://" + MakeFile(visitor)), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("url-0"));
    std::size_t added = 0;
    std::size_t removed = 0;
    for (const std::string& event : visitor.Events()) {
        if (event.starts_with("add ")) ++added;
        if (event.starts_with("remove ")) ++removed;
    }
    EXPECT_EQ(added, removed + 2) << "the camera and the address are still there";
}

}  // namespace
}  // namespace Corvanta::Engine
