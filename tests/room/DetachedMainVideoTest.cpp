// The main video of a room whose wall has a window of its own: a second tile of its stream.
#include "tests/room/DetachedWallTest.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace Corvanta::Room {
namespace {

// Kinds that the user shares beside the camera and stops in the bar.
constexpr StreamType kOwnTypes[] = {StreamType::Device, StreamType::Elgato, StreamType::File,
                                    StreamType::URL,    StreamType::NDI,    StreamType::DeckLink};

// The main video

TEST_F(DetachedWallTest, TheMainVideoIsASecondTileThatTheStreamFeedsToo) {
    FillRoom();
    Detach();
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    view->Tick();
    EXPECT_EQ(Steps(), (Strings{"register one"}));
    EXPECT_NE(Fake().RegisteredSinks()[0].second, TileOf("one")->GetFrameSink().get());
    EXPECT_EQ(view->GetThumbnails().GetTileCount(), 3);
    EXPECT_TRUE(view->IsMainVideo(*TileOf("one")));
    EXPECT_FALSE(view->IsMainVideo(*TileOf("two")));
    Feed("one", kOneColor);
    EXPECT_EQ(ShownColor(), kOneColor);
    for (int i = 0; i < 5; ++i) TickBoth();
    EXPECT_EQ(Steps().size(), 1U) << "and it stays";
}

TEST_F(DetachedWallTest, TheOwnCamerasSecondTileIsFedByTheCamerasSource) {
    FillRoom();
    view->SetActiveSpeaker("nobody");
    Detach();
    view->Tick();
    EXPECT_EQ(Steps(), (Strings{"register camera"}));
    Feed("camera", kCameraColor);
    EXPECT_EQ(ShownColor(), kCameraColor);
    view->LeaveDetachedLayout();
    EXPECT_EQ(Steps(), (Strings{"register camera", "unregister camera"}));
}

TEST_F(DetachedWallTest, AStreamOfOnesOwnIsFedByTheSourceUnderWhichItRuns) {
    FillRoom();
    NameLocalStream(StreamType::File, "my-file");
    Detach();
    ASSERT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr);
    EXPECT_EQ(Steps(), (Strings{"register file"})) << "a new local stream takes the main video";
    view->Tick();
    EXPECT_EQ(ClonedSource(), "file");
    view->RemoveLocalVideoSource("file");
    EXPECT_EQ(Steps(), (Strings{"register file", "unregister file"}));
    view->Tick();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, TheSecondTileFollowsWhoSpeaks) {
    FillAndDetach();
    view->SetActiveSpeaker("two");
    TickBoth();
    EXPECT_EQ(Steps(), (Strings{"unregister one", "register two"}));
    view->SetActiveSpeaker("nobody");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "camera");
    view->SetActiveSpeaker("me");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "camera");
    EXPECT_EQ(Steps().size(), 4U);
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 2U);
}

TEST_F(DetachedWallTest, WithoutAnyStreamThereIsNoSecondTile) {
    Detach();
    TickBoth();
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(ShownColor(), kBlack);
}

TEST_F(DetachedWallTest, EnteringForgetsWhatWasChosenInTheRoom) {
    FillRoom();
    view->OnTileClicked(TileOf("two"), false);
    view->Tick();
    Calls().Clear();
    Detach();
    view->Tick();
    EXPECT_EQ(ClonedSource(), "one");
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
}

// Clicks

TEST_F(DetachedWallTest, AClickInTheWallsWindowChoosesAndASecondOneLetsGo) {
    FillAndDetach();
    ClickTile("two");
    EXPECT_EQ(Steps(), (Strings{"unregister one", "register two"}));
    EXPECT_TRUE(view->IsMainVideo(*TileOf("two")));
    Feed("two", kTwoColor);
    EXPECT_EQ(ShownColor(), kTwoColor);
    view->SetActiveSpeaker("one");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "two") << "whoever speaks";
    Calls().Clear();
    ClickTile("two");
    EXPECT_EQ(Steps(), (Strings{"unregister two"}));
    view->Tick();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, AClickOnTheSpeakerMakesThatChoiceLast) {
    FillAndDetach();
    view->OnTileClicked(TileOf("one"), false);
    view->SetActiveSpeaker("two");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, TheMenuNeverLetsGoOfAChoice) {
    FillAndDetach();
    view->OnTileClicked(TileOf("two"), true);
    view->OnTileClicked(TileOf("two"), true);
    TickBoth();
    EXPECT_EQ(Steps(), (Strings{"unregister one", "register two"}));
}

