// What a tile's menu and buttons offer, and what each of them does.
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/room/RoomViewTest.h"
#include "tests/ui/WorkingFolder.h"
#include "ui/FontManager.h"
#include "video/TileMetrics.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

// One entry of a menu. A plain one has neither a second text nor a second picture.
struct Row {
    const char* text;
    const char* image;
    const char* onText = nullptr;
    const char* onImage = nullptr;
};
using Rows = std::vector<Row>;

constexpr Row kSpotlight{"Spotlight", "icons/spotlight.png"};
constexpr Row kSound{"Sound off", "icons/noaudio.png", "Sound on", "icons/audio-white.png"};
constexpr Row kVideo{"Video off", "icons/nocam.png", "Video On", "icons/cam-white.png"};
constexpr Row kMix{"Mix sound", "icons/audiomixer-white.png"};
constexpr Row kPin{"Pin to left", "icons/pin.png", "Unpin", "icons/unpin.png"};
constexpr Row kRemove{"Remove from room", "icons/info.png"};
constexpr Row kMute{"Mute for all", "icons/muteCircled.png"};

class TileMenusTest : public RoomViewTest {
protected:
    TileMenusTest() {
        unsigned color = 0xFF204060;
        for (const char* name : {"spotlight", "noaudio", "audio-white", "nocam", "cam-white",
                                 "audiomixer-white", "pin", "unpin", "info", "muteCircled", "thumbnailMenu",
                                 "thumbnailMenuHover", "connection-strength", "thumbnail-panel-close"}) {
            folder_.AddPicture(std::string("icons/") + name + ".png", 4, 4, color += 0x00131B25);
        }
        const std::filesystem::path fonts = CORVANTA_TEST_FONTS;
        folder_.AddFile("fonts/FKGrotesk-Regular.ttf", fonts / "Inter-Regular.ttf");
        folder_.AddFile("fonts/FKGroteskMono-Regular.ttf", fonts / "Inter-Regular.ttf");
        folder_.AddFile("fonts/FKGrotesk-Bolder.ttf", fonts / "Inter-Bold.ttf");
        TTF_Init();
        Open();
    }
    ~TileMenusTest() override {
        view.reset();
        UI::FontManager::Clear();
        TTF_Quit();
    }

    Video::VideoFrame& AddRemoteTile(const std::string& id, StreamType type = StreamType::Camera) {
        SetType(id, type);
        EXPECT_NE(view->AddRemoteVideoSource(id), nullptr);
        Calls().Clear();
        return *TileOf(id);
    }
    Video::VideoFrame& AddLocalTile(StreamType type) {
        NameLocalStream(type, "mine");
        EXPECT_NE(view->AddLocalVideoSource(type, "source"), nullptr);
        Calls().Clear();
        return *TileOf("mine");
    }
    static void BeHost(VideoRoomView& room) {
        RoomIdentity identity;
        identity.isHost = true;
        room.Configure(identity);
    }
    void BeHost() { BeHost(*view); }
    static void Click(const Video::VideoFrame& tile, size_t item) {
        const auto& items = const_cast<Video::VideoFrame&>(tile).GetMenu().GetItems();
        ASSERT_LT(item, items.size());
        items[item]->OnClick();
    }

