// The bar's buttons that start and stop the user's own streams: what they say, what they ask of the host, on
// which thread and in which order.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/room/ToolbarTest.h"
#include "tests/video/Gate.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct StreamButton {
    const char* picture;
    const char* label;
    const char* idleTooltip;
    const char* activeTooltip;
    Call started;
    // None for a stream that shows no capture state.
    std::optional<StreamType> type;
};

// From right to left.
const std::vector<StreamButton>& StreamButtons() {
    const auto native = [](const char* type) { return Call{"Host_StartNativeStream", {type}}; };
    static const std::vector<StreamButton> buttons{
        {"screenshare",
         "Screen",
         "Screenshare",
         "Stop screenshare",
         {"Host_StartScreenShare", {}},
         StreamType::Screenshare},
        {"device-native-stream", "Other", "Stream other devices", "Stop other device stream", native("3"),
         StreamType::Device},
        {"file-native-stream", "Files", "Stream files", "Stop file stream", native("4"), StreamType::File},
        {"url-stream", "URL (beta)", "Stream URL (beta)", "Stop URL stream", native("7"), StreamType::URL},
        {"ndi-stream", "NDI®", " Stream NDI®", " Stop NDI® stream", native("5"), StreamType::NDI},
        {"decklink-stream", "DeckLink", "Stream DeckLink", "Stop DeckLink", native("6"),
         StreamType::DeckLink},
        {"media-silo-stream",
         "MediaSilo",
         "Stream MediaSilo file",
         "Stop MediaSilo stream",
         {"Host_StartMediaSiloStream", {}},
         std::nullopt},
        {"elgato", "Elgato", "Stream Elgato", "Stop Elgato stream", native("8"), StreamType::Elgato},
    };
    return buttons;
}

class StreamControlsTest : public ToolbarTest {
protected:
    static void SetCapturing(StreamType type, bool capturing) {
        Fake().Set([&](FakeResults& results) {
            if (type == StreamType::Screenshare) {
                results.screenShareCapturing = capturing;
            } else if (capturing) {
                results.nativeStreamsCapturing.insert(type);
            } else {
                results.nativeStreamsCapturing.erase(type);
            }
        });
    }
    // An own stream of that type is the choice of the user in a room whose wall is detached.
    void ChooseOwnStreamDetached(StreamType type) {
        ASSERT_EQ(view->CreateDetachedView(&wallWindow_, 800, 400), 1);
        NameLocalStream(type, "mine");
        ASSERT_NE(view->AddLocalVideoSource(type, "source"), nullptr);
        view->OnTileClicked(TileOf("mine"), true);
        view->Tick();
        ASSERT_EQ(Fake().RegisteredSinks().size(), 1U);
    }
    [[nodiscard]] static bool HasClone() { return !Fake().RegisteredSinks().empty(); }

private:
    int wallWindow_ = 0;
};

TEST_F(StreamControlsTest, ButtonsStandInTheirOrderWithTheirLabels) {
    OpenBarAndWall();
    const Picture picture = TickAndRead();
    int right = kBarViewWidth;
    for (const StreamButton& button : StreamButtons()) {
        const auto place = Find(picture, button.picture);
        ASSERT_TRUE(place.has_value()) << button.picture;
        EXPECT_LT(place->x, right) << button.picture;
        right = place->x;
    }
    Calls().Clear();
    view->GetToolbar().ReleaseTextures();
    view->Tick();
    std::vector<std::string> labels{kOptions};
    for (const StreamButton& button : StreamButtons()) labels.emplace_back(button.label);
    EXPECT_EQ(RasterisedTexts(), labels);
}

TEST_F(StreamControlsTest, AProgramsButtonsComeLastWithTheirNames) {
    OpenBar();
    Run({{1, 12}, {0, 4711}});
    const Picture picture = TickAndRead();
    const auto elgato = Find(picture, "elgato");
    const auto davinci = Find(picture, "davinci-no-arrow");
    const auto flame = Find(picture, "flame-stream");
    ASSERT_TRUE(elgato.has_value() && davinci.has_value() && flame.has_value());
    EXPECT_LT(davinci->x, elgato->x);
    EXPECT_LT(flame->x, davinci->x);
    EXPECT_THAT(RasterisedTexts(), ElementsAre("DaVinci Resolve", "Autodesk Flame"));
    for (const char* name : {"davinci-no-arrow", "flame-stream"}) {
        Calls().Clear();
        MoveToButton(name);
        view->Tick();
        EXPECT_EQ(RasterisedTexts(),
                  std::vector<std::string>{name == std::string("flame-stream") ? "Autodesk Flame"
                                                                               : "DaVinci Resolve"});
    }
}

