// Marks that come on other threads while a tile draws them, changes its size and its renderer, and goes.
#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "drawing/DrawingSource.h"
#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Calls;
using Testing::kAll;
using Testing::TestMark;

constexpr SDL_Rect kTile{0, 0, 64, 36};
constexpr int kSenders = 4;

class CanvasThreads : public Testing::FakePlatformTest {
protected:
    CanvasThreads() {
        Testing::Sdl().Reset();
        Calls().SetRecording(false);
    }
    ~CanvasThreads() override { Calls().SetRecording(true); }

    // Four threads that draw, undo and leave until Stop.
    void Start() {
        for (int sender = 0; sender < kSenders; ++sender) {
            threads_.emplace_back([this, sender] { Send(sender); });
        }
    }
    // Without waiting the render thread would take the locks again before anybody else gets them.
    void WaitForMarks() const {
        for (const int before = sent_; sent_ < before + 30;) std::this_thread::yield();
    }
    void Stop() {
        isOver_ = true;
        for (std::thread& thread : threads_) thread.join();
        threads_.clear();
    }

    std::shared_ptr<DrawingSource> source = std::make_shared<DrawingSource>("stream");

private:
    void Send(int sender) {
        const std::string participant = "participant " + std::to_string(sender);
        for (int number = 0; !isOver_; ++number) {
            source->Add(participant, std::make_shared<TestMark>(std::to_string(number % 97),
                                                                SDL_FRect{0, 0, 40, 40}, 0xFF00FF00));
            if (number % 40 == 7) source->RemoveParticipant(participant);
            if (number % 400 == 399) source->ClearAll();
            if (number % 11 == 3) (void)source->ShapesOf("participant 0");
            ++sent_;
            // Leaves the machine to the others.
            if (number % 20 == 0) std::this_thread::yield();
        }
    }

    std::atomic<bool> isOver_ = false;
    std::atomic<int> sent_ = 0;
    std::vector<std::thread> threads_;
};

TEST_F(CanvasThreads, SendMarksWhileATileDrawsThem) {
    const std::array<Testing::PixelReader, 2> readers{Testing::PixelReader(64, 36),
                                                      Testing::PixelReader(64, 36)};
    DrawingCanvas canvas;
    source->AttachCanvas(&canvas);
    Start();
    // Does not wait for those who wait in the source.
    std::atomic<bool> isOver = false;
    std::thread clearing([&] {
        for (int number = 0; !isOver; ++number) {
            canvas.ClearParticipant("participant 1");
            if (number % 50 == 49) canvas.ClearAll();
            canvas.AddShape("participant 5", std::make_shared<TestMark>("1", SDL_FRect{}, 0));
            std::this_thread::yield();
        }
    });
    SDL_Renderer* renderer = readers[0].Renderer();
    for (int round = 0; round < 30; ++round) {
        WaitForMarks();
        canvas.Resize(renderer, round % 10 < 5 ? 720 : 405, 720);
        canvas.Render(renderer, kAll, kTile);
        if (round % 10 == 4) canvas.SetPreview(std::make_shared<TestMark>("p", SDL_FRect{}, 0));
        if (round % 10 == 8) canvas.SetPreview(nullptr);
        if (round % 15 == 14) {
            renderer = readers[static_cast<size_t>(round / 15 + 1) % 2].Renderer();
            canvas.MoveToRenderer(renderer);
        }
    }
    isOver = true;
    clearing.join();
    Stop();
    source->ClearAll();
    const auto last = std::make_shared<TestMark>("last", SDL_FRect{0, 0, 9999, 9999}, 0xFFFF0000);
    source->Add("z", last);
    canvas.Render(renderer, kAll, kTile);
    EXPECT_EQ(last->renders, 1);
    EXPECT_EQ(Testing::Sdl().LiveTextures(), 1U);
    canvas.ReleaseResources(renderer);
    EXPECT_EQ(Testing::Sdl().LiveTextures(), 0U);
}

TEST_F(CanvasThreads, SendMarksWhileTilesComeAndGo) {
    const Testing::PixelReader reader(64, 36);
    Start();
    for (int round = 0; round < 12; ++round) {
        WaitForMarks();
        DrawingCanvas canvas;
        canvas.Resize(reader.Renderer(), 405, 720);
        source->AttachCanvas(&canvas);
        canvas.Render(reader.Renderer(), kAll, kTile);
        canvas.ReleaseResources(reader.Renderer());
    }
    Stop();
    EXPECT_EQ(Testing::Sdl().LiveTextures(), 0U);
    EXPECT_EQ(source.use_count(), 1);
}

TEST_F(CanvasThreads, ReplaceMarksWithoutAFrameInBetween) {
    Testing::PixelReader reader(64, 36);
    Testing::Sdl().LimitTextureSides(64);
    DrawingCanvas canvas;
    canvas.Resize(reader.Renderer(), 1280, 720);
    source->AttachCanvas(&canvas);
    const auto replace = [this](uint32_t argb) {
        std::vector<std::shared_ptr<Shape>> marks;
        for (int number = 0; number < 20; ++number) {
            const float x = number < 10 ? 0 : 640;
            marks.push_back(
                std::make_shared<TestMark>(std::to_string(number), SDL_FRect{x, 0, 640, 720}, argb));
        }
        source->Replace("a", marks);
    };
    replace(Testing::kRed);
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        for (int number = 0; !isOver; ++number) {
            replace(number % 2 == 0 ? Testing::kGreen : Testing::kRed);
            std::this_thread::yield();
        }
    });
    for (int round = 0; round < 500; ++round) {
        reader.Fill(Testing::kBlack);
        canvas.Render(reader.Renderer(), kAll, kTile);
        const Testing::Picture picture = reader.Read();
        const uint32_t left = picture.At(10, 18);
        EXPECT_TRUE(left == Testing::kRed || left == Testing::kGreen) << std::hex << left;
        EXPECT_EQ(picture.At(50, 18), left);
        EXPECT_EQ(source->ShapesOf("a").size(), 20U);
    }
    isOver = true;
    other.join();
    canvas.ReleaseResources(reader.Renderer());
}

TEST_F(CanvasThreads, AttachOneCanvasToSeveralSources) {
    for (int round = 0; round < 200; ++round) {
        auto canvas = std::make_unique<DrawingCanvas>();
        std::vector<std::shared_ptr<DrawingSource>> sources;
        for (int index = 0; index < kSenders; ++index) {
            sources.push_back(std::make_shared<DrawingSource>(std::to_string(index)));
        }
        std::vector<std::thread> threads;
        for (const auto& each : sources) {
            threads.emplace_back([&] { each->AttachCanvas(canvas.get()); });
        }
        for (std::thread& thread : threads) thread.join();
        ASSERT_NE(canvas->Source(), nullptr);
        // A source that still had it would feed a canvas that has gone.
        canvas.reset();
        for (const auto& each : sources) each->Add("a", std::make_shared<TestMark>("1", SDL_FRect{}, 0));
    }
}

TEST_F(CanvasThreads, LetASourceGoWhileItsCanvasGoes) {
    for (int round = 0; round < 300; ++round) {
        auto canvas = std::make_unique<DrawingCanvas>();
        auto mine = std::make_shared<DrawingSource>("stream");
        mine->AttachCanvas(canvas.get());
        std::thread other([&] {
            mine->Add("a", std::make_shared<TestMark>("1", SDL_FRect{}, 0));
            mine.reset();
        });
        canvas.reset();
        other.join();
    }
}

}  // namespace
}  // namespace Corvanta::Drawing