    // All rows, large enough to tell every letter.
    [[nodiscard]] Picture Draw(UI::Menu& menu) {
        menu.SetScrollable(false);
        menu.SetWidth(300);
        menu.SetItemHeight(40);
        menu.visible = true;
        SDL_SetRenderDrawColor(view->GetRenderer(), 0, 0, 0, 255);
        SDL_RenderClear(view->GetRenderer());
        menu.Render(view->GetRenderer(), {10, 10});
        return ReadPicture(view->GetRenderer());
    }
    static void FlipToggles(UI::Menu& menu, const Rows& rows) {
        for (size_t i = 0; i < rows.size(); ++i) {
            if (rows[i].onText == nullptr) continue;
            auto* const toggle = dynamic_cast<UI::ToggleButton*>(menu.GetItems()[i]);
            ASSERT_NE(toggle, nullptr) << rows[i].text;
            toggle->Toggle();
        }
    }
    // The tile's menu looks like one of those rows, as they are and with all toggles flipped.
    void ExpectRows(Video::VideoFrame& tile, const Rows& rows) {
        UI::Menu& menu = tile.GetMenu();
        ASSERT_EQ(menu.GetItems().size(), rows.size());
        UI::Menu expected(nullptr, static_cast<UI::MenuDirection>(-1), 140, 0xFF424242);
        for (const Row& row : rows) {
            if (row.onText == nullptr) {
                expected.AddButton(row.image, row.text, [] {});
            } else {
                expected.AddToggleButton({.offIconName = row.image,
                                          .onIconName = row.onImage,
                                          .offLabel = row.text,
                                          .onLabel = row.onText,
                                          .onToggledOn = [] {},
                                          .onToggledOff = [] {}});
            }
        }
        const Picture resting = Draw(expected);
        EXPECT_TRUE(SamePicture(Draw(menu), resting));
        FlipToggles(expected, rows);
        const Picture flipped = Draw(expected);
        EXPECT_FALSE(SamePicture(flipped, resting)) << "nothing to compare";
        FlipToggles(menu, rows);
        EXPECT_TRUE(SamePicture(Draw(menu), flipped));
        expected.ReleaseTextures();
    }
    [[nodiscard]] std::vector<std::string> Order() {
        std::vector<std::string> ids;
        for (const Video::VideoFrame* tile : view->GetThumbnails().GetAllTiles()) {
            ids.push_back(tile->GetStreamId());
        }
        return ids;
    }
    [[nodiscard]] static bool Loaded(const std::string& picture) {
        const auto calls = Calls().Of("IMG_LoadTexture");
        return std::any_of(calls.begin(), calls.end(),
                           [&](const Call& call) { return call.arguments.back().ends_with(picture); });
    }
    // The tile as a thumbnail with the pointer at that place; drawn, so that its buttons stand somewhere.
    void HoverDrawn(Video::VideoFrame& tile, SDL_Point point) {
        tile.rect = {100, 100, 213, 160};
        tile.displayRect = tile.rect;
        tile.inGrid = true;
        for (int i = 0; i < 2; ++i) {
            tile.OnPointer(point, false);
            tile.Render(view->GetRenderer(), {100, 100});
        }
        tile.OnPointer(point, false);
    }
    static constexpr SDL_Rect kPlace{100, 100, 213, 160};

    WorkingFolder folder_;
};

// Rows

TEST_F(TileMenusTest, ARemoteCamerasMenuHasFiveEntries) {
    ExpectRows(AddRemoteTile("one"), {kSpotlight, kSound, kVideo, kMix, kPin});
}

TEST_F(TileMenusTest, ARemoteScreenHasNoSoundToMix) {
    Video::VideoFrame& tile = AddRemoteTile("one", StreamType::Screenshare);
    ExpectRows(tile, {kSpotlight, kSound, kVideo, kPin});
    EXPECT_EQ(tile.mixSoundItem, nullptr);
}

TEST_F(TileMenusTest, TheHostMayRemoveAndMuteAParticipant) {
    BeHost();
    ExpectRows(AddRemoteTile("one"), {kSpotlight, kSound, kVideo, kMix, kPin, kRemove, kMute});
}

TEST_F(TileMenusTest, TheHostMayNotRemoveAStreamThatIsNoCamera) {
    BeHost();
    for (int type = 1; type <= 8; ++type) {
        SCOPED_TRACE(type);
        const std::string id = std::to_string(type);
        Rows rows{kSpotlight, kSound, kVideo, kMix, kPin};
        if (type == 1) rows.erase(rows.begin() + 3);
        ExpectRows(AddRemoteTile(id, static_cast<StreamType>(type)), rows);
        view->RemoveRemoteVideoSource(id);
    }
}

