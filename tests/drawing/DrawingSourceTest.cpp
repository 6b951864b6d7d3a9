#include "drawing/DrawingSource.h"

#include <gmock/gmock.h>

#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::kAll;
using Testing::kBlack;
using Testing::kBlue;
using Testing::kGreen;
using Testing::kLeftHalf;
using Testing::kRed;
using Testing::kRightHalf;
using Testing::kScreen;
using Testing::kWholeCanvas;
using Testing::Picture;
using Testing::Sdl;
using Testing::TestMark;

constexpr SDL_Rect kLeftOfScreen{0, 0, 319, 360};
constexpr SDL_Rect kRightOfScreen{321, 0, 319, 360};

class Source : public Testing::SizedCanvasTest {
protected:
    std::shared_ptr<TestMark> AddToSource(const std::string& participant, const std::string& id,
                                          const SDL_FRect& place = kWholeCanvas, uint32_t argb = kRed) const {
        auto mark = Mark(id, place, argb);
        source->Add(participant, mark);
        return mark;
    }
    [[nodiscard]] std::vector<std::string> IdsOf(const std::string& participant) const {
        std::vector<std::string> ids;
        for (const auto& shape : source->ShapesOf(participant)) ids.push_back(shape->controlId);
        return ids;
    }

    std::shared_ptr<DrawingSource> source = std::make_shared<DrawingSource>("stream");
};

TEST_F(Source, KnowsItsStream) {
    EXPECT_EQ(source->StreamId(), "stream");
}

TEST_F(Source, RecordsMarksWithoutACanvas) {
    const auto mark = AddToSource("a", "1");
    EXPECT_THAT(source->ShapesOf("a"), ElementsAre(mark));
}

TEST_F(Source, KeepsTheOrderOfEachParticipantsMarks) {
    for (const auto* const id : {"3", "1", "2"}) {
        AddToSource("a", id);
        AddToSource("b", std::string("b") + id);
    }
    EXPECT_THAT(IdsOf("a"), ElementsAre("3", "1", "2"));
    EXPECT_THAT(IdsOf("b"), ElementsAre("b3", "b1", "b2"));
    source->RemoveParticipant("a");
    EXPECT_THAT(IdsOf("a"), IsEmpty());
    EXPECT_THAT(IdsOf("b"), ElementsAre("b3", "b1", "b2"));
}

TEST_F(Source, HasNoMarksOfAStranger) {
    AddToSource("a", "1");
    EXPECT_THAT(source->ShapesOf("b"), IsEmpty());
    EXPECT_THAT(source->ShapesOf(""), IsEmpty());
    EXPECT_THAT(source->ShapesOf("A"), IsEmpty());
}

TEST_F(Source, KeepsAMarkThatComesTwice) {
    AddToSource("a", "1");
    AddToSource("a", "1");
    EXPECT_THAT(IdsOf("a"), ElementsAre("1", "1"));
}

TEST_F(Source, HoldsTheFirstAloneOfAMarkThatComesTwice) {
    const auto first = AddToSource("a", "1");
    const auto second = AddToSource("a", "1");
    EXPECT_THAT(source->ShapesOf("a"), ElementsAre(first, first));
    EXPECT_EQ(second.use_count(), 1);
    // Another participant's is another mark.
    const auto others = AddToSource("b", "1");
    EXPECT_THAT(source->ShapesOf("b"), ElementsAre(others));
}

TEST_F(Source, HoldsTheNextOneAfterAMarkHasGone) {
    for (const bool all : {false, true}) {
        const auto first = AddToSource("a", "1");
        if (all) {
            source->ClearAll();
        } else {
            source->RemoveParticipant("a");
        }
        EXPECT_EQ(first.use_count(), 1);
        const auto second = AddToSource("a", "1");
        EXPECT_THAT(source->ShapesOf("a"), ElementsAre(second));
        source->RemoveParticipant("a");
    }
}

