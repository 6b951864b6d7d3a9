// What drawing costs: the steady frame with many marks, a stroke that grows, reading what others send, and an
// undo that draws everything again. Arguments: --rounds N, or --count-instructions POINTS, which only adds
// points to a stroke of that length inside CorvantaCountedTick, for callgrind.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Medians.h"
#include "bench/SdlReplay.h"
#include "drawing/BroadcastMessage.h"
#include "drawing/DrawingCanvas.h"
#include "drawing/DrawingSource.h"
#include "drawing/LinePath.h"
#include "drawing/Rectangle.h"
#include "tests/fake_platform/AllocationCounter.h"
#include "ui/Clock.h"

namespace Corvanta::Bench {
namespace {

using Testing::AllocationCounter;

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr SDL_Rect kWhole{0, 0, kWidth, kHeight};
constexpr int kDefaultRounds = 100;
constexpr int kPeople = 5;
constexpr int kManyMarks = 10'000;
constexpr int kShortStroke = 10;
constexpr int kLongStroke = 10'000;
constexpr int kCountedPoints = 1000;
constexpr int kReadShapes = 100;
constexpr int kUndoneStrokes = 1000;
constexpr int kPointsOfAStroke = 100;
constexpr int kStrokeExtent = 150;  // canvas units, 300 pixels of a layer
constexpr double kSteadyGoal = 1.1;
constexpr double kPointGoal = 1.2;
constexpr double kReadGoal = 1.5;
constexpr Nanoseconds kUndoGoal = 150e6;
constexpr int64_t kPointIntervalNs = 21'000'000;

int64_t gClockNs = 0;

// A picture in memory, as the software renderer draws it.
class Target final {
public:
    Target()
        : surface_(SDL_CreateRGBSurfaceWithFormat(0, kWidth, kHeight, 32, SDL_PIXELFORMAT_ARGB8888)),
          renderer_(SDL_CreateSoftwareRenderer(surface_)) {
        if (renderer_ == nullptr) throw std::runtime_error(SDL_GetError());
    }
    ~Target() {
        SDL_DestroyRenderer(renderer_);
        SDL_FreeSurface(surface_);
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    [[nodiscard]] SDL_Renderer* Renderer() const { return renderer_; }

private:
    SDL_Surface* surface_;
    SDL_Renderer* renderer_;
};

// A canvas over a picture of 1280x720, on its source.
class Drawing final {
public:
    explicit Drawing(SDL_Renderer* renderer)
        : renderer_(renderer), source_(std::make_shared<Corvanta::Drawing::DrawingSource>("stream")) {
        canvas_.SetFrameSize(kWidth, kHeight);
        source_->AttachCanvas(&canvas_);
    }
    ~Drawing() { canvas_.ReleaseResources(renderer_); }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    void Frame() {
        canvas_.Resize(renderer_, kWidth, kHeight);
        canvas_.Render(renderer_, kWhole, kWhole);
        SDL_RenderFlush(renderer_);
    }
    [[nodiscard]] Corvanta::Drawing::DrawingCanvas& Canvas() { return canvas_; }
    [[nodiscard]] Corvanta::Drawing::DrawingSource& Source() { return *source_; }

private:
    SDL_Renderer* renderer_;
    std::shared_ptr<Corvanta::Drawing::DrawingSource> source_;
    Corvanta::Drawing::DrawingCanvas canvas_;
};

std::shared_ptr<Corvanta::Drawing::Shape> Mark(int number) {
    auto mark = std::make_shared<Corvanta::Drawing::Rectangle>();
    // One over the other: SDL lays a full layer over the picture more slowly than an empty one.
    mark->x = kWidth / 2.0;
    mark->y = kHeight / 2.0;
    mark->width = 20;
    mark->height = 12;
    mark->strokeWidth = 2;
    mark->controlId = std::to_string(number);
    return mark;
}

std::shared_ptr<Corvanta::Drawing::LinePath> Stroke(std::mt19937& random, int points) {
    auto stroke = std::make_shared<Corvanta::Drawing::LinePath>();
    stroke->strokeWidth = 10;
    stroke->color = Corvanta::Drawing::Color(232, 92, 65, 255);
    std::uniform_int_distribution<int> step(-12, 12);
    const int left = static_cast<int>(random() % (kWidth - kStrokeExtent));
    const int top = static_cast<int>(random() % (kHeight - kStrokeExtent));
    int x = kStrokeExtent / 2;
    int y = kStrokeExtent / 2;
    for (int i = 0; i < points; ++i) {
        x = SDL_clamp(x + step(random), 0, kStrokeExtent);
        y = SDL_clamp(y + step(random), 0, kStrokeExtent);
        stroke->points.emplace_back(left + x, top + y);
    }
    return stroke;
}

void AddMarks(Drawing& drawing, int each) {
    for (int person = 0; person < kPeople; ++person) {
        const std::string id = "person " + std::to_string(person);
        for (int number = 0; number < each; ++number) drawing.Source().Add(id, Mark(number));
    }
    drawing.Frame();
}

void MeasureSteadyFrame(SDL_Renderer* renderer, int rounds) {
    Drawing few(renderer);
    Drawing many(renderer);
    AddMarks(few, 1);
    AddMarks(many, kManyMarks);
    size_t calls[2] = {};
    Drawing* const drawings[] = {&few, &many};
    for (int i = 0; i < 2; ++i) {
        SdlReplay replay;
        replay.Record();
        drawings[i]->Frame();
        replay.Stop();
        calls[i] = replay.GetCallCount();
    }
    AllocationCounter::Start();
    many.Frame();
    const size_t allocations = AllocationCounter::Stop();
    std::vector<Nanoseconds> manyTimes;
    std::vector<Nanoseconds> fewTimes;
    for (int round = 0; round < rounds; ++round) {
        manyTimes.push_back(TimeOf([&] { many.Frame(); }));
        fewTimes.push_back(TimeOf([&] { few.Frame(); }));
    }
    std::printf("Steady frame, %d people: %zu SDL calls with 1 mark each, %zu with %d, %zu allocations\n",
                kPeople, calls[0], calls[1], kManyMarks, allocations);
    if (calls[0] != calls[1] || allocations != 0) throw std::runtime_error("the steady frame grows");
    PrintRatio("Steady frame with 10,000 marks of each of 5 people over 1 of each", MedianOf(manyTimes),
               MedianOf(fewTimes), MedianRatioOf(manyTimes, fewTimes), kSteadyGoal);
}

// A stroke under the pointer, which gets one point before each frame.
class GrowingStroke final {
public:
    GrowingStroke(SDL_Renderer* renderer, int points) : drawing_(renderer), random_(7) {
        stroke_ = Stroke(random_, points);
        drawing_.Canvas().SetPreview(stroke_);
        drawing_.Frame();
    }
    void AddPoint() {
        gClockNs += kPointIntervalNs;
        stroke_->SetEnd(static_cast<int>(random_() % kWidth), static_cast<int>(random_() % kHeight));
    }
    void Frame() { drawing_.Frame(); }

private:
    Drawing drawing_;
    std::mt19937 random_;
    std::shared_ptr<Corvanta::Drawing::LinePath> stroke_;
};

void MeasureGrowingStroke(SDL_Renderer* renderer, int rounds) {
    GrowingStroke longer(renderer, kLongStroke);
    GrowingStroke shorter(renderer, kShortStroke);
    const auto timeOf = [](GrowingStroke& stroke) {
        stroke.AddPoint();
        return TimeOf([&] { stroke.Frame(); });
    };
    std::vector<Nanoseconds> longTimes;
    std::vector<Nanoseconds> shortTimes;
    for (int round = 0; round < rounds; ++round) {
        longTimes.push_back(timeOf(longer));
        shortTimes.push_back(timeOf(shorter));
    }
    PrintRatio("A frame with a point added to a stroke of 10,000 over one to a stroke of 10",
               MedianOf(longTimes), MedianOf(shortTimes), MedianRatioOf(longTimes, shortTimes), kPointGoal);
}

void MeasureReading(int rounds) {
    std::mt19937 random(11);
    std::vector<std::shared_ptr<Corvanta::Drawing::Shape>> shapes;
    for (int number = 0; number < kReadShapes; ++number) {
        if (number % 2 == 0) {
            shapes.push_back(Mark(number));
        } else {
            shapes.push_back(Stroke(random, kPointsOfAStroke));
            shapes.back()->controlId = std::to_string(number);
        }
    }
    const std::string text = Corvanta::Drawing::BroadcastMessage::Write(shapes, "stream", false);
    std::vector<Nanoseconds> ours;
    std::vector<Nanoseconds> bare;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(TimeOf([&] {
            auto message = Corvanta::Drawing::BroadcastMessage::Open(text);
            message->ReadBody();
            while (message->HasNext()) static_cast<void>(message->ReadNext());
        }));
        bare.push_back(TimeOf([&] { [[maybe_unused]] const auto parsed = nlohmann::json::parse(text); }));
    }
    PrintRatio("Reading 100 shapes over the bare parse of their text", MedianOf(ours), MedianOf(bare),
               MedianRatioOf(ours, bare), kReadGoal);
}

void MeasureUndo(SDL_Renderer* renderer) {
    constexpr int kRounds = 9;
    constexpr const char* kPerson = "person";
    std::mt19937 random(13);
    std::vector<std::shared_ptr<Corvanta::Drawing::Shape>> strokes;
    for (int number = 0; number < kUndoneStrokes; ++number) {
        strokes.push_back(Stroke(random, kPointsOfAStroke));
        strokes.back()->controlId = std::to_string(number);
    }
    Drawing drawing(renderer);
    std::vector<Nanoseconds> frames;
    std::vector<Nanoseconds> plain;
    for (int round = 0; round < kRounds; ++round) {
        drawing.Source().RemoveParticipant(kPerson);
        for (const auto& stroke : strokes) drawing.Source().Add(kPerson, stroke);
        frames.push_back(TimeOf([&] { drawing.Frame(); }));
        plain.push_back(TimeOf([&] { drawing.Frame(); }));
    }
    std::printf(
        "A frame that draws 1,000 strokes of 100 points again: %.1f ms, at most %.0f ms; next: %.1f ms\n",
        MedianOf(frames) / 1e6, kUndoGoal / 1e6, MedianOf(plain) / 1e6);
}

GrowingStroke* gCountedStroke = nullptr;

}  // namespace
}  // namespace Corvanta::Bench

