// What drawing costs a tick of the room.
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "drawing/DrawingCanvas.h"
#include "tests/fake_platform/AllocationCounter.h"
#include "tests/room/DrawingRoomTest.h"

namespace Corvanta::Room {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class DrawingCostTest : public DrawingRoomTest {
protected:
    struct Cost {
        std::vector<Call> calls;
        size_t textures = 0;
        size_t allocations = 0;
    };

    // Of a tick with 25 participants on the wall, when everything has been made.
    [[nodiscard]] Cost CostOfATick() {
        view->ReadRenderScalingSetting();
        AddCamera(kCameraColor);
        for (int participant = 0; participant < 25; ++participant) {
            AddRemote("participant " + std::to_string(participant), kOneColor);
        }
        view->SetActiveSpeaker("participant 3");
        for (int tick = 0; tick < 5; ++tick) view->Tick();
        return MeasureATick();
    }
    [[nodiscard]] Cost MeasureATick() {
        Cost cost;
        Calls().Clear();
        view->Tick();
        for (Call& call : Calls().OfThisThread()) {
            if (!call.name.starts_with("SDL_")) continue;
            // Where things lie in memory changes.
            std::erase_if(call.arguments, [](const std::string& text) { return text.starts_with("0x"); });
            cost.calls.push_back(call);
        }
        cost.textures = Sdl().LiveTextures();
        Calls().SetRecording(false);
        AllocationCounter::Start();
        for (int tick = 0; tick < 10; ++tick) view->Tick();
        cost.allocations = AllocationCounter::Stop();
        Calls().SetRecording(true);
        return cost;
    }
};

TEST_F(DrawingCostTest, ATickCostsNothingMoreWhereNobodyDraws) {
    OpenWithWall(1600, 900);
    const Cost withCanvases = CostOfATick();
    view.reset();
    view = std::make_shared<VideoRoomView>(0, RecordingHost());
    Drawing::DrawingCanvasManager::DestroyInstance();
    OpenWithWall(1600, 900);
    const Cost without = CostOfATick();
    ASSERT_EQ(TileOf("participant 3")->GetCanvas(), nullptr);
    EXPECT_GT(without.calls.size(), 25U);
    EXPECT_EQ(withCanvases.calls, without.calls);
    EXPECT_EQ(withCanvases.textures, without.textures);
    EXPECT_EQ(withCanvases.allocations, without.allocations);
}

// By the message that everybody sends when somebody joins.
TEST_F(DrawingCostTest, ParticipantsWithoutAMarkCostNothing) {
    OpenWithWall(1600, 900);
    const Cost before = CostOfATick();
    for (int stream = 0; stream < 25; ++stream) {
        for (int sender = 0; sender < 25; ++sender) {
            view->GetDrawings().OnDataChannelMessage(
                {"participant " + std::to_string(sender),
                 MarkMessage("participant " + std::to_string(stream), {})});
        }
    }
    view->Tick();
    const Cost after = MeasureATick();
    EXPECT_EQ(after.calls, before.calls);
    EXPECT_EQ(after.textures, before.textures);
    EXPECT_EQ(after.allocations, before.allocations);
}

TEST_F(DrawingCostTest, SteadyMarksAreCopiedAndNothingElse) {
    OpenFullRoom();
    view->Tick();
    const Cost without = MeasureATick();
    for (int mark = 0; mark < 50; ++mark) {
        Receive("two", "one", std::to_string(mark), {mark * 10, mark * 10, 50, 50}, kRed);
    }
    view->Tick();
    const Cost with = MeasureATick();
    // On the main video and on its thumbnail.
    EXPECT_EQ(with.calls.size(), without.calls.size() + 2);
    EXPECT_EQ(with.textures, without.textures + 1);
    EXPECT_EQ(with.allocations, without.allocations);
}

// A camera that is off: the main video and the thumbnail are of two shapes, and one canvas serves both.
TEST_F(DrawingCostTest, MarksOverAStreamWithoutAPictureAreDrawnOnce) {
    OpenWithWall();
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    view->SetActiveSpeaker("one");
    view->Tick();
    Receive("two", "one", "a", kLeftHalf, kRed);
    EXPECT_EQ(ColorAt(0.2, 0.5), kRed);
    Calls().Clear();
    for (int tick = 0; tick < 5; ++tick) view->Tick();
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
    EXPECT_EQ(ColorAt(0.2, 0.5), kRed);
    EXPECT_NE(ColorAt(0.8, 0.5), kRed);
}

}  // namespace
}  // namespace Corvanta::Room