TEST_F(StreamControlsTest, EachButtonAsksTheHostOnTheActionThread) {
    OpenBar();
    for (const StreamButton& button : StreamButtons()) {
        Calls().Clear();
        Press(button.picture);
        AwaitActions();
        const auto calls = HostCalls();
        ASSERT_THAT(calls, ElementsAre(button.started)) << button.label;
        EXPECT_NE(calls[0].thread, std::this_thread::get_id());
    }
}

TEST_F(StreamControlsTest, EachButtonIsWithinReachInAWindowOfUsualWidth) {
    OpenBar(1280, 720);
    view->SetTitle("Room");
    for (const StreamButton& button : StreamButtons()) {
        Calls().Clear();
        Press(button.picture);
        AwaitActions();
        EXPECT_THAT(HostCalls(), ElementsAre(button.started)) << button.label;
    }
}

TEST_F(StreamControlsTest, EachButtonTellsWhatItDoes) {
    OpenBar();
    for (const StreamButton& button : StreamButtons()) {
        Calls().Clear();
        MoveToButton(button.picture);
        view->Tick();
        EXPECT_THAT(RasterisedTexts(), ElementsAre(button.idleTooltip));
        if (!button.type.has_value()) continue;
        SetCapturing(*button.type, true);
        view->Tick();
        view->Tick();
        EXPECT_THAT(RasterisedTexts(), ElementsAre(button.idleTooltip, button.activeTooltip));
        SetCapturing(*button.type, false);
    }
}

TEST_F(StreamControlsTest, ARunningStreamsButtonOnlyUntoggles) {
    OpenBar();
    for (const StreamButton& button : StreamButtons()) {
        if (!button.type.has_value()) continue;
        SetCapturing(*button.type, true);
        view->Tick();
        Calls().Clear();
        Press(button.picture);
        AwaitActions();
        EXPECT_THAT(HostCalls(), IsEmpty()) << button.label;
        SetCapturing(*button.type, false);
        // Idle again, it starts.
        view->Tick();
        Press(button.picture);
        AwaitActions();
        EXPECT_THAT(HostCalls(), ElementsAre(button.started));
    }
}

TEST_F(StreamControlsTest, TheScreenButtonIsToggledByAClickAndASecondOneCallsNothing) {
    OpenBar();
    const auto place = FindInBar("screenshare");
    ASSERT_TRUE(place.has_value());
    MoveTo(*place);
    PushPress();
    PushPress();
    view->Tick();
    AwaitActions();
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_StartScreenShare", {}}));
    Calls().Clear();
    // A third one starts again: the second has untoggled it.
    PushPress();
    PushPress();
    PushPress();
    view->Tick();
    AwaitActions();
    EXPECT_EQ(HostCalls().size(), 2U);
}

TEST_F(StreamControlsTest, ShowsWhatIsCapturedWhateverWasClicked) {
    OpenBar();
    const auto highlighted = [this](const char* name) {
        const Picture picture = TickAndRead();
        const auto place = Find(picture, name, kBarTop);
        // Under the icon, where the button's own fill shows.
        return picture.At(place->x - 15, place->y) == 0xFFFC2C03U;
    };
    EXPECT_FALSE(highlighted("url-stream"));
    Press("url-stream");
    EXPECT_FALSE(highlighted("url-stream"));
    SetCapturing(StreamType::URL, true);
    view->Tick();
    EXPECT_TRUE(highlighted("url-stream"));
    EXPECT_FALSE(highlighted("file-native-stream"));
    SetCapturing(StreamType::URL, false);
    view->Tick();
    EXPECT_FALSE(highlighted("url-stream"));
}

// One at a time

TEST_F(StreamControlsTest, ASecondClickStartsOnceTheFirstCallHasReturnedAndNoTickWaits) {
    OpenBar();
    Gate files;
    std::atomic<bool> filesReturned{false};
    std::atomic<bool> othersSawIt{false};
    Calls().OnCall("Host_StartNativeStream", [&](const Call& call) {
        if (call.arguments[0] == "4") {
            files.Pass();
            filesReturned = true;
        } else {
            othersSawIt = filesReturned.load();
        }
    });
    Press("file-native-stream");
    ASSERT_TRUE(files.WaitForArrival());
    Calls().Clear();
    Press("device-native-stream");
    // The ticks are over and the first call is not.
    EXPECT_FALSE(filesReturned);
    EXPECT_GE(Calls().Count("SDL_RenderPresent"), 3U);
    EXPECT_EQ(Calls().Count("Host_StartNativeStream"), 0U);
    files.Open();
    AwaitActions();
    EXPECT_TRUE(othersSawIt);
}

