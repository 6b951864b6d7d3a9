#include <gtest/gtest.h>

#include "connectivity/ConnectionStats.h"
#include "tests/video/OverlayTest.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

class TileRoleTest : public TileOverlayTest {
protected:
    static size_t Subscriptions() { return Calls().Count("WebRTC_SetConnectionStatsCallback"); }
};

// Names

TEST_F(TileRoleTest, ThePlaybackBarSwapsTheSidesOfANameInCapitals) {
    Make();
    const std::pair<const char*, const char*> rows[] = {{"Ada | Camera 2", "CAMERA 2 - ADA"},
                                                        {"a | b | c", "B | C - A"},
                                                        {" | ", " - "},
                                                        {"Ada | ", " - ADA"},
                                                        {" | clip", "CLIP - "},
                                                        {"Ada|Camera", "Ada|Camera"},
                                                        {"Ada", "Ada"},
                                                        {"Zo\xC3\xAB | x", "X - ZO\xC3\xAB"}};
    for (const auto& [name, expected] : rows) {
        tile->SetDisplayName(name);
        EXPECT_EQ(tile->GetPlaybackBarName(), expected);
        EXPECT_EQ(tile->GetDisplayName(), name);
    }
}

TEST_F(TileRoleTest, ThePlaybackBarPrefersTheNameOfTheSource) {
    Make();
    EXPECT_EQ(tile->GetPlaybackBarName(), "Ada");
    tile->SetSourceData({"id", 25.0F, ""});
    EXPECT_EQ(tile->GetPlaybackBarName(), "Ada");
    tile->SetSourceData({"id", 25.0F, "clip | one.mp4"});
    EXPECT_EQ(tile->GetPlaybackBarName(), "clip | one.mp4");
}

// Whether there is a picture

TEST_F(TileRoleTest, HasNoVideoWhenItIsOffAndWantedOffOrNothingIsDrawn) {
    Make();
    EXPECT_TRUE(tile->HasNoVideo(true));
    EXPECT_FALSE(tile->HasNoVideo(false));
    ASSERT_TRUE(ShowPicture());
    EXPECT_TRUE(tile->HasNoVideo(true));
    Draw();
    EXPECT_FALSE(tile->HasNoVideo(true));
    EXPECT_FALSE(tile->HasNoVideo(false));

    tile->SetVideoEnabled(false);  // off at this moment, and still wanted
    EXPECT_FALSE(tile->HasNoVideo(true));
    EXPECT_FALSE(tile->HasNoVideo(false));
    tile->ReleaseGraphics();
    EXPECT_FALSE(tile->HasNoVideo(true));

    tile->SetVideoEnabledWanted(false);
    EXPECT_TRUE(tile->HasNoVideo(true));
    EXPECT_TRUE(tile->HasNoVideo(false));
    tile->SetVideoEnabled(true);
    EXPECT_FALSE(tile->HasNoVideo(true));
}

TEST_F(TileRoleTest, HasANewPictureUntilItIsDrawn) {
    Make();
    EXPECT_FALSE(tile->HasNewPicture());
    ASSERT_TRUE(ShowPicture());
    EXPECT_TRUE(tile->HasNewPicture());
    Draw();
    EXPECT_FALSE(tile->HasNewPicture());
    tile->BlankFrame();
    EXPECT_TRUE(tile->HasNewPicture());
    Draw();
    tile->MoveToRenderer(Renderer());
    EXPECT_TRUE(tile->HasNewPicture());
    Draw();
    EXPECT_FALSE(tile->HasNewPicture());
}

// Renderers

TEST_F(TileRoleTest, ReleasingTurnsTheVideoOffAndMovingTurnsItBackToTheWish) {
    Make();
    tile->ReleaseGraphics();
    EXPECT_FALSE(tile->IsVideoEnabled());
    tile->MoveToRenderer(Renderer());
    EXPECT_TRUE(tile->IsVideoEnabled());
    tile->SetVideoEnabledWanted(false);
    tile->SetVideoEnabled(true);
    tile->MoveToRenderer(Renderer());
    EXPECT_FALSE(tile->IsVideoEnabled());
}

TEST_F(TileRoleTest, KeepsThePictureThatItMovesWith) {
    Make();
    ASSERT_TRUE(ShowPicture());
    Draw();
    PixelReader other{640, 480};
    tile->inGrid = false;
    tile->MoveToRenderer(other.Renderer());
    tile->Render(other.Renderer(), {0, 0});
    EXPECT_TRUE(AreaIs(other.Read(), kTile, 0xFFFFFFFF));
    tile->ReleaseGraphics();
    UI::ReleaseRendererTextures(other.Renderer());
}

TEST_F(TileRoleTest, KeepsItsMenusSizeOverAMove) {
    Make();
    tile->GetMenu().AddButton("icons/spotlight.png", "Item", [] {});
    tile->GetMenu().SetItemHeight(31);
    tile->MoveToRenderer(Renderer());
    EXPECT_EQ(tile->GetMenu().GetItemHeight(), 31);
    EXPECT_EQ(tile->GetMenu().GetItems()[0]->height, 31);
}

