// Media threads against the host's thread. What matters is what the sanitizers say.
#include <atomic>
#include <barrier>
#include <thread>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"
#include "ui/Clock.h"

namespace Corvanta::Testing {
namespace {

constexpr int kRounds = 200;
constexpr int kTicks = 300;

class ThreadsTest : public StartedTest {
protected:
    ThreadsTest() {
        // Long runs would fill the list.
        Calls().SetRecording(false);
        UI::SetClock(nullptr);
    }

    static void LiveOfARemoteStream(const std::string& id) {
        for (int round = 0; round < kRounds; ++round) {
            Fake().OfferRemoteSource(id);
            Fake().callbacks.videoFrameTracksAdded(id);
            for (int frame = 0; frame < 4; ++frame) {
                Fake().Deliver(id, MakeFrame({.width = 32 + 16 * (frame % 2), .height = 32}));
            }
            Fake().callbacks.connectionStatusUpdate(id, round % 2 == 0);
            SDLinterface_VideoRoomUpdateActiveSpeaker(id);
            if (round % 3 != 0) Fake().RemoveRemoteSource(id);
        }
    }

    static void LifeOfTheCamera() {
        for (int round = 0; round < kRounds; ++round) {
            Fake().OfferLocalSource(StreamType::Camera, "camera-source");
            for (int frame = 0; frame < 4; ++frame) Fake().Deliver("camera-source", MakeFrame());
            Fake().callbacks.connectionStatusUpdate("me", true);
            Fake().callbacks.localVideoFrameAdaptation();
            Fake().RemoveLocalSource("camera-source");
        }
    }

    static void Talk() {
        for (int round = 0; round < kRounds; ++round) {
            Fake().DeliverMessage("a", R"({"type":"video-metadata-message","message":{"sourceData":)"
                                       R"({"streamId":"a","frameRate":25,"sourceName":"x"}}})");
            Fake().callbacks.videoFilePlaybackStatusUpdate("a", round % 2 == 0);
            Fake().callbacks.participantJoined();
            (void)SDLinterface_ExportRemoteFrame("a");
            SDLinterface_ConfigureStream("a", true, true, false);
            SDLinterface_OnActiveStreams({"a"});
            SDLinterface_OnRecordingPlaybackStatus(round % 2 == 0 ? 1 : 102);
        }
    }

    // Runs what the host does while all of the media's threads are at work.
    template <typename HostsPart>
    static void WithMediaThreads(HostsPart&& hostsPart) {
        std::barrier start(5);
        std::vector<std::thread> threads;
        const auto run = [&](auto work) {
            threads.emplace_back([&start, work] {
                start.arrive_and_wait();
                work();
            });
        };
        run([] { LiveOfARemoteStream("a"); });
        run([] { LiveOfARemoteStream("b"); });
        run([] { LifeOfTheCamera(); });
        run([] { Talk(); });
        start.arrive_and_wait();
        hostsPart();
        for (std::thread& thread : threads) thread.join();
    }

    static void TickAndCommand(int ticks) {
        for (int tick = 0; tick < ticks; ++tick) {
            SDL_WPFVideoRoomCheckInputAndRender();
            SDLinterface_VideoRoomSetMicEnabled(tick % 2 == 0);
            SDLinterface_VideoRoomSetVideoEnabled(tick % 2 != 0);
            if (tick % 8 == 0) SDLinterface_VideoRoomResize(320 + tick, 200);
            if (tick % 8 == 4) SDLinterface_UpdateWindowScale(0, tick % 16 == 4 ? 1.5F : 1.0F);
        }
    }
};

TEST_F(ThreadsTest, TicksWhileStreamsComeAndGo) {
    ASSERT_EQ(Enter(), 1);
    WithMediaThreads([] { TickAndCommand(kTicks); });
    EXPECT_TRUE(HasView());
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(HasView());
}

TEST_F(ThreadsTest, EndsWhileStreamsComeAndGo) {
    ASSERT_EQ(Enter(), 1);
    WithMediaThreads([] {
        TickAndCommand(10);
        SDLinterface_GlobalQuit();
    });
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
}

TEST_F(ThreadsTest, EntersRoomAfterRoomWhileStreamsComeAndGo) {
    WithMediaThreads([] {
        for (int room = 0; room < 6; ++room) {
            EXPECT_EQ(Enter(), 1);
            TickAndCommand(8);
        }
    });
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
}

TEST_F(ThreadsTest, PlaysRecordingAfterRecordingWhileStreamsComeAndGo) {
    WithMediaThreads([] {
        for (int recording = 0; recording < 4; ++recording) {
            EXPECT_EQ(SDLinterface_RecordingViewInit(&windowOfTheHost, 320, 200, nullptr), 1);
            SDLinterface_ConnectToRecording(nullptr, nullptr, "t", 1000.0, [](int) {});
            TickAndCommand(8);
            SDLinterface_DisconnectFromRecording(2);
        }
        SDLinterface_GlobalQuit();
    });
    EXPECT_FALSE(HasView());
}

TEST_F(ThreadsTest, LivesOnAfterAnEndWhileStreamsComeAndGo) {
    WithMediaThreads([] {
        for (int life = 0; life < 3; ++life) {
            EXPECT_EQ(Enter(), 1);
            TickAndCommand(8);
            SDLinterface_GlobalQuit();
            SDLinterface_GlobalInit();
        }
    });
    EXPECT_FALSE(HasView());
}

}  // namespace
}  // namespace Corvanta::Testing