TEST_F(StreamControlsTest, AnActionMayUseTheRoom) {
    OpenBar();
    Calls().OnCall("Host_StartNativeStream", [this](const Call&) {
        NameLocalStream(StreamType::File, "mine");
        EXPECT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr);
        view->SetTitle("Shared");
        view->UntoggleAudioMixer();
    });
    Press("file-native-stream");
    AwaitActions();
    EXPECT_EQ(Bar().GetTitle(), "Shared");
    EXPECT_NE(TileOf("mine"), nullptr);
    view->Tick();
}

TEST_F(StreamControlsTest, AnActionMayEndTheRoom) {
    OpenBar();
    Gate gate;
    std::binary_semaphore done{0};
    // The last owner, once the room has ended.
    auto owner = std::make_shared<std::shared_ptr<VideoRoomView>>();
    Calls().OnCall("Host_StartNativeStream", [&gate, &done, owner](const Call&) {
        gate.Pass();
        owner->reset();
        done.release();
    });
    Press("file-native-stream");
    ASSERT_TRUE(gate.WaitForArrival());
    Press("device-native-stream");
    view->Shutdown();
    *owner = std::move(view);
    Calls().Clear();
    gate.Open();
    done.acquire();
    Calls().OnCall("Host_StartNativeStream", {});
    EXPECT_EQ(Calls().Count("Host_StartNativeStream"), 0U);
}

TEST_F(StreamControlsTest, TheRoomsEndWaitsForNoActionButItsDestructionDoes) {
    OpenBar();
    Gate gate;
    std::atomic<bool> returned{false};
    Calls().OnCall("Host_StartNativeStream", [&](const Call&) {
        gate.Pass();
        returned = true;
    });
    Press("file-native-stream");
    ASSERT_TRUE(gate.WaitForArrival());
    view->Shutdown();
    EXPECT_FALSE(returned);
    std::thread opener([&] {
        EXPECT_TRUE(gate.WaitForArrival());
        gate.Open();
    });
    view.reset();
    EXPECT_TRUE(returned);
    opener.join();
}

TEST_F(StreamControlsTest, NoFurtherActionStartsOnceTheRoomHasEnded) {
    OpenBar();
    Gate gate;
    Calls().OnCall("Host_StartNativeStream", [&gate](const Call&) { gate.Pass(); });
    Press("file-native-stream");
    ASSERT_TRUE(gate.WaitForArrival());
    Press("device-native-stream");
    view->Shutdown();
    gate.Open();
    EXPECT_FALSE(Calls().WaitFor("Host_StartNativeStream", 2, std::chrono::milliseconds{200}));
    view.reset();
    EXPECT_EQ(Calls().Count("Host_StartNativeStream"), 1U);
}

// Running programs

TEST_F(StreamControlsTest, AProgramsItemsTellTheHostWhichProcessToShare) {
    OpenBar();
    Run({{0, 4711}, {1, 12}});
    struct Item {
        const char* button;
        const char* picture;
        std::vector<std::string> arguments;
    };
    for (const Item& item : {Item{"davinci-no-arrow", "decklink-stream", {"0", "6", "4711"}},
                             Item{"davinci-no-arrow", "screenshare", {"0", "1", "4711"}},
                             Item{"flame-stream", "decklink-stream", {"1", "6", "12"}},
                             Item{"flame-stream", "ndi-stream", {"1", "5", "12"}},
                             Item{"flame-stream", "screenshare", {"1", "1", "12"}}}) {
        OpenMenu(item.button);
        Calls().Clear();
        Choose(item.picture);
        AwaitActions();
        const auto calls = HostCalls();
        ASSERT_THAT(calls, ElementsAre(Call{"Host_StartApplicationStream", item.arguments}));
        EXPECT_NE(calls[0].thread, std::this_thread::get_id());
    }
}