TEST_F(Source, TakesSeveralMarksAtOnce) {
    source->AttachCanvas(canvas.get());
    const std::vector<std::shared_ptr<Shape>> marks{Mark("2", kLeftHalf, kGreen), nullptr,
                                                    Mark("1", kRightHalf, kBlue)};
    AddToSource("a", "0");
    source->AddAll("a", marks);
    EXPECT_THAT(IdsOf("a"), ElementsAre("0", "2", "1"));
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kGreen));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kBlue));
}

TEST_F(Source, PutsMarksInThePlaceOfAParticipantsAlone) {
    source->AttachCanvas(canvas.get());
    AddToSource("b", "1");
    AddToSource("a", "2", kLeftHalf, kGreen);
    AddToSource("b", "3");
    Frame();
    const std::vector<std::shared_ptr<Shape>> marks{Mark("3", kRightHalf, kBlue), Mark("4", {0, 0, 0, 0})};
    source->Replace("b", marks);
    EXPECT_THAT(IdsOf("b"), ElementsAre("3", "4"));
    EXPECT_THAT(IdsOf("a"), ElementsAre("2"));
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kGreen));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kBlue));
    source->Replace("b", {});
    EXPECT_THAT(IdsOf("b"), IsEmpty());
    EXPECT_TRUE(AreaIs(Frame(), kRightOfScreen, kBlack));
}

TEST_F(Source, RemovesTheMarksOfExactlyThatParticipant) {
    for (const auto* const participant : {"a", "A", "a ", "aa", ""}) AddToSource(participant, "1");
    AddToSource(std::string("a\0b", 3), "1");
    source->RemoveParticipant("a");
    EXPECT_THAT(IdsOf("a"), IsEmpty());
    for (const auto* const participant : {"A", "a ", "aa", ""}) {
        EXPECT_THAT(IdsOf(participant), ElementsAre("1")) << participant;
    }
    EXPECT_THAT(IdsOf(std::string("a\0b", 3)), ElementsAre("1"));
}

TEST_F(Source, TellsItsCanvasesOfAParticipantWithoutMarksToo) {
    source->AttachCanvas(canvas.get());
    canvas->AddShape("b", Mark("1"));
    ASSERT_TRUE(AreaIs(Frame(), kScreen, kRed));
    source->RemoveParticipant("b");
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
}

TEST_F(Source, GivesALateCanvasALayerForEachParticipantWithItsMarksInOrder) {
    std::vector<std::string> order;
    std::vector<std::shared_ptr<TestMark>> marks;
    for (const auto* const id : {"2", "1"}) {
        for (const auto* const participant : {"b", "c", "a"}) {
            marks.push_back(AddToSource(participant, std::string(participant) + id));
            marks.back()->log = &order;
        }
    }
    source->AttachCanvas(canvas.get());
    Frame();
    EXPECT_THAT(order, ElementsAre("a2", "a1", "b2", "b1", "c2", "c1"));
    EXPECT_EQ(Sdl().LiveTextures(), 3U);
    for (size_t index = 0; index < 3; ++index) EXPECT_EQ(marks[index]->target, marks[index + 3]->target);
}

TEST_F(Source, FeedsACanvasOnceThatIsAttachedTwice) {
    AddToSource("a", "1");
    source->AttachCanvas(canvas.get());
    source->AttachCanvas(canvas.get());
    const auto mark = AddToSource("a", "2");
    Frame();
    EXPECT_EQ(mark->renders, 1);
    EXPECT_EQ(canvas->Source(), source);
}

TEST_F(Source, DrawsAMarkOnceThatCameTwiceBeforeTheCanvas) {
    const auto first = AddToSource("a", "1");
    const auto second = AddToSource("a", "1");
    source->AttachCanvas(canvas.get());
    Frame();
    EXPECT_EQ(first->renders, 1);
    EXPECT_EQ(second->renders, 0);
}

