#include "host/StreamChoice.h"

#include <vector>

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

using Kind = StreamChoice::Kind;

void ExpectChoice(StreamType type, Kind kind, std::string_view title) {
    const std::optional<StreamChoice> choice = StreamChoiceOf(type);
    ASSERT_TRUE(choice) << title;
    EXPECT_EQ(choice->type, type);
    EXPECT_EQ(choice->kind, kind) << title;
    EXPECT_EQ(choice->title, title);
    EXPECT_FALSE(choice->label.empty());
}

TEST(StreamChoice, IsAListAFileOrAnAddress) {
    ExpectChoice(StreamType::Screenshare, Kind::List, "Share a screen or window");
    ExpectChoice(StreamType::Device, Kind::List, "Stream a device");
    ExpectChoice(StreamType::File, Kind::File, "Stream a file");
    ExpectChoice(StreamType::URL, Kind::Address, "Stream from an address");
    ExpectChoice(StreamType::NDI, Kind::List, "Stream NDI®");
    ExpectChoice(StreamType::DeckLink, Kind::List, "Stream DeckLink");
    ExpectChoice(StreamType::Elgato, Kind::List, "Stream Elgato");
}

TEST(StreamChoice, IsNoneForWhatNobodyChooses) {
    EXPECT_FALSE(StreamChoiceOf(StreamType::Camera));
    EXPECT_FALSE(StreamChoiceOf(StreamType::ExternalScreen));
    EXPECT_FALSE(StreamChoiceOf(static_cast<StreamType>(-1)));
    EXPECT_FALSE(StreamChoiceOf(static_cast<StreamType>(99)));
}

TEST(StreamChoice, OfAMediaSiloFileIsItsAddress) {
    EXPECT_EQ(MediaSiloChoice().type, StreamType::URL);
    EXPECT_EQ(MediaSiloChoice().kind, Kind::Address);
    EXPECT_NE(MediaSiloChoice().title, StreamChoiceOf(StreamType::URL)->title);
}

TEST(SharedLabel, NamesTheKindAndTheSource) {
    EXPECT_EQ(SharedLabel(StreamType::File, "clip.mp4"), "File: clip.mp4");
    EXPECT_EQ(SharedLabel(StreamType::Screenshare, ""), "Screen");
    EXPECT_EQ(SharedLabel(static_cast<StreamType>(99), ""), "Stream");
}

TEST(WindowOfProcess, IsTheOneWithATitle) {
    const std::vector<Engine::ScreenTarget> targets{
        {0, "Whole screen", -1}, {11, "Other", 4}, {12, "", 5}, {13, "Editor", 5}, {14, "Palette", 5}};
    ASSERT_NE(WindowOfProcess(targets, 5), nullptr);
    EXPECT_EQ(WindowOfProcess(targets, 5)->window, 13U);
}

TEST(WindowOfProcess, MayHaveNoTitle) {
    const std::vector<Engine::ScreenTarget> targets{{0, "Whole screen", 5}, {12, "", 5}};
    ASSERT_NE(WindowOfProcess(targets, 5), nullptr);
    EXPECT_EQ(WindowOfProcess(targets, 5)->window, 12U);
}

TEST(WindowOfProcess, IsNeverOneThatDoesNotSay) {
    const std::vector<Engine::ScreenTarget> targets{{0, "Whole screen", -1}, {11, "Other", -1}};
    EXPECT_EQ(WindowOfProcess(targets, -1), nullptr);
    EXPECT_EQ(WindowOfProcess(targets, 5), nullptr);
    EXPECT_EQ(WindowOfProcess({}, 5), nullptr);
}

}  // namespace
}  // namespace Corvanta::Host