TEST_F(StreamControlsTest, AProgramsItemsAreInTheirOrder) {
    OpenBar();
    Run({{0, 4711}, {1, 12}});
    view->Tick();
    Calls().Clear();
    OpenMenu("davinci-no-arrow");
    const Picture davinci = TickAndRead();
    EXPECT_LT(Find(davinci, "decklink-stream", 0, kBarTop)->y, Find(davinci, "screenshare", 0, kBarTop)->y);
    EXPECT_THAT(RasterisedTexts(), Contains("Stream with DeckLink"));
    EXPECT_THAT(RasterisedTexts(), Contains("Stream with screenshare"));
    EXPECT_FALSE(Find(davinci, "ndi-stream", 0, kBarTop).has_value());
    OpenMenu("flame-stream");
    const Picture flame = TickAndRead();
    EXPECT_LT(Find(flame, "decklink-stream", 0, kBarTop)->y, Find(flame, "ndi-stream", 0, kBarTop)->y);
    EXPECT_LT(Find(flame, "ndi-stream", 0, kBarTop)->y, Find(flame, "screenshare", 0, kBarTop)->y);
    EXPECT_THAT(RasterisedTexts(), Contains("Stream with NDI®"));
}

TEST_F(StreamControlsTest, AProgramThatHasJustEndedIsSharedAsNone) {
    OpenBar();
    Run({{0, 4711}});
    OpenMenu("davinci-no-arrow");
    const auto item = FindAboveBar("screenshare");
    ASSERT_TRUE(item.has_value());
    MoveTo(*item);
    Run({});
    PushPress();
    view->Tick();
    AwaitActions();
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_StartApplicationStream", {"0", "1", "-1"}}));
}

// Own streams as the choice of a detached room

TEST_F(StreamControlsTest, StoppingAnOwnStreamLetsGoOfItInADetachedRoom) {
    const std::vector<std::pair<const char*, StreamType>> buttons{
        {"device-native-stream", StreamType::Device},
        {"elgato", StreamType::Elgato},
        {"file-native-stream", StreamType::File},
        {"ndi-stream", StreamType::NDI},
        {"decklink-stream", StreamType::DeckLink}};
    for (const auto& [picture, type] : buttons) {
        view = std::make_shared<VideoRoomView>(0, RecordingHost());
        OpenBar();
        ChooseOwnStreamDetached(type);
        SetCapturing(type, true);
        view->Tick();
        Press(picture);
        EXPECT_FALSE(HasClone()) << picture;
        SetCapturing(type, false);
        Fake().Set([ended = type](FakeResults& results) { results.localUserStreamIds.erase(ended); });
        view.reset();
    }
}

TEST_F(StreamControlsTest, StoppingAnotherKindLetsGoOfItToo) {
    OpenBar();
    ChooseOwnStreamDetached(StreamType::URL);
    SetCapturing(StreamType::File, true);
    view->Tick();
    Press("file-native-stream");
    EXPECT_FALSE(HasClone());
}

TEST_F(StreamControlsTest, StoppingAnAddressKeepsItUntilTheHostHasStoppedIt) {
    OpenBar();
    ChooseOwnStreamDetached(StreamType::URL);
    SetCapturing(StreamType::URL, true);
    view->Tick();
    Press("url-stream");
    EXPECT_TRUE(HasClone());
}

TEST_F(StreamControlsTest, StoppingTheScreenLeavesItToTheHost) {
    OpenBar();
    ChooseOwnStreamDetached(StreamType::File);
    SetCapturing(StreamType::Screenshare, true);
    view->Tick();
    Press("screenshare");
    EXPECT_TRUE(HasClone());
}

TEST_F(StreamControlsTest, SomebodyElsesStreamStaysTheChoice) {
    OpenBar();
    ChooseOwnStreamDetached(StreamType::File);
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    view->OnTileClicked(TileOf("one"), true);
    view->Tick();
    view->ForgetOwnStream();
    EXPECT_TRUE(HasClone());
    // A kind without a stream has no id, which is nobody's.
    Fake().Set([](FakeResults& results) { results.localUserStreamIds[StreamType::NDI] = ""; });
    view->ForgetOwnStream();
    EXPECT_TRUE(HasClone());
}

TEST_F(StreamControlsTest, StoppingChangesNothingInARoomThatIsNotDetached) {
    OpenBar();
    NameLocalStream(StreamType::File, "mine");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::File, "source"), nullptr);
    view->OnTileClicked(TileOf("mine"), true);
    SetCapturing(StreamType::File, true);
    view->Tick();
    Press("file-native-stream");
    EXPECT_TRUE(view->IsMainVideo(*TileOf("mine")));
}

}  // namespace
}  // namespace Corvanta::Room