TEST_F(Source, FeedsAllItsCanvases) {
    DrawingCanvas other;
    other.Resize(Renderer(), 1280, 720);
    source->AttachCanvas(canvas.get());
    source->AttachCanvas(&other);
    const auto mark = AddToSource("a", "1", kLeftHalf);
    AddToSource("b", "2", kRightHalf, kGreen);
    for (DrawingCanvas* const each : {canvas.get(), &other}) {
        reader.Fill(kBlack);
        each->Render(Renderer(), kAll, kScreen);
        EXPECT_TRUE(AreaIs(reader.Read(), kLeftOfScreen, kRed));
        EXPECT_TRUE(AreaIs(reader.Read(), kRightOfScreen, kGreen));
    }
    source->RemoveParticipant("a");
    for (DrawingCanvas* const each : {canvas.get(), &other}) {
        reader.Fill(kBlack);
        each->Render(Renderer(), kAll, kScreen);
        EXPECT_TRUE(AreaIs(reader.Read(), kLeftOfScreen, kBlack));
        EXPECT_TRUE(AreaIs(reader.Read(), kRightOfScreen, kGreen));
    }
    other.ReleaseResources(Renderer());
    EXPECT_EQ(mark->renders, 2);
}

TEST_F(Source, ClearsTheMarksOfAllAndKeepsTheHistory) {
    source->AttachCanvas(canvas.get());
    const auto mark = AddToSource("me", "1");
    AddToSource("a", "2");
    source->History().RecordCreate(mark);
    Frame();
    source->ClearAll();
    EXPECT_THAT(source->ShapesOf("me"), IsEmpty());
    EXPECT_THAT(source->ShapesOf("a"), IsEmpty());
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    EXPECT_TRUE(source->History().CanUndo());
    EXPECT_THAT(source->History().VisibleShapes(), ElementsAre(mark));
    // As a refill from the history does.
    source->RemoveParticipant("me");
    source->Add("me", mark);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
}

TEST_F(Source, FeedsNoCanvasThatWasDetached) {
    source->AttachCanvas(canvas.get());
    source->DetachCanvas(canvas.get());
    EXPECT_EQ(canvas->Source(), nullptr);
    const auto mark = AddToSource("a", "1");
    Frame();
    EXPECT_EQ(mark->renders, 0);
}

TEST_F(Source, ForgetsACanvasThatHasGone) {
    source->AttachCanvas(canvas.get());
    canvas.reset();
    AddToSource("a", "1");
    source->RemoveParticipant("a");
    source->ClearAll();
    EXPECT_EQ(source.use_count(), 1);
}

TEST_F(Source, LeavesItsCanvasesWithTheirMarksWhenItGoes) {
    source->AttachCanvas(canvas.get());
    AddToSource("a", "1");
    EXPECT_EQ(canvas->Source(), source);
    source.reset();
    EXPECT_EQ(canvas->Source(), nullptr);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
}

TEST_F(Source, TakesACanvasFromTheSourceThatItHad) {
    const auto first = std::make_shared<DrawingSource>("first");
    first->AttachCanvas(canvas.get());
    source->AttachCanvas(canvas.get());
    EXPECT_EQ(canvas->Source(), source);
    const auto stray = Mark("1", kWholeCanvas, kBlue);
    first->Add("a", stray);
    const auto mark = AddToSource("a", "2");
    Frame();
    EXPECT_EQ(stray->renders, 0);
    EXPECT_EQ(mark->renders, 1);
    // It would have nobody to tell.
    canvas.reset();
    first->Add("a", Mark("3"));
}

TEST_F(Source, KeepsTheOtherSourcesCanvas) {
    const auto other = std::make_shared<DrawingSource>("other");
    source->AttachCanvas(canvas.get());
    other->DetachCanvas(canvas.get());
    EXPECT_EQ(canvas->Source(), source);
}

TEST_F(Source, HasNoUseForNothing) {
    source->Add("a", nullptr);
    source->AttachCanvas(nullptr);
    source->DetachCanvas(nullptr);
    AddToSource("a", "1");
    EXPECT_THAT(IdsOf("a"), ElementsAre("1"));
}

}  // namespace
}  // namespace Corvanta::Drawing
