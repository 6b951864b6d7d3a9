// Strokes that are drawn together, as an undo does, have the pixels of strokes drawn one by one.
#include <random>

#include "drawing/ErasedLinePath.h"
#include "drawing/LinePath.h"
#include "drawing/StepStamps.h"
#include "tests/drawing/CanvasTest.h"
#include "tests/drawing/ShapeTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Identical;
using Testing::Picture;
using Testing::PixelReader;
using Testing::Sdl;

constexpr unsigned kSeed = 11;
constexpr const char* kPerson = "person";
// A layer's own size: no pixel is hidden by a scaling.
constexpr SDL_Rect kLayer{0, 0, 2560, 1440};

class StrokePileTest : public Testing::FakePlatformTest {
protected:
    StrokePileTest() {
        for (DrawingCanvas* const canvas : {&together_, &oneByOne_})
            canvas->Resize(reader_.Renderer(), 1280, 720);
    }
    ~StrokePileTest() override {
        for (DrawingCanvas* const canvas : {&together_, &oneByOne_})
            canvas->ReleaseResources(reader_.Renderer());
    }

    int Number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(numbers_); }

    // A scribble of that width in canvas units, by steps no longer than that.
    std::vector<LinePath::Point> Scribble(int longest) {
        std::vector<LinePath::Point> points;
        int x = Number(-40, 1320);
        int y = Number(-40, 760);
        for (int count = Number(1, 40); count > 0; --count) {
            points.emplace_back(x, y);
            x += Number(-longest, longest);
            y += Number(-longest, longest);
        }
        return points;
    }
    template <typename Path = LinePath>
    std::shared_ptr<LinePath> Stroke(const std::vector<LinePath::Point>& points, uint32_t width,
                                     uint8_t alpha) {
        auto stroke = std::make_shared<Path>();
        stroke->strokeWidth = width;
        stroke->points = points;
        if (alpha > 0) {
            const auto tone = [this] { return static_cast<uint8_t>(Number(0, 255)); };
            stroke->color = Color(tone(), tone(), tone(), alpha);
        }
        stroke->controlId = std::to_string(++strokes_);
        return stroke;
    }
    void Add(const std::shared_ptr<LinePath>& stroke) {
        together_.AddShape(kPerson, stroke);
        oneByOne_.AddShape(kPerson, stroke);
        oneByOne_.Render(reader_.Renderer(), {}, kLayer);
    }
    Picture Frame(DrawingCanvas& canvas) {
        reader_.Fill(0xFF204060);
        canvas.Render(reader_.Renderer(), {}, kLayer);
        return reader_.Read();
    }
    void ExpectSame() { ASSERT_TRUE(Identical(Frame(together_), Frame(oneByOne_))); }
    // The calls that paint in the frame that draws them.
    size_t Fills() {
        Testing::Calls().Clear();
        together_.Render(reader_.Renderer(), {}, kLayer);
        return Testing::Calls().Count("SDL_RenderFillRects");
    }

    DrawingCanvas together_;
    DrawingCanvas oneByOne_;

private:
    PixelReader reader_{kLayer.w, kLayer.h};
    std::mt19937 numbers_{kSeed};
    int strokes_ = 0;
};

TEST_F(StrokePileTest, HasEveryPixelOfStrokesDrawnOneByOne) {
    const uint32_t widths[] = {10, 1, 2, 3, 5, 8, 10, 13, 19, 20, 21, 40, 128, 300};
    for (int round = 0; round < 5; ++round) {
        for (int i = 0; i < 40; ++i) {
            const uint32_t width = widths[static_cast<size_t>(Number(0, std::size(widths) - 1))];
            Add(Stroke(Scribble(i % 3 == 0 ? 60 : 14), width, 255));
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame()) << "round " << round;
    }
}