extern "C" __attribute__((noinline)) void CorvantaCountedTick() {
    Corvanta::Bench::gCountedStroke->Frame();
}

namespace Corvanta::Bench {
namespace {

void CountInstructions(SDL_Renderer* renderer, int points) {
    GrowingStroke stroke(renderer, points);
    gCountedStroke = &stroke;
    for (int i = 0; i < kCountedPoints; ++i) {
        stroke.AddPoint();
        CorvantaCountedTick();
    }
    std::printf("TICKS %d\n", kCountedPoints);
}

void Run(const std::vector<std::string_view>& arguments) {
    const Target target;
    UI::SetClock([] { return gClockNs; });
    const bool hasValue = arguments.size() > 1;
    if (hasValue && arguments[0] == "--count-instructions") {
        CountInstructions(target.Renderer(), std::atoi(arguments[1].data()));
        return;
    }
    const int rounds =
        hasValue && arguments[0] == "--rounds" ? std::atoi(arguments[1].data()) : kDefaultRounds;
    MeasureSteadyFrame(target.Renderer(), rounds);
    MeasureGrowingStroke(target.Renderer(), rounds);
    MeasureReading(rounds);
    MeasureUndo(target.Renderer());
}

}  // namespace
}  // namespace Corvanta::Bench

int main(int argumentCount, char** arguments) {
    try {
        Corvanta::Bench::Run({arguments + 1, arguments + argumentCount});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_drawing: %s\n", error.what());
        return 1;
    }
    return 0;
}
