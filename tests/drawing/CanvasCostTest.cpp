// What a canvas costs: SDL calls, allocations and layers.
#include <gmock/gmock.h>

#include <chrono>
#include <string>

#include "tests/drawing/CanvasTest.h"
#include "tests/fake_platform/AllocationCounter.h"

namespace Corvanta::Drawing {
namespace {

using Testing::AllocationCounter;
using Testing::Call;
using Testing::Calls;
using ::testing::Each;
using ::testing::Field;
using ::testing::IsEmpty;
using Testing::kAll;
using Testing::kBlack;
using Testing::kRed;
using Testing::kScreen;
using Testing::kWholeCanvas;
using Testing::Sdl;
using ::testing::SizeIs;

constexpr SDL_FRect kDot{10, 10, 4, 4};

class CanvasCost : public Testing::SizedCanvasTest {
protected:
    // Marks with the numbers from first to last, of each of five participants.
    void AddNumbered(int first, int last) const {
        for (const char* const participant : {"a", "b", "c", "d", "e"}) {
            for (int number = first; number <= last; ++number) Add(participant, std::to_string(number), kDot);
        }
    }
    void DrawForASecond() {
        for (int drawing = 0; drawing < 61; ++drawing) CallsOfFrame();
    }
};

TEST_F(CanvasCost, OfASteadyFrameIsOneCopyForEachParticipantHoweverManyMarksThereAre) {
    AddNumbered(1, 1);
    Frame();
    const std::vector<Call> withOne = CallsOfFrame();
    EXPECT_THAT(withOne, SizeIs(5));
    EXPECT_THAT(withOne, Each(Field(&Call::name, "SDL_RenderCopy")));

    AddNumbered(2, 10000);
    Frame();
    EXPECT_EQ(CallsOfFrame(), withOne);
    EXPECT_EQ(CallsOfFrame(), withOne);
}

TEST_F(CanvasCost, OfASteadyFrameIsNoAllocation) {
    AddNumbered(1, 50);
    Frame();
    AllocationCounter::Start();
    canvas->Resize(Renderer(), 1280, 720);
    canvas->Render(Renderer(), kAll, kScreen);
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

TEST_F(CanvasCost, OfASizeThatItHasIsNoCall) {
    AddNumbered(1, 1);
    Frame();
    Calls().Clear();
    canvas->Resize(Renderer(), 1280, 720);
    EXPECT_THAT(Calls().All(), IsEmpty());
}

TEST_F(CanvasCost, OfANewMarkIsThatMarkAlone) {
    AddNumbered(1, 100);
    Frame();
    const auto counted = Add("c", "101", kDot);
    Calls().Clear();
    canvas->Render(Renderer(), kAll, kScreen);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 1U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 5U);
    EXPECT_EQ(Calls().Count("SDL_RenderClear"), 0U);
    EXPECT_EQ(Calls().Count("SDL_SetRenderTarget"), 2U);
}

TEST_F(CanvasCost, OfParticipantsWithoutAMarkIsNoLayer) {
    for (int participant = 0; participant < 25; ++participant) {
        canvas->ClearParticipant("participant " + std::to_string(participant));
    }
    EXPECT_THAT(CallsOfFrame(), IsEmpty());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    Add("participant 7", "1");
    Frame();
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
}

// What a driver gives is not always empty.
TEST_F(CanvasCost, OfALayerBeginsWithOneClear) {
    for (const char* const participant : {"a", "b"}) {
        Add(participant, "1");
        Calls().Clear();
        Frame();
        EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 1U);
        EXPECT_EQ(Calls().Count("SDL_RenderClear"), 1U);
    }
}

TEST_F(CanvasCost, OfALayerEndsWithItsLastMark) {
    AddNumbered(1, 1);
    Frame();
    canvas->ClearParticipant("c");
    EXPECT_THAT(CallsOfFrame(), SizeIs(4));
    DrawForASecond();
    EXPECT_EQ(Sdl().LiveTextures(), 4U);
    EXPECT_THAT(CallsOfFrame(), SizeIs(4));
    canvas->ClearAll();
    DrawForASecond();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_THAT(CallsOfFrame(), IsEmpty());
    Add("c", "1");
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
}

TEST_F(CanvasCost, OfTakingTheLastMarkBackAndBringingItAgainIsNoNewLayer) {
    const auto mark = Add("a", "1");
    Frame();
    for (int time = 0; time < 3; ++time) {
        canvas->ClearParticipant("a");
        for (int drawing = 0; drawing < 30; ++drawing) EXPECT_THAT(CallsOfFrame(), IsEmpty());
        EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
        canvas->AddShape("a", mark);
        Calls().Clear();
        EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
        EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
    }
}

TEST_F(CanvasCost, OfReplacingAllMarksIsNoNewLayer) {
    Add("a", "1");
    Frame();
    canvas->ClearParticipant("a");
    Add("a", "2");
    Calls().Clear();
    Frame();
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderClear"), 1U);
}

TEST_F(CanvasCost, OfAPreviewFrameIsWhatItsTextureNeeds) {
    Add("a", "1");
    canvas->SetPreview(Mark("p"));
    Frame();
    Calls().Clear();
    canvas->Render(Renderer(), kAll, kScreen);
    EXPECT_THAT(
        Calls().Names(),
        ::testing::ElementsAre("SDL_RenderCopy", "SDL_SetRenderTarget", "SDL_RenderSetViewport",
                               "SDL_SetRenderDrawColor", "SDL_RenderClear", "SDL_SetRenderDrawBlendMode",
                               "SDL_SetRenderDrawColor", "SDL_RenderFillRect", "SDL_SetRenderTarget",
                               "SDL_SetRenderDrawColor", "SDL_SetRenderDrawBlendMode", "SDL_RenderCopy"));
    AllocationCounter::Start();
    canvas->Render(Renderer(), kAll, kScreen);
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

// Each compared with each would take minutes.
TEST_F(CanvasCost, OfABurstOfMarksGrowsWithTheirNumberAlone) {
    const auto begin = std::chrono::steady_clock::now();
    for (int round = 0; round < 2; ++round) {
        for (int number = 0; number < 200000; ++number) Add("a", std::to_string(number), kDot);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

}  // namespace
}  // namespace Corvanta::Drawing
