#include "engine/webrtc/ActiveSpeaker.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kReport{100};
constexpr double kSilence = -90;
constexpr double kVoice = -20;
// Enough reports for a second of sound that is certain: what begins and ends within a report is not.
constexpr int kSpeech = 12;

double FromDb(double decibels) {
    return std::pow(10.0, decibels / 10.0);
}

// Turns the clock by itself: everybody's loudness in decibels, for so many reports.
class Talk {
public:
    explicit Talk(std::size_t participants) {
        for (std::size_t index = 0; index < participants; ++index) speaker.ReportJoined(index);
    }

    void Sounds(const std::vector<double>& decibels, int reports) {
        for (int report = 0; report < reports; ++report) {
            now += kReport;
            for (std::size_t index = 0; index < decibels.size(); ++index) {
                speaker.ReportLoudness(index, FromDb(decibels[index]), now);
            }
        }
    }
    [[nodiscard]] std::optional<ActiveSpeaker::Number> Speaker() const { return speaker.Get(); }
    [[nodiscard]] bool IsSpeaking(ActiveSpeaker::Number participant) const {
        return speaker.IsSpeaking(participant, now);
    }

    ActiveSpeaker speaker;

private:
    ActiveSpeaker::Time now;
};

TEST(ActiveSpeaker, IsNobodyWhileNobodySpeaksOrShowsAnything) {
    Talk talk(2);
    EXPECT_EQ(talk.Speaker(), std::nullopt);
    talk.Sounds({kSilence, kSilence}, 20);
    EXPECT_EQ(talk.Speaker(), std::nullopt);
}

TEST(ActiveSpeaker, IsTheFirstOfTheListWithAPictureUntilAnybodyHasSpoken) {
    Talk talk(3);
    talk.speaker.ReportPicture(2);
    EXPECT_EQ(talk.Speaker(), 2U);
    talk.speaker.ReportPicture(1);
    EXPECT_EQ(talk.Speaker(), 1U);
    // The test picture's tone is no speech.
    talk.Sounds({kSilence, kSilence, -53}, 50);
    EXPECT_EQ(talk.Speaker(), 1U);
    talk.Sounds({kSilence, kSilence, kVoice}, kSpeech);
    EXPECT_EQ(talk.Speaker(), 2U);
}

TEST(ActiveSpeaker, IsNotSaidToSpeakWhileSilent) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    EXPECT_EQ(talk.Speaker(), 0U);
    EXPECT_FALSE(talk.IsSpeaking(0));
    talk.Sounds({kSilence, kVoice}, kSpeech);
    EXPECT_TRUE(talk.IsSpeaking(1));
    EXPECT_FALSE(talk.IsSpeaking(0));
    talk.Sounds({kSilence, kSilence}, 1);
    EXPECT_TRUE(talk.IsSpeaking(1)) << "a pause between words";
    talk.Sounds({kSilence, kSilence}, 20);
    EXPECT_EQ(talk.Speaker(), 1U);
    EXPECT_FALSE(talk.IsSpeaking(1));
    talk.speaker.ReportGone(1);
    EXPECT_FALSE(talk.IsSpeaking(1));
}

TEST(ActiveSpeaker, IsSomebodyAfterASecondOfSpeechAndNotBefore) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    talk.Sounds({kSilence, kVoice}, kSpeech - 1);
    EXPECT_EQ(talk.Speaker(), 0U);
    talk.Sounds({kSilence, kVoice}, 1);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, IsNeverSomebodyForANoiseOfLessThanASecond) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    for (int length = 1; length < kSpeech; ++length) {
        talk.Sounds({kSilence, -3}, length);
        talk.Sounds({kSilence, kSilence}, 10);
        EXPECT_EQ(talk.Speaker(), 0U) << length;
    }
}

TEST(ActiveSpeaker, IsNotSomebodyForSingleClicksHoweverMany) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    for (int click = 0; click < 50; ++click) {
        talk.Sounds({kSilence, -10}, 1);
        talk.Sounds({kSilence, kSilence}, 3);
    }
    EXPECT_EQ(talk.Speaker(), 0U);
}

