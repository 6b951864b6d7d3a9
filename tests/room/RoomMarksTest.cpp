// Marks in a room that changes under them: whose they are, and where they stay when streams come and go and
// windows get another size.
#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "drawing/DrawingCanvas.h"
#include "tests/room/DrawingRoomTest.h"

namespace Corvanta::Room {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// Marks of others

TEST_F(DrawingRoomTest, AMarkIsAtOneFractionOfTheMainVideoAndOfItsThumbnail) {
    OpenFullRoom();
    // The lower right quarter, so that the thumbnail's name plate does not matter to the rest.
    Receive("two", "one", "a", {640, 240, 320, 240}, kRed);
    const Picture picture = TickAndRead();
    const SDL_Rect& thumbnail = TileOf("one")->displayRect;
    const SDL_Rect video = view->GetMainVideoRect();
    // A thumbnail shows the middle of a picture that is not as wide as itself.
    const SDL_Rect shown = TileOf("one")->sourceRect;
    const auto inThumbnail = [&](double x, double y) {
        return picture.At(thumbnail.x + static_cast<int>((x * 64 - shown.x) / shown.w * thumbnail.w),
                          thumbnail.y + static_cast<int>((y * 48 - shown.y) / shown.h * thumbnail.h));
    };
    const auto inVideo = [&](double x, double y) {
        return picture.At(video.x + static_cast<int>(video.w * x), video.y + static_cast<int>(video.h * y));
    };
    for (const auto& [x, y] : {std::pair{0.53, 0.29}, {0.72, 0.29}, {0.53, 0.46}, {0.72, 0.46}}) {
        EXPECT_EQ(inVideo(x, y), kRed) << x << ' ' << y;
        EXPECT_EQ(inThumbnail(x, y), kRed) << x << ' ' << y;
    }
    for (const auto& [x, y] : {std::pair{0.47, 0.35}, {0.78, 0.35}, {0.6, 0.53}}) {
        EXPECT_EQ(inVideo(x, y), kOneColor) << x << ' ' << y;
        EXPECT_NE(inThumbnail(x, y), kRed) << x << ' ' << y;
    }
}

TEST_F(DrawingRoomTest, MarksLieOverEachOtherByTheirMakersNames) {
    OpenWithCamera();
    Receive("two", "me", "b", kWholeCanvas, kGreen);
    Receive("one", "me", "a", kLeftHalf, kRed);
    EXPECT_EQ(ColorAt(0.25, 0.5), kGreen);
    view->GetDrawings().OnDataChannelMessage({"two", MarkMessage("me", {})});
    EXPECT_EQ(ColorAt(0.25, 0.5), kRed);
    EXPECT_EQ(ColorAt(0.75, 0.5), kCameraColor);
}

TEST_F(DrawingRoomTest, TheMarksOfAStreamThatGoesGoFromAllOthers) {
    OpenFullRoom();
    Receive("two", "one", "a", kLeftHalf, kRed);
    Receive("two", "me", "b", kLeftHalf, kRed);
    Receive("one", "one", "c", kRightHalf, kGreen);
    ASSERT_EQ(ColorAt(0.25, 0.5), kRed);
    view->RemoveRemoteVideoSource("two");
    EXPECT_EQ(ColorAt(0.25, 0.5), kOneColor);
    EXPECT_EQ(ColorAt(0.75, 0.5), kGreen);
    EXPECT_THAT(MarksOn("me", "two"), IsEmpty());
    view->SetActiveSpeaker("nobody");
    EXPECT_EQ(ColorAt(0.25, 0.5), kCameraColor);
}

TEST_F(DrawingRoomTest, TheOwnMarksGoWithTheOwnCamera) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    DrawSomething();
    ASSERT_EQ(ColorAt(0.5, 0.5), kWhite);
    view->RemoveLocalVideoSource("camera");
    EXPECT_EQ(ColorAt(0.5, 0.5), kOneColor);
}

TEST_F(DrawingRoomTest, AMarkWaitsForItsTile) {
    Open();
    Receive("one", "later", "a", kLeftHalf, kRed);
    view->Tick();
    AddRemote("later", kOneColor);
    view->SetActiveSpeaker("later");
    EXPECT_EQ(ColorAt(0.25, 0.5), kRed);
    EXPECT_EQ(ColorAt(0.75, 0.5), kOneColor);
}

TEST_F(DrawingRoomTest, AMarkOnAStreamThatHasGoneWaitsForItsReturn) {
    Open();
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    view->Tick();
    Receive("two", "one", "before", kLeftHalf, kRed);
    view->Tick();
    view->RemoveRemoteVideoSource("one");
    // The tile is on its way out, and may not have been drawn since.
    Receive("two", "one", "after", kRightHalf, kGreen);
    view->Tick();
    Receive("two", "one", "later", {640, 0, 640, 480}, kRed);
    view->Tick();
    AddRemote("one", kOneColor);
    EXPECT_EQ(ColorAt(0.25, 0.5), kOneColor);
    EXPECT_EQ(ColorAt(0.75, 0.25), kRed);
    EXPECT_EQ(ColorAt(0.75, 0.75), kGreen);
}

