#include "host/AudioMixer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QSlider>
#include <QTest>

#include "tests/host/RecordedEngine.h"
#include "tests/host/RecordedInterface.h"

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AudioMixerTest : public ::testing::Test {
protected:
    AudioMixerTest() {
        ResetEngine();
        Answers().participants = {{"p1", "Ada", 1.0, 0.25, false}, {"p2", "Bo", 0.5, 0.0, true}};
        static_cast<void>(TakePushed());
    }

    QSlider* SliderOf(const QString& name) {
        for (QSlider* const slider : mixer_.findChildren<QSlider*>()) {
            if (slider->accessibleName() == "Volume of " + name) return slider;
        }
        return nullptr;
    }

    int closed_ = 0;
    AudioMixer mixer_{nullptr, [this] { ++closed_; }};
};

TEST_F(AudioMixerTest, HasASliderAndAMeterForEachParticipant) {
    mixer_.Open();
    ASSERT_NE(SliderOf("Ada"), nullptr);
    EXPECT_EQ(SliderOf("Ada")->value(), 100);
    EXPECT_EQ(SliderOf("Bo")->value(), 50);
    const auto meters = mixer_.findChildren<QProgressBar*>();
    ASSERT_EQ(meters.size(), 2);
    EXPECT_EQ(meters[0]->value(), meters[0]->maximum() / 4);
    Answers().participants[0].loudness = 0.5;
    EXPECT_TRUE(QTest::qWaitFor([&] { return meters[0]->value() == meters[0]->maximum() / 2; }));
}

TEST_F(AudioMixerTest, SetsAParticipantsVolumeByTheKeyboard) {
    mixer_.Open();
    static_cast<void>(TakePushed());
    SliderOf("Bo")->setFocus();
    QTest::keyClick(SliderOf("Bo"), Qt::Key_PageDown);
    EXPECT_THAT(TakePushed(), ElementsAre("volume p2 0.4"));
}

TEST_F(AudioMixerTest, SetsTheVolumeOfAllParticipantsAndOfAllStreams) {
    mixer_.Open();
    static_cast<void>(TakePushed());
    QTest::keyClick(SliderOf("All participants"), Qt::Key_PageDown);
    QTest::keyClick(SliderOf("All streams"), Qt::Key_Home);
    EXPECT_THAT(TakePushed(), ElementsAre("participants volume 0.9", "streams volume 0"));
}

TEST_F(AudioMixerTest, FollowsTheRoomWithoutTellingItBack) {
    mixer_.Open();
    static_cast<void>(TakePushed());
    Answers().participants[0].volume = 0.3;
    EXPECT_TRUE(QTest::qWaitFor([this] { return SliderOf("Ada")->value() == 30; }));
    EXPECT_THAT(TakePushed(), IsEmpty());
}

TEST_F(AudioMixerTest, LeavesASliderToThePersonWhoMovesIt) {
    mixer_.Open();
    QTest::keyClick(SliderOf("Bo"), Qt::Key_End);
    QTest::qWait(200);
    EXPECT_EQ(SliderOf("Bo")->value(), 100);
    // In the end the room has the last word.
    EXPECT_TRUE(QTest::qWaitFor([this] { return SliderOf("Bo")->value() == 50; }));
}

TEST_F(AudioMixerTest, ShowsWhoComesAndGoes) {
    mixer_.Open();
    Answers().participants = {{"p2", "Bo B.", 0.5, 0.0, false}, {"p3", "Cy", 1.0, 0.0, false}};
    EXPECT_TRUE(QTest::qWaitFor([this] { return SliderOf("Cy") != nullptr; }));
    EXPECT_EQ(SliderOf("Ada"), nullptr);
    EXPECT_NE(SliderOf("Bo B."), nullptr);
}

TEST_F(AudioMixerTest, OpensWithOneInFocus) {
    mixer_.OpenAt("p2", "Bo", 0.5);
    EXPECT_EQ(mixer_.focusWidget(), SliderOf("Bo"));
    EXPECT_EQ(mixer_.findChildren<QSlider*>().size(), 4);
}

TEST_F(AudioMixerTest, HasASliderForAnOwnStreamUntilItCloses) {
    mixer_.OpenAt("local-file", "clip.mp4", 0.7);
    ASSERT_NE(SliderOf("clip.mp4"), nullptr);
    EXPECT_EQ(SliderOf("clip.mp4")->value(), 70);
    QTest::qWait(250);
    ASSERT_NE(SliderOf("clip.mp4"), nullptr);
    static_cast<void>(TakePushed());
    QTest::keyClick(SliderOf("clip.mp4"), Qt::Key_Home);
    EXPECT_THAT(TakePushed(), ElementsAre("volume local-file 0"));
    mixer_.Close();
    mixer_.Open();
    EXPECT_EQ(SliderOf("clip.mp4"), nullptr);
}

TEST_F(AudioMixerTest, TellsThatThePersonClosedItAndOnlyThen) {
    mixer_.Open();
    mixer_.Close();
    EXPECT_FALSE(mixer_.isVisible());
    EXPECT_EQ(closed_, 0);
    mixer_.Open();
    mixer_.close();
    EXPECT_EQ(closed_, 1);
    EXPECT_FALSE(mixer_.isVisible());
}

}  // namespace
}  // namespace Corvanta::Host