TEST_F(TileMenusTest, OnesOwnStreamsHaveNeitherPinNorHostEntries) {
    BeHost();
    for (int type = 3; type <= 8; ++type) {
        SCOPED_TRACE(type);
        Rows rows{kSpotlight, kSound, kVideo, kMix};
        if (static_cast<StreamType>(type) == StreamType::Device) rows.pop_back();
        Video::VideoFrame& tile = AddLocalTile(static_cast<StreamType>(type));
        // Those that start silent stand flipped already.
        tile.soundToggle->SetToggled(false);
        ExpectRows(tile, rows);
        EXPECT_EQ(tile.pinToggle, nullptr);
        EXPECT_FALSE(tile.draggable);
        EXPECT_EQ(tile.mixSoundItem == nullptr, static_cast<StreamType>(type) == StreamType::Device);
        view->RemoveLocalVideoSource("source");
    }
}

TEST_F(TileMenusTest, OnesOwnCameraAndScreenHaveNoMenu) {
    for (const StreamType type : {StreamType::Camera, StreamType::Screenshare, StreamType::ExternalScreen}) {
        const Video::VideoFrame& tile = AddLocalTile(type);
        EXPECT_EQ(tile.GetMenuButton(), nullptr);
        EXPECT_TRUE(const_cast<Video::VideoFrame&>(tile).GetMenu().GetItems().empty());
        EXPECT_EQ(tile.soundToggle, nullptr);
        EXPECT_EQ(tile.videoToggle, nullptr);
        view->RemoveLocalVideoSource("source");
    }
}

// Buttons

TEST_F(TileMenusTest, TheMenuButtonOpensAndClosesTheMenu) {
    for (Video::VideoFrame* tile : {&AddRemoteTile("one"), &AddLocalTile(StreamType::File)}) {
        UI::Button* const button = tile->GetMenuButton();
        ASSERT_NE(button, nullptr);
        EXPECT_TRUE(button->visible);
        EXPECT_EQ(button->GetIconName(), "icons/thumbnailMenu.png");
        EXPECT_FALSE(tile->GetMenu().visible);
        button->OnClick();
        EXPECT_TRUE(tile->GetMenu().visible);
        button->OnClick();
        EXPECT_FALSE(tile->GetMenu().visible);
    }
}

TEST_F(TileMenusTest, TheMenuButtonHasAnotherPictureUnderThePointer) {
    Video::VideoFrame& tile = AddRemoteTile("one");
    HoverDrawn(tile, Video::ButtonColumn(kPlace).Next().centre);
    EXPECT_TRUE(tile.GetMenuButton()->hovered);
    EXPECT_TRUE(Loaded("icons/thumbnailMenu.png"));
    EXPECT_TRUE(Loaded("icons/thumbnailMenuHover.png"));
    EXPECT_FALSE(tile.OnClick());
    EXPECT_TRUE(tile.GetMenu().visible);
}

TEST_F(TileMenusTest, ARemoteCameraHasAButtonForItsConnection) {
    Video::VideoFrame& tile = AddRemoteTile("one");
    const SDL_Point place = Video::ConnectionButtonPlace(kPlace).centre;
    HoverDrawn(tile, place);
    EXPECT_TRUE(Loaded("icons/connection-strength.png"));
    EXPECT_FALSE(tile.GetPanel().visible);
    EXPECT_FALSE(tile.OnClick());
    EXPECT_TRUE(tile.GetPanel().visible);
}

TEST_F(TileMenusTest, NoOtherStreamHasAButtonForItsConnection) {
    for (int type = 1; type <= 8; ++type) {
        Video::VideoFrame& tile = AddRemoteTile(std::to_string(type), static_cast<StreamType>(type));
        HoverDrawn(tile, Video::ConnectionButtonPlace(kPlace).centre);
        EXPECT_TRUE(tile.OnClick()) << type;
    }
    HoverDrawn(AddLocalTile(StreamType::File), Video::ConnectionButtonPlace(kPlace).centre);
    EXPECT_FALSE(Loaded("icons/connection-strength.png"));
}

// Effects