TEST(ActiveSpeaker, TakesPausesBetweenSyllablesForSpeech) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    for (int syllable = 0; syllable < 5; ++syllable) {
        talk.Sounds({kSilence, kVoice}, 2);
        talk.Sounds({kSilence, kSilence}, 1);
    }
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, BeginsToCountAnewAfterARealPause) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    for (int round = 0; round < 5; ++round) {
        talk.Sounds({kSilence, kVoice}, 8);
        talk.Sounds({kSilence, kSilence}, 6);
    }
    EXPECT_EQ(talk.Speaker(), 0U);
}

TEST(ActiveSpeaker, StaysWithWhoSpokeLastWhenAllAreSilent) {
    Talk talk(2);
    talk.speaker.ReportPicture(0);
    talk.Sounds({kSilence, kVoice}, kSpeech);
    talk.Sounds({kSilence, kSilence}, 500);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, FollowsTheTurnASecondAfterItChanged) {
    Talk talk(2);
    talk.Sounds({kVoice, kSilence}, 20);
    EXPECT_EQ(talk.Speaker(), 0U);
    talk.Sounds({kSilence, kVoice}, kSpeech - 1);
    EXPECT_EQ(talk.Speaker(), 0U);
    talk.Sounds({kSilence, kVoice}, 1);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, StaysWhileTheOtherSpeaksHardlyLouder) {
    Talk talk(2);
    talk.Sounds({kVoice, kSilence}, 20);
    talk.Sounds({kVoice, -18}, 50);
    EXPECT_EQ(talk.Speaker(), 0U);
    talk.Sounds({-18, kVoice}, 50);
    EXPECT_EQ(talk.Speaker(), 0U);
}

TEST(ActiveSpeaker, IsTakenOverByWhoSpeaksClearlyLouderForASecond) {
    Talk talk(2);
    talk.Sounds({kVoice, kSilence}, 20);
    talk.Sounds({kVoice, -12}, kSpeech - 1);
    EXPECT_EQ(talk.Speaker(), 0U);
    talk.Sounds({kVoice, -12}, 1);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, IsTheLouderOfTwoWhoBeginAtOnce) {
    for (const std::size_t louder : {0U, 1U}) {
        Talk talk(3);
        std::vector<double> loudness{-22, -22, kSilence};
        loudness[louder] = kVoice;
        talk.Sounds(loudness, kSpeech);
        EXPECT_EQ(talk.Speaker(), louder);
        talk.Sounds(loudness, 50);
        EXPECT_EQ(talk.Speaker(), louder);
    }
}

TEST(ActiveSpeaker, PassesToWhoSpeaksOnWhenTheLouderFallsSilent) {
    Talk talk(2);
    talk.Sounds({-12, kVoice}, 30);
    EXPECT_EQ(talk.Speaker(), 0U);
    talk.Sounds({kSilence, kVoice}, 3);
    EXPECT_EQ(talk.Speaker(), 0U) << "a pause";
    talk.Sounds({kSilence, kVoice}, 3);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, IsNotTakenAwayByANoiseDuringSpeech) {
    Talk talk(3);
    talk.Sounds({kVoice, kSilence, kSilence}, 20);
    for (int round = 0; round < 10; ++round) {
        talk.Sounds({kVoice, -3, kSilence}, 5);
        talk.Sounds({kVoice, kSilence, kSilence}, 10);
        EXPECT_EQ(talk.Speaker(), 0U);
    }
}

TEST(ActiveSpeaker, IsNotTakenOverThroughAClickInQuieterSpeech) {
    Talk talk(2);
    talk.Sounds({kVoice, kSilence}, 20);
    talk.Sounds({kVoice, -24}, 20);
    talk.Sounds({kVoice, 0}, 1);
    talk.Sounds({kVoice, -24}, 20);
    EXPECT_EQ(talk.Speaker(), 0U);
}

