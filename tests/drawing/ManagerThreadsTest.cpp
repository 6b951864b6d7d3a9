// Messages and newcomers while the local user draws.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "drawing/BroadcastMessage.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/Rectangle.h"
#include "tests/drawing/LocalUser.h"
#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/PixelReader.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Calls;
using Testing::PixelReader;

std::string MarksOf(const std::string& sender, int number) {
    std::vector<std::shared_ptr<Shape>> shapes;
    auto rectangle = std::make_shared<Rectangle>();
    rectangle->controlId = sender;
    rectangle->controlId += std::to_string(number);
    rectangle->SetStart(10, 10);
    rectangle->SetEnd(40, 40);
    shapes.push_back(std::move(rectangle));
    auto eraser = std::make_shared<ErasedLinePath>();
    eraser->controlId = sender;
    eraser->controlId += std::to_string(-number);
    eraser->strokeWidth = 10;
    eraser->SetStart(20, 20);
    shapes.push_back(std::move(eraser));
    return BroadcastMessage::Write(shapes, "stream", number % 16 == 0);
}

class ManagerThreads : public Testing::LocalUserTest {
protected:
    ManagerThreads() { Calls().SetRecording(false); }
    ~ManagerThreads() override { canvas.ReleaseResources(reader.Renderer()); }

    void Render() { canvas.Render(reader.Renderer(), {0, 0, 0, 0}, {0, 0, 64, 36}); }
    void DrawOne(int number) {
        Choose(number % 3 == 0 ? DrawToolEraser : DrawToolPencil);
        Drag({100, 100}, {200 + number, 200});
    }

    PixelReader reader{64, 36};
};

TEST_F(ManagerThreads, LeaveEverybodysMarksInTheirOrder) {
    constexpr int kRounds = 60;
    std::atomic<bool> ended{false};
    std::vector<std::thread> threads;
    for (const std::string sender : {"a", "b", "z"}) {
        threads.emplace_back([this, sender] {
            for (int i = 0; i <= kRounds * 4; ++i) manager.OnDataChannelMessage({sender, MarksOf(sender, i)});
        });
    }
    threads.emplace_back([&] {
        while (!ended.load()) manager.PublishLocalDrawings();
    });
    threads.emplace_back([&] {
        while (!ended.load()) {
            EXPECT_NE(manager.GetOrCreateSource("leaver"), nullptr);
            manager.RemoveStream("leaver");
        }
    });
    for (int i = 0; i < kRounds; ++i) {
        DrawOne(i);
        Render();
        if (i % 3 == 0) manager.UndoCurrentCanvas();
        if (i % 6 == 0) manager.RedoCurrentCanvas();
        if (i % 20 == 19) manager.ClearCurrentCanvas();
        Render();
    }
    ended = true;
    for (std::thread& thread : threads) thread.join();
    Render();
    EXPECT_EQ(OwnShapes(), source->History().VisibleShapes());
    for (const std::string sender : {"a", "b", "z"}) {
        // The last message took the place of all before it.
        EXPECT_THAT(IdsOf(source->ShapesOf(sender)), ::testing::ElementsAre(sender + "240", sender + "-240"));
    }
}

TEST_F(ManagerThreads, MayMeetTheManagersEnd) {
    DrawingCanvasManager::SetView(&surface);
    std::atomic<int> arrived{0};
    std::thread media([&] {
        for (int i = 0; i < 2000; ++i) {
            if (const auto drawings = DrawingCanvasManager::Instance()) {
                drawings->OnDataChannelMessage({"a", MarksOf("a", i)});
                drawings->PublishLocalDrawings();
                ++arrived;
            }
        }
    });
    while (arrived.load() < 100) std::this_thread::yield();
    for (int i = 0; i < 50; ++i) {
        DrawingCanvasManager::SetView(&surface)->AttachCanvas("stream", &canvas);
        Render();
    }
    DrawingCanvasManager::DestroyInstance();
    media.join();
    EXPECT_EQ(canvas.Source(), nullptr);
}

}  // namespace
}  // namespace Corvanta::Drawing