TEST_F(TileMenusTest, SpotlightMakesTheTileTheMainVideoAndNeverEndsIt) {
    Video::VideoFrame& tile = AddRemoteTile("one");
    AddRemoteTile("two");
    view->SetActiveSpeaker("two");
    for (int i = 0; i < 2; ++i) {
        Click(tile, 0);
        view->Tick();
        EXPECT_TRUE(view->IsMainVideo(tile));
    }
}

TEST_F(TileMenusTest, SoundSwitchesARemoteTrackAndShowsThatItIsOff) {
    Video::VideoFrame& tile = AddRemoteTile("one");
    Click(tile, 1);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetEnabledRemoteAudioTrack", {"one", "false"}}}));
    EXPECT_FALSE(tile.audioEnabled);
    EXPECT_TRUE(tile.HasBadge("icons/noaudio.png"));
    Calls().Clear();
    Click(tile, 1);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetEnabledRemoteAudioTrack", {"one", "true"}}}));
    EXPECT_TRUE(tile.audioEnabled);
    EXPECT_FALSE(tile.HasBadge("icons/noaudio.png"));
}

TEST_F(TileMenusTest, SoundIsOnlyRememberedWhileTheRoomCannotBeHeard) {
    Video::VideoFrame& tile = AddRemoteTile("one");
    for (const bool none : {false, true}) {
        none ? view->SetSpeakerNone(true) : view->SetSpeakerEnabled(false);
        Calls().Clear();
        Click(tile, 1);
        EXPECT_FALSE(tile.audioEnabled);
        EXPECT_TRUE(tile.HasBadge("icons/noaudio.png"));
        Click(tile, 1);
        EXPECT_TRUE(tile.audioEnabled);
        EXPECT_TRUE(Calls().OfThisThread().empty());
        none ? view->SetSpeakerNone(false) : view->SetSpeakerEnabled(true);
    }
}

TEST_F(TileMenusTest, SoundOfOnesOwnStreamIsWhatOneHearsOfIt) {
    Video::VideoFrame& tile = AddLocalTile(StreamType::File);
    Click(tile, 1);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetLocalStreamsLocalAudioVolume", {ToText(0.0)}}}));
    EXPECT_FALSE(tile.audioEnabled);
    EXPECT_TRUE(tile.HasBadge("icons/noaudio.png"));
    Calls().Clear();
    Click(tile, 1);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetLocalStreamsLocalAudioVolume", {ToText(1.0)}}}));
    EXPECT_TRUE(tile.audioEnabled);
    EXPECT_FALSE(tile.HasBadge("icons/noaudio.png"));
}

TEST_F(TileMenusTest, SoundOfOnesOwnStreamComesBackAlsoWhileTheRoomIsSilent) {
    Video::VideoFrame& tile = AddLocalTile(StreamType::File);
    view->SetSpeakerEnabled(false);
    Calls().Clear();
    Click(tile, 1);
    EXPECT_TRUE(Calls().OfThisThread().empty());
    EXPECT_FALSE(tile.audioEnabled);
    Click(tile, 1);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetLocalStreamsLocalAudioVolume", {ToText(1.0)}}}));
}

TEST_F(TileMenusTest, VideoSwitchesTheTrackAndStaysOffWhileTheTileIsNotShown) {
    for (Video::VideoFrame* tile : {&AddRemoteTile("one"), &AddLocalTile(StreamType::File)}) {
        const std::string id = tile->GetStreamId();
        Click(*tile, 2);
        EXPECT_EQ(Calls().Of("WebRTC_SetEnabledRemoteVideoTrack"),
                  (std::vector<Call>{{"WebRTC_SetEnabledRemoteVideoTrack", {id, "false"}}}));
        EXPECT_FALSE(tile->IsVideoEnabled());
        EXPECT_TRUE(tile->HasBadge("icons/nocam.png"));
        tile->Deactivate();
        tile->Activate();
        EXPECT_FALSE(tile->IsVideoEnabled());
        Calls().Clear();
        Click(*tile, 2);
        EXPECT_EQ(Calls().Of("WebRTC_SetEnabledRemoteVideoTrack"),
                  (std::vector<Call>{{"WebRTC_SetEnabledRemoteVideoTrack", {id, "true"}}}));
        EXPECT_TRUE(tile->IsVideoEnabled());
        EXPECT_FALSE(tile->HasBadge("icons/nocam.png"));
        Calls().Clear();
    }
}