TEST_F(DetachedWallTest, TheHostMayChooseAndLetGoByTheStreamsId) {
    FillAndDetach();
    view->SetStreamSpotlight("two", true);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "two");
    view->SetStreamSpotlight("two", true);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, AnExternalSourceTakesTheMainVideo) {
    FillAndDetach();
    MakeExternal("external");
    ASSERT_NE(view->AddRemoteVideoSource("external"), nullptr);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "external");
    view->RemoveRemoteVideoSource("external");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, TheOwnCameraLetsGoOfAChoiceWhenItComes) {
    FillAndDetach();
    view->RemoveLocalVideoSource("camera");
    view->OnTileClicked(TileOf("two"), false);
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

// The switches of a stream reach its second tile

TEST_F(DetachedWallTest, VideoThatIsSwitchedOffIsOffInBoth) {
    FillAndDetach();
    Feed("one", kOneColor);
    ASSERT_EQ(ShownColor(), kOneColor);
    TileOf("one")->videoToggle->OnClick();
    FeedInVain("one", kOneColor);
    EXPECT_EQ(ShownColor(), kBlack);
    TileOf("one")->videoToggle->OnClick();
    Feed("one", kOneColor);
    EXPECT_EQ(ShownColor(), kOneColor);
    view->SetStreamVideoEnabled("one", false);
    FeedInVain("one", kOneColor);
    EXPECT_EQ(ShownColor(), kBlack);
}

TEST_F(DetachedWallTest, ASecondTileOfAStreamWhoseVideoIsOffStartsOff) {
    FillAndDetach();
    TileOf("two")->videoToggle->OnClick();
    view->OnTileClicked(TileOf("two"), false);
    FeedInVain("two", kTwoColor);
    EXPECT_EQ(ShownColor(), kBlack);
}

// Streams that go

TEST_F(DetachedWallTest, AStreamMayGoWhileItsSecondTileIsShown) {
    for (const bool chosen : {false, true}) {
        SCOPED_TRACE(chosen);
        FillAndDetach();
        if (chosen) view->OnTileClicked(TileOf("one"), false);
        Feed("one", kOneColor);
        TickBoth();
        Calls().Clear();
        std::thread media([&] { view->RemoveRemoteVideoSource("one"); });
        media.join();
        EXPECT_EQ(Steps(), (Strings{"unregister one"}));
        EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U) << "not on the media thread";
        TickBoth();
        EXPECT_EQ(ClonedSource(), "camera");
        EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
        view->LeaveDetachedLayout();
        view->RemoveRemoteVideoSource("two");
        view->RemoveLocalVideoSource("camera");
        view->Tick();
    }
}

TEST_F(DetachedWallTest, AnotherStreamMayGoWithoutASign) {
    FillAndDetach();
    view->RemoveRemoteVideoSource("two");
    TickBoth();
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 0U);
}

TEST_F(DetachedWallTest, AGoneTilesTextureDiesBeforeTheWindowItStoodIn) {
    FillAndDetach();
    ASSERT_TRUE(TileOf("two")->HasTexture());
    view->RemoveRemoteVideoSource("two");
    const std::string wall = NameOf(view->GetDetachedView()->GetRenderer());
    size_t atTheEnd = 77;
    Calls().OnCall("SDL_DestroyRenderer", [&](const Call&) { atTheEnd = Sdl().LiveTextures(); });
    view->LeaveDetachedLayout();
    Calls().OnCall("SDL_DestroyRenderer", {});
    EXPECT_EQ(atTheEnd, 0U);
    EXPECT_GE(IndexOf("SDL_DestroyRenderer", wall), 0);
    view->Tick();
    EXPECT_GT(Sdl().LiveTextures(), 0U);
}

// Own streams that are to end

TEST_F(DetachedWallTest, AnOwnStreamThatIsToEndLeavesTheMainVideo) {
    FillAndDetach();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        ShareOwn(type);
        view->ForgetOwnStream();
        EXPECT_EQ(Steps(), (Strings{"unregister source"}));
        EXPECT_NE(TileOf("mine"), nullptr) << "the host has not stopped it yet";
        TickBoth();
        EXPECT_EQ(ClonedSource(), "one");
        EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
        EndOwn(type);
    }
}

TEST_F(DetachedWallTest, TheKindThatIsExceptedStaysTheMainVideo) {
    FillAndDetach();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        ShareOwn(type);
        view->ForgetOwnStream(StreamType::URL);
        TickBoth();
        EXPECT_EQ(ClonedSource(), type == StreamType::URL ? "source" : "one");
        EndOwn(type);
    }
}

TEST_F(DetachedWallTest, AKindThatIsNotSharedIsNoStreamWithoutAnId) {
    FillAndDetach();
    AddRemote("", kTwoColor);
    view->OnTileClicked(TileOf(""), false);
    TickBoth();
    Calls().Clear();
    view->ForgetOwnStream();
    TickBoth();
    EXPECT_EQ(ClonedSource(), "");
    EXPECT_TRUE(Steps().empty());
}

TEST_F(DetachedWallTest, AnOwnStreamThatIsToEndStaysTheChoiceInTheRoomItself) {
    FillRoom();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        NameLocalStream(type, "mine");
        const auto sink = view->AddLocalVideoSource(type, "source");
        ASSERT_TRUE(sink != nullptr && Show(sink, Plain(kTwoColor)));
        view->Tick();
        view->ForgetOwnStream();
        EXPECT_EQ(ShownColor(), kTwoColor);
        EndOwn(type);
    }
}

TEST_F(DetachedWallTest, AMainVideoThatNobodyChoseStaysWhenAnOwnStreamIsToEnd) {
    FillAndDetach();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        NameLocalStream(type, "one");
        view->ForgetOwnStream();
        EXPECT_EQ(ClonedSource(), "one");
        EndOwn(type);
    }
    TickBoth();
    EXPECT_TRUE(Steps().empty());
}

}  // namespace
}  // namespace Corvanta::Room