TEST(ActiveSpeaker, LetsNoNoiseOfAnotherHinderTheNextSpeaker) {
    Talk talk(3);
    talk.Sounds({kVoice, kSilence, kSilence}, 20);
    talk.Sounds({kSilence, kVoice, kSilence}, kSpeech - 2);
    talk.Sounds({kSilence, kVoice, -3}, 2);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, ForgetsWhoIsGoneAndTakesTheNextWhoSpeaks) {
    Talk talk(3);
    talk.speaker.ReportPicture(0);
    talk.speaker.ReportPicture(1);
    talk.Sounds({kSilence, kVoice, -24}, 20);
    EXPECT_EQ(talk.Speaker(), 1U);
    talk.speaker.ReportGone(1);
    EXPECT_EQ(talk.Speaker(), 0U);
    talk.Sounds({kSilence, kVoice, -24}, 1);
    EXPECT_EQ(talk.Speaker(), 2U) << "who is gone is not heard any more";
    talk.speaker.ReportGone(2);
    talk.speaker.ReportGone(0);
    EXPECT_EQ(talk.Speaker(), std::nullopt);
}

TEST(ActiveSpeaker, LosesThePictureToWhoSpeaksAfterTheSpeakerIsMuted) {
    Talk talk(2);
    talk.Sounds({-10, -24}, 20);
    EXPECT_EQ(talk.Speaker(), 0U);
    // Who is muted is reported as silent, however loud.
    talk.Sounds({kSilence, -24}, 6);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, TakesWhoIsNoMoreReportedForSilent) {
    Talk talk(2);
    talk.Sounds({-10, -24}, 20);
    // The loud one's source stands still and says nothing at all.
    ActiveSpeaker::Time now{kReport * 20};
    for (int report = 0; report < 6; ++report) talk.speaker.ReportLoudness(1, FromDb(-24), now += kReport);
    EXPECT_EQ(talk.Speaker(), 1U);
}

TEST(ActiveSpeaker, JudgesByTimeAndNotByTheNumberOfReports) {
    ActiveSpeaker speaker;
    speaker.ReportJoined(0);
    speaker.ReportJoined(1);
    speaker.ReportPicture(0);
    ActiveSpeaker::Time now;
    for (int report = 0; report < 90; ++report)
        speaker.ReportLoudness(1, FromDb(kVoice), now += milliseconds(10));
    EXPECT_EQ(speaker.Get(), 0U);
    for (int report = 0; report < 15; ++report)
        speaker.ReportLoudness(1, FromDb(kVoice), now += milliseconds(10));
    EXPECT_EQ(speaker.Get(), 1U);
}

TEST(ActiveSpeaker, IgnoresWhomItDoesNotKnow) {
    ActiveSpeaker speaker;
    speaker.ReportPicture(3);
    speaker.ReportGone(3);
    speaker.ReportLoudness(3, 1.0, {});
    EXPECT_EQ(speaker.Get(), std::nullopt);
}

TEST(ActiveSpeaker, HearsNewcomersAndPrefersThoseWhoJoinedBefore) {
    Talk talk(1);
    talk.speaker.ReportGone(0);
    talk.speaker.ReportJoined(7);
    talk.speaker.ReportJoined(3);
    talk.speaker.ReportPicture(7);
    EXPECT_EQ(talk.Speaker(), 7U);
    talk.speaker.ReportPicture(3);
    EXPECT_EQ(talk.Speaker(), 3U);
    ActiveSpeaker::Time now;
    for (int report = 0; report < kSpeech; ++report) {
        talk.speaker.ReportLoudness(7, FromDb(kVoice), now += kReport);
    }
    EXPECT_EQ(talk.Speaker(), 7U);
    talk.speaker.ReportGone(7);
    EXPECT_EQ(talk.Speaker(), 3U);
}

}  // namespace
}  // namespace Corvanta::Engine