TEST_F(TileMenusTest, MixSoundOpensTheHostsMixer) {
    Fake().Set([](FakeResults& results) {
        results.publisherNames["one"] = "Ann";
        results.remoteVolumes["one"] = 0.25;
        results.localStreamsVolume = 0.5F;
    });
    Click(AddRemoteTile("one"), 3);
    EXPECT_EQ(Calls().Of("Host_OpenAudioMixer"),
              (std::vector<Call>{{"Host_OpenAudioMixer", {"one", "Ann", ToText(0.25), "-1", "-1"}}}));
    Video::VideoFrame& own = AddLocalTile(StreamType::NDI);
    Fake().Set([](FakeResults& results) { results.localStreamsVolume = 0.5F; });
    Click(own, 3);
    EXPECT_EQ(Calls().Of("Host_OpenAudioMixer"),
              (std::vector<Call>{{"Host_OpenAudioMixer", {"mine", "My mine", ToText(0.5), "-1", "-1"}}}));
}

TEST_F(TileMenusTest, PinPutsTheTileToTheFrontAndMarksIt) {
    AddRemoteTile("one");
    AddRemoteTile("two");
    Video::VideoFrame& tile = AddRemoteTile("three");
    Click(tile, 4);
    EXPECT_EQ(Order(), (std::vector<std::string>{"three", "one", "two"}));
    EXPECT_TRUE(tile.pinned);
    EXPECT_TRUE(tile.HasBadge("icons/pin.png"));
    Click(*TileOf("two"), 4);
    EXPECT_EQ(Order(), (std::vector<std::string>{"three", "two", "one"}));
    Click(tile, 4);
    EXPECT_EQ(Order(), (std::vector<std::string>{"two", "three", "one"}));
    EXPECT_FALSE(tile.pinned);
    EXPECT_FALSE(tile.HasBadge("icons/pin.png"));
}

TEST_F(TileMenusTest, RemoveAndMuteGoToTheHostAndToTheRoom) {
    BeHost();
    Fake().Set([](FakeResults& results) { results.publisherNames["one"] = "Ann"; });
    Video::VideoFrame& tile = AddRemoteTile("one");
    Click(tile, 5);
    EXPECT_EQ(Calls().Of("Host_RemoveParticipant"),
              (std::vector<Call>{{"Host_RemoveParticipant", {"one", "Ann"}}}));
    Click(tile, 6);
    EXPECT_EQ(Calls().Of("Connections_MuteParticipant"),
              (std::vector<Call>{{"Connections_MuteParticipant", {"one"}}}));
}

TEST_F(TileMenusTest, ATileMayGoWhileTheHostRemovesItsParticipant) {
    BeHost();
    Video::VideoFrame& tile = AddRemoteTile("one");
    view->SetActiveSpeaker("one");
    Calls().OnCall("Host_RemoveParticipant", [&](const Call&) { view->RemoveRemoteVideoSource("one"); });
    Click(tile, 5);
    Calls().OnCall("Host_RemoveParticipant", {});
    EXPECT_EQ(TileOf("one"), nullptr);
    view->Tick();
}

TEST_F(TileMenusTest, NoEntryNeedsAFunctionOfTheHost) {
    VideoRoomView bare(0, HostCallbacks{});
    BeHost(bare);
    ASSERT_NE(bare.AddRemoteVideoSource("one"), nullptr);
    Video::VideoFrame* const tile = bare.GetThumbnails().GetAllTiles()[0];
    for (size_t item = 0; item < tile->GetMenu().GetItems().size(); ++item) Click(*tile, item);
    EXPECT_EQ(Calls().Count("Connections_MuteParticipant"), 1U);
}

}  // namespace
}  // namespace Corvanta::Room
