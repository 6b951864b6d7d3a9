// The tick is on the host's render path.
#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"
#include "tests/ui/WorkingFolder.h"

namespace Corvanta::Testing {
namespace {

// As long as those that the room's service gives.
const std::string kLongId = "0f8fad5b-d9cb-469f-a165-70867728950e";

class TickAllocationTest : public StartedTest {
protected:
    TickAllocationTest() {
        const std::filesystem::path font = CORVANTA_TEST_FONT;
        // What is missing is looked for in every drawing.
        std::ifstream names(font.parent_path().parent_path() / "icons" / "names.txt");
        std::string line;
        while (std::getline(names, line)) {
            if (line.empty() || line[0] == '#') continue;
            std::string name = "icons/";
            name += line.substr(0, line.find(' '));
            folder_.AddPicture(name + ".png", 4, 4, 0xFF0000FF);
        }
        for (const char* name : {"FKGrotesk-Regular", "FKGrotesk-Bolder", "FKGroteskMono-Regular"}) {
            folder_.AddFile(std::string("fonts/") + name + ".ttf", font);
        }
        // Wide enough for the whole bar, whose short form has no menus.
        SDLinterface_SetRoomWindow(&windowOfTheHost, 2400, 800);
        EXPECT_EQ(Enter(), 1);
        Calls().Clear();
        Calls().SetRecording(false);
        // A raster of a text becomes a texture in the same drawing.
        for (const char* name : {"SDL_CreateTexture", "SDL_CreateTextureFromSurface", "IMG_LoadTexture"}) {
            Calls().OnCall(name, [](const Call&) { ++texturesMade; });
        }
    }
    ~TickAllocationTest() override { Calls().Reset(); }

    static size_t AllocationsOf(int ticks, int64_t milliseconds) {
        texturesMade.store(0);
        AllocationCounter::Start();
        for (int tick = 0; tick < ticks; ++tick) {
            TurnedClock::AdvanceMs(milliseconds);
            SDL_WPFVideoRoomCheckInputAndRender();
        }
        return AllocationCounter::Stop();
    }
    // Somebody with a picture speaks, which the room hears from the media engine.
    static void LetSomebodySpeak() {
        Fake().Set([](FakeResults& results) { results.activeSpeaker = kLongId; });
        ASSERT_NE(Fake().OfferRemoteSource(kLongId), nullptr);
        ASSERT_EQ(Fake().Deliver(kLongId, MakeFrame()), 1U);
        (void)AllocationsOf(3, 1001);
        (void)AllocationsOf(10, 1);
    }
    [[nodiscard]] static Room::RoomToolbar& Toolbar() { return Interface::CurrentView()->GetToolbar(); }

    static inline std::atomic<size_t> texturesMade{0};

private:
    WorkingFolder folder_;
};

TEST_F(TickAllocationTest, AllocatesNothingInAnEmptyRoom) {
    (void)AllocationsOf(2, 0);
    EXPECT_EQ(AllocationsOf(50, 16), 0U);
    EXPECT_EQ(texturesMade.load(), 0U);
}

TEST_F(TickAllocationTest, AllocatesNothingWithAMainVideo) {
    Fake().OfferRemoteSource("a");
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    (void)AllocationsOf(2, 0);
    EXPECT_EQ(AllocationsOf(50, 16), 0U);
}

TEST_F(TickAllocationTest, AllocatesNothingWithAnIdOfUsualLengthAndTheBar) {
    LetSomebodySpeak();
    EXPECT_EQ(AllocationsOf(50, 16), 0U);
    EXPECT_EQ(texturesMade.load(), 0U);
    EXPECT_TRUE(Toolbar().GetButtonBar()->visible);
    EXPECT_FALSE(Toolbar().GetButtonBar()->IsCompact());
    EXPECT_EQ(Interface::CurrentView()->GetThumbnails().GetTileCount(), 1);
}

TEST_F(TickAllocationTest, AllocatesNothingWhileTheLayoutMenuIsOpen) {
    LetSomebodySpeak();
    const UI::Menu& menu = *Toolbar().GetLayoutMenu();
    menu.GetAnchorElement()->OnClick();
    texturesMade.store(0);
    (void)AllocationsOf(1, 16);
    EXPECT_GT(texturesMade.load(), 0U) << "its texts come with its first drawing";
    (void)AllocationsOf(20, 16);
    EXPECT_EQ(AllocationsOf(30, 16), 0U);
    EXPECT_EQ(texturesMade.load(), 0U);
    EXPECT_TRUE(menu.visible);
    EXPECT_TRUE(Toolbar().GetButtonBar()->visible);
}

TEST_F(TickAllocationTest, AllocatesAtMostTheSpeakersIdAtAPoll) {
    Fake().Set([](FakeResults& results) { results.activeSpeaker = std::string(100, 'x'); });
    (void)AllocationsOf(2, 2000);
    // The answer, and its copy in the room.
    EXPECT_LE(AllocationsOf(1, 2000), 2U);
}

}  // namespace
}  // namespace Corvanta::Testing