TEST_F(DrawingRoomTest, AGestureThatLosesItsStreamEndsWithoutHarm) {
    Open();
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    Choose(DrawToolRectangle);
    view->Tick();
    Calls().Clear();
    PushMotion(At(0.25, 0.25));
    PushDown();
    PushMotion(At(0.75, 0.75));
    view->Tick();
    view->RemoveRemoteVideoSource("one");
    view->Tick();
    PushMotion({300, 200});
    PushUp();
    view->Tick();
    EXPECT_THAT(Sent(), IsEmpty());
    AddRemote("one", kOneColor);
    EXPECT_EQ(ColorAt(0.5, 0.5), kOneColor);
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(DrawingRoomTest, TenThousandMessagesComeWhileItTicks) {
    constexpr int kMessages = 10'000;
    Open();
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    view->Tick();
    Calls().SetRecording(false);
    std::atomic<bool> done = false;
    std::thread channel([&] {
        for (int message = 0; message < kMessages; ++message) {
            const std::string id = "mark " + std::to_string(message);
            const SDL_Rect place{message % 128 * 10, message / 128 * 10, 10, 10};
            Receive("two", "one", id, place, kRed);
        }
        done.store(true);
    });
    while (!done.load()) view->Tick();
    channel.join();
    EXPECT_THAT(MarksOn("one", "two"), SizeIs(kMessages));
    EXPECT_EQ(ColorAt(0.2, 0.4), kRed);
    EXPECT_EQ(ColorAt(0.7, 0.75), kRed);
    EXPECT_EQ(ColorAt(0.7, 0.9), kOneColor);
    Calls().SetRecording(true);
}

// What the room does to its windows

TEST_F(DrawingRoomTest, MarksStayThroughResizesOfTheWindow) {
    OpenToDraw();
    DrawSomething();
    Receive("one", "me", "a", {0, 0, 160, 160}, kRed);
    for (const SDL_Point size : {SDL_Point{1000, 300}, {200, 700}, {80, 200}, {640, 480}}) {
        view->Resize(size.x, size.y);
        EXPECT_EQ(ColorAt(0.5, 0.5), kWhite) << size.x;
        EXPECT_EQ(ColorAt(0.9, 0.5), kCameraColor) << size.x;
        EXPECT_EQ(ColorAt(0.06, 0.08), kRed) << size.x;
    }
}

TEST_F(DrawingRoomTest, TheHandFollowsTheVideoThroughAResize) {
    OpenToDraw();
    view->Resize(1000, 400);
    view->Tick();
    Calls().Clear();
    DrawSomething();
    ASSERT_THAT(Sent(), SizeIs(1));
    const nlohmann::json data = Sent()[0]["message"]["shapes"][0]["data"];
    EXPECT_NEAR(data["x"].get<double>(), 320, 5);
    EXPECT_NEAR(data["width"].get<double>(), 640, 8);
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
}

TEST_F(DrawingRoomTest, MarksAreOnTheMainVideoAndOnTheWallThatWasDetached) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    Receive("two", "one", "a", kLeftHalf, kRed);
    ASSERT_EQ(ColorAt(0.25, 0.9), kRed);
    int wallWindow = 0;
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWindowWidth, kWallWindowHeight), 1);
    view->Tick();
    view->TickDetachedView();
    // The main video is a second tile of the stream, which has no picture of its own yet.
    ASSERT_NE(TileOf("one")->GetCanvas(), nullptr);
    EXPECT_EQ(ColorAt(0.25, 0.5), kRed);
    EXPECT_NE(ColorAt(0.75, 0.5), kRed);
    Calls().Clear();
    DrawSomething();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["streamId"], "one");
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);

    Picture wall;
    Calls().OnCall("SDL_RenderPresent",
                   [&](const Call&) { wall = ReadPicture(view->GetDetachedView()->GetRenderer()); });
    view->TickDetachedView();
    Calls().OnCall("SDL_RenderPresent", {});
    const SDL_Rect& tile = TileOf("one")->displayRect;
    EXPECT_EQ(wall.At(tile.x + tile.w / 8, tile.y + tile.h / 2), kRed);
    EXPECT_EQ(wall.At(tile.x + tile.w * 5 / 8, tile.y + tile.h * 5 / 8), kWhite);

    view->LeaveDetachedLayout();
    EXPECT_EQ(ColorAt(0.25, 0.9), kRed);
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);
    view->GetDrawings().UndoCurrentCanvas();
    EXPECT_NE(ColorAt(0.6, 0.6), kWhite);
    EXPECT_TRUE(Fake().LogsOf(4).empty());
}

TEST_F(DrawingRoomTest, AGestureGoesOnWhileTheWallIsDetached) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    Calls().Clear();
    PushMotion(At(0.25, 0.25));
    PushDown();
    view->Tick();
    int wallWindow = 0;
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWindowWidth, kWallWindowHeight), 1);
    view->Tick();
    view->TickDetachedView();
    PushMotion(At(0.75, 0.75));
    view->Tick();
    PushUp();
    view->Tick();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["streamId"], "one");
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);
}

TEST_F(DrawingRoomTest, NoTextureIsLeftWhenTheRoomEnds) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    DrawSomething();
    PushMotion(At(0.1, 0.1));
    PushDown();
    PushMotion(At(0.2, 0.2));
    view->Tick();
    view->Shutdown();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_THAT(Fake().LogsOf(4), IsEmpty());
    // The hand and the network may be late.
    Receive("one", "one", "late", kWholeCanvas, kRed);
    view->GetDrawings().UndoCurrentCanvas();
    view->GetDrawings().PublishHistoryState();
    view->GetDrawings().PublishLocalDrawings();
}

TEST_F(DrawingRoomTest, ALaterRoomKnowsNothingOfTheDrawingsOfThisOne) {
    OpenWithCamera();
    Receive("one", "me", "a", kWholeCanvas, kRed);
    ASSERT_EQ(ColorAt(0.5, 0.5), kRed);
    view->Shutdown();
    view = std::make_shared<VideoRoomView>(0, RecordingHost());
    OpenWithCamera();
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
}

}  // namespace
}  // namespace Corvanta::Room