TEST_F(TileRoleTest, IsMadeAndFedWithoutARenderer) {
    Make();
    Calls().Clear();
    VideoFrame other("other", "session", "profile", TileOrigin::Local);
    (*other.GetFrameSink())(MakeFrame());
    ASSERT_TRUE(FlushSink(*other.GetFrameSink()));
    other.AddHoverButton(PictureButton("icons/thumbnailMenu.png"));
    other.SetConnectionButton(PictureButton("icons/connection-strength.png"));
    other.AddBadge("icons/pin.png");
    for (const std::string& name : Calls().Names()) {
        EXPECT_FALSE(name.starts_with("SDL_") || name.starts_with("IMG_") || name.starts_with("TTF_"))
            << name;
    }
}

// Badges

TEST_F(TileRoleTest, KnowsItsBadgesByTheirPath) {
    Make();
    EXPECT_FALSE(tile->HasBadge("icons/pin.png"));
    tile->AddBadge("icons/pin.png");
    tile->AddBadge("icons/wide.png");
    tile->AddBadge("icons/pin.png");
    EXPECT_TRUE(tile->HasBadge("icons/pin.png"));
    tile->RemoveBadge("icons/pin.png");
    Calls().Clear();
    Draw();
    // The older of the two went.
    EXPECT_EQ(PlacesOf("pin"), (std::vector<SDL_Rect>{{205, 162, 14, 14}}));
    EXPECT_EQ(PlacesOf("wide"), (std::vector<SDL_Rect>{{163, 162, 28, 14}}));
    tile->RemoveBadge("icons/pin.png");
    EXPECT_FALSE(tile->HasBadge("icons/pin.png"));
    tile->RemoveBadge("icons/pin.png");
    EXPECT_TRUE(tile->HasBadge("icons/wide.png"));
}

TEST_F(TileRoleTest, ShowsTheMixItemsPictureForEveryVolumeButTheFull) {
    Make();
    tile->UpdateVolumeBadge(0.5F);
    tile->mixSoundItem = tile->GetMenu().AddButton("icons/wide.png", "Mix sound", [] {});
    EXPECT_FALSE(tile->HasBadge("icons/wide.png"));
    for (const float volume : {0.5F, 0.0F, 0.9999F}) {
        tile->UpdateVolumeBadge(volume);
        EXPECT_TRUE(tile->HasBadge("icons/wide.png")) << volume;
    }
    tile->UpdateVolumeBadge(1.0F);
    EXPECT_FALSE(tile->HasBadge("icons/wide.png"));
}

// Connection figures

TEST_F(TileRoleTest, OnlyTheOwnCameraAsksForTheConnectionsFigures) {
    Make(TileOrigin::Remote, StreamType::Camera);
    tile->SubscribeConnectionStats();
    EXPECT_EQ(Subscriptions(), 0U);
    Make(TileOrigin::Local, StreamType::Screenshare);
    EXPECT_EQ(Subscriptions(), 0U);
    Make(TileOrigin::Local, StreamType::Camera);
    EXPECT_EQ(Subscriptions(), 1U);
    tile->MoveToRenderer(Renderer());
    EXPECT_EQ(Subscriptions(), 2U);
}

TEST_F(TileRoleTest, HandsTheFiguresToItsPanelAlsoWhenNobodyLooks) {
    Make(TileOrigin::Local);
    const auto stats = tile->GetPanel().GetConnectionStats();
    Fake().callbacks.connectionStats(0, 8000.0, 0, 16000.0, 0.0, 4.6, 20.4);
    const Connectivity::ConnectionFigures figures = stats->Get();
    EXPECT_EQ(figures.uploadBytes, 1000.0);
    EXPECT_EQ(figures.downloadBytes, 2000.0);
    EXPECT_EQ(figures.jitterMs, 5);
    EXPECT_EQ(figures.roundTripMs, 20);
}

TEST_F(TileRoleTest, LeavesNoFunctionBehindThatReachesADeadPanel) {
    Make(TileOrigin::Local);
    const std::weak_ptr<Connectivity::ConnectionStats> stats = tile->GetPanel().GetConnectionStats();
    tile->ReleaseGraphics();
    tile.reset();
    Fake().callbacks.connectionStats(0, 8000.0, 0, 16000.0, 0.0, 4.0, 20.0);
    ASSERT_FALSE(stats.expired());
    EXPECT_EQ(stats.lock()->Get().sample, 1U);
}

TEST_F(TileRoleTest, TheLastTileThatAskedHasTheFigures) {
    Make(TileOrigin::Local);
    auto second = std::make_unique<VideoFrame>("id", "session", "profile", TileOrigin::Local);
    Fake().callbacks.connectionStats(0, 8000.0, 0, 16000.0, 0.0, 4.0, 20.0);
    EXPECT_EQ(tile->GetPanel().GetConnectionStats()->Get().sample, 0U);
    EXPECT_EQ(second->GetPanel().GetConnectionStats()->Get().sample, 1U);
    second.reset();
    tile->SubscribeConnectionStats();
    Fake().callbacks.connectionStats(0, 8000.0, 0, 16000.0, 0.0, 4.0, 20.0);
    EXPECT_EQ(tile->GetPanel().GetConnectionStats()->Get().sample, 1U);
}

}  // namespace
}  // namespace Corvanta::Video
