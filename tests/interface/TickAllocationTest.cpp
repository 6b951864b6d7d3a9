// The tick is on the host's render path.
#include <filesystem>
#include <string>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/interface/RoomTest.h"
#include "tests/ui/WorkingFolder.h"

namespace Corvanta::Testing {
namespace {

class TickAllocationTest : public RoomTest {
protected:
    TickAllocationTest() {
        // What is missing is looked for in every drawing.
        for (const char* icon : {"connection-strength", "equalizer", "noCamBackground", "nameBackgroundLeft",
                                 "nameBackgroundMiddle", "nameBackgroundRight", "thumbnail-background",
                                 "thumbnail-panel-close"}) {
            folder_.AddPicture(std::string("icons/") + icon + ".png", 4, 4, 0xFF0000FF);
        }
        const std::filesystem::path font = CORVANTA_TEST_FONT;
        for (const char* name : {"FKGrotesk-Regular", "FKGrotesk-Bolder", "FKGroteskMono-Regular"}) {
            folder_.AddFile(std::string("fonts/") + name + ".ttf", font);
        }
        Calls().SetRecording(false);
    }

    static size_t AllocationsOf(int ticks, int64_t milliseconds) {
        AllocationCounter::Start();
        for (int tick = 0; tick < ticks; ++tick) {
            TurnedClock::AdvanceMs(milliseconds);
            SDL_WPFVideoRoomCheckInputAndRender();
        }
        return AllocationCounter::Stop();
    }

private:
    WorkingFolder folder_;
};

TEST_F(TickAllocationTest, AllocatesNothingInAnEmptyRoom) {
    (void)AllocationsOf(2, 0);
    EXPECT_EQ(AllocationsOf(50, 16), 0U);
}

TEST_F(TickAllocationTest, AllocatesNothingWithAMainVideo) {
    Fake().OfferRemoteSource("a");
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    (void)AllocationsOf(2, 0);
    EXPECT_EQ(AllocationsOf(50, 16), 0U);
}

TEST_F(TickAllocationTest, AllocatesAtMostTheSpeakersIdAtAPoll) {
    Fake().Set([](FakeResults& results) { results.activeSpeaker = std::string(100, 'x'); });
    (void)AllocationsOf(2, 2000);
    // The answer, and its copy in the room.
    EXPECT_LE(AllocationsOf(1, 2000), 2U);
}

}  // namespace
}  // namespace Corvanta::Testing
