#include "engine/webrtc/ActiveSpeaker.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kReport{100};

double FromDb(double decibels) {
    return std::pow(10.0, decibels / 10.0);
}

// Turns the clock by itself: everybody's loudness in decibels, for so many reports.
class Talk {
public:
    explicit Talk(std::size_t participants) : speaker(participants) {}

    void Sounds(const std::vector<double>& decibels, int reports) {
        for (int report = 0; report < reports; ++report) {
            now += kReport;
            for (std::size_t index = 0; index < decibels.size(); ++index) {
                speaker.ReportLoudness(index, FromDb(decibels[index]), now);
            }
        }
    }

    ActiveSpeaker speaker;

private:
    ActiveSpeaker::Time now;
};

TEST(ActiveSpeaker, IsNobodyWhileNobodySpeaksOrShowsAnything) {
    Talk talk(2);
    EXPECT_EQ(talk.speaker.Get(), std::nullopt);
    talk.Sounds({-90, -90}, 20);
    EXPECT_EQ(talk.speaker.Get(), std::nullopt);
}

TEST(ActiveSpeaker, IsTheFirstOfTheListWithAPictureUntilAnybodyHasSpoken) {
    Talk talk(3);
    talk.speaker.ReportPicture(2);
    EXPECT_EQ(talk.speaker.Get(), 2U);
    talk.speaker.ReportPicture(1);
    EXPECT_EQ(talk.speaker.Get(), 1U);
    // The test picture's tone is no speech.
    talk.Sounds({-90, -90, -53}, 20);
    EXPECT_EQ(talk.speaker.Get(), 1U);
    talk.Sounds({-90, -90, -20}, 5);
    EXPECT_EQ(talk.speaker.Get(), 2U);
}

TEST(ActiveSpeaker, StaysWithWhoSpokeLastWhenAllAreSilent) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    talk.Sounds({-90, -20}, 10);
    talk.Sounds({-90, -90}, 50);
    EXPECT_EQ(talk.speaker.Get(), 1U);
}

TEST(ActiveSpeaker, ChangesWithinASecondWhenTheTurnChanges) {
    Talk talk(2);
    talk.Sounds({-20, -90}, 20);
    EXPECT_EQ(talk.speaker.Get(), 0U);
    talk.Sounds({-90, -20}, 9);
    EXPECT_EQ(talk.speaker.Get(), 1U);
}

TEST(ActiveSpeaker, IsNotTakenOverBySomebodyHardlyLouder) {
    Talk talk(2);
    talk.Sounds({-20, -90}, 20);
    talk.Sounds({-20, -18}, 50);
    EXPECT_EQ(talk.speaker.Get(), 0U);
    talk.Sounds({-20, -12}, 20);
    EXPECT_EQ(talk.speaker.Get(), 1U);
}

TEST(ActiveSpeaker, IsNotTakenOverByAClick) {
    Talk talk(2);
    talk.Sounds({-20, -90}, 20);
    talk.Sounds({-20, -16}, 1);
    talk.Sounds({-20, -90}, 20);
    EXPECT_EQ(talk.speaker.Get(), 0U);
}

TEST(ActiveSpeaker, ForgetsWhoIsGone) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    talk.speaker.ReportPicture(1);
    talk.Sounds({-90, -20}, 10);
    talk.speaker.ReportGone(1);
    EXPECT_EQ(talk.speaker.Get(), 0U);
    talk.speaker.ReportGone(0);
    EXPECT_EQ(talk.speaker.Get(), std::nullopt);
}

TEST(ActiveSpeaker, IgnoresWhomItDoesNotKnow) {
    ActiveSpeaker speaker(0);
    speaker.ReportPicture(3);
    speaker.ReportGone(3);
    speaker.ReportLoudness(3, 1.0, {});
    EXPECT_EQ(speaker.Get(), std::nullopt);
}

}  // namespace
}  // namespace Corvanta::Engine