TEST_F(StrokePileTest, KeepsTheOrderAmongTranslucentThinAndErasingOnes) {
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 40; ++i) {
            const int kind = Number(0, 9);
            if (kind == 0) {
                Add(Stroke<ErasedLinePath>(Scribble(60), 30, 0));
            } else if (kind == 1) {
                Add(Stroke(Scribble(60), 12, 130));
            } else if (kind == 2) {
                Add(Stroke(Scribble(60), 0, 255));
            } else {
                Add(Stroke(Scribble(60), 24, 255));
            }
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame()) << "round " << round;
    }
}

TEST_F(StrokePileTest, PaintsNothingThatIsCoveredInTheEnd) {
    for (int i = 0; i < 50; ++i)
        together_.AddShape(kPerson, Stroke({{300, 300}, {400, 320}, {500, 300}}, 8, 255));
    together_.AddShape(kPerson, Stroke({{200, 310}, {600, 310}, {600, 312}}, 100, 255));
    EXPECT_EQ(Fills(), 1U);
}

TEST_F(StrokePileTest, TakesAnEraserThatHasTravelledForOne) {
    Add(Stroke({{100, 100}, {400, 300}, {700, 100}}, 60, 255));
    const auto eraser = Stroke<ErasedLinePath>({{100, 200}, {700, 200}}, 60, 0);
    // On its way it is opaque black.
    (void)eraser->ToJson();
    Add(eraser);
    Add(Stroke({{300, 100}, {400, 150}}, 20, 255));
    ExpectSame();
}

// Each short step after each other one, wherever it can be in the target, is what the primitives draw there.
TEST(StepStampsTest, CoverWhatTheStepItselfCovers) {
    constexpr SDL_Rect kBox{960, 64, 256, 200};
    std::mt19937 numbers(kSeed);
    const auto step = [&numbers] { return static_cast<int>(numbers() % 17) - 8; };
    for (const int width : {2, 3, 10, 19, 20, 40, 41}) {
        StepStamps stamps(width);
        size_t found = 0;
        for (int i = 0; i < 20'000; ++i) {
            const SDL_Point before = i % 7 == 0 ? SDL_Point{0, 0} : SDL_Point{step(), step()};
            const SDL_Point along{step(), step()};
            if (along.x == 0 && along.y == 0) continue;
            const SDL_Point from{kBox.x + 40 + i % 170, kBox.y + 40 + i % 110};
            const MaskStamp* const stamp = stamps.Find(before, from, along);
            if (stamp == nullptr) continue;
            ++found;
            CoverageMask stamped(kBox);
            ASSERT_TRUE(stamped.AddStamp(from, *stamp));
            CoverageMask drawn(kBox);
            AddCurveStep(drawn, before, from, {from.x + along.x, from.y + along.y}, width);
            std::vector<SDL_Rect> left;
            drawn.AppendRectangles(left);
            std::vector<SDL_Rect> right;
            stamped.AppendRectangles(right);
            ASSERT_EQ(left.size(), right.size()) << width << ": " << before.x << "," << before.y;
            for (size_t n = 0; n < left.size(); ++n) ASSERT_TRUE(SDL_RectEquals(&left[n], &right[n]));
        }
        EXPECT_EQ(found > 5000, width <= 40) << width;
    }
}

TEST(StepStampsTest, AreNotPutWhereTheyWouldBeCut) {
    StepStamps stamps(20);
    const MaskStamp* const stamp = stamps.Find({1, 2}, {100, 100}, {3, -1});
    ASSERT_NE(stamp, nullptr);
    CoverageMask mask({90, 90, 60, 60});
    EXPECT_FALSE(mask.AddStamp({95, 120}, *stamp));
    EXPECT_FALSE(mask.AddStamp({120, 95}, *stamp));
    EXPECT_FALSE(mask.AddStamp({145, 120}, *stamp));
    EXPECT_FALSE(mask.AddStamp({120, 145}, *stamp));
    EXPECT_TRUE(mask.AddStamp({120, 120}, *stamp));
}

}  // namespace
}  // namespace Corvanta::Drawing
