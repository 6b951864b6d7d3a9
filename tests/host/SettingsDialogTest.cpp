#include "host/SettingsDialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <string>
#include <vector>

#include "host/KeyButton.h"
#include "tests/host/RecordedEngine.h"
#include "tests/host/RecordedInterface.h"

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SettingsDialogTest : public ::testing::Test {
protected:
    SettingsDialogTest() {
        ResetEngine();
        Answers().devices[Engine::DeviceKind::Camera] = {"Desk camera", "Test picture"};
        Answers().devices[Engine::DeviceKind::Microphone] = {"Test tone"};
        Answers().devices[Engine::DeviceKind::Speaker] = {"Headphones"};
        Answers().settings["Device.Speaker"] = "Old speaker";
        Answers().settings["Device.PushToTalkKey"] = "V";
        Answers().settings["ProcessMonitor.AutodeskFlame"] = "flame2";
        static_cast<void>(TakePushed());
        dialog_ = std::make_unique<SettingsDialog>(nullptr);
        dialog_->show();
    }

    // Camera, microphone, speaker.
    QComboBox& Box(qsizetype number) { return *dialog_->findChildren<QComboBox*>().at(number); }
    void Choose(qsizetype number, const QString& text) {
        Box(number).setCurrentIndex(Box(number).findText(text));
        Q_EMIT Box(number).activated(Box(number).currentIndex());
    }
    static std::vector<std::string> Items(const QComboBox& box) {
        std::vector<std::string> items;
        items.reserve(static_cast<size_t>(box.count()));
        for (int i = 0; i < box.count(); ++i) items.push_back(box.itemText(i).toStdString());
        return items;
    }
    KeyButton& Key() {
        for (QPushButton* const button : dialog_->findChildren<QPushButton*>()) {
            if (auto* const key = dynamic_cast<KeyButton*>(button)) return *key;
        }
        throw std::logic_error("no button for the key");
    }

    std::unique_ptr<SettingsDialog> dialog_;
};

TEST_F(SettingsDialogTest, OffersTheDevicesOfEachKindAndNone) {
    EXPECT_THAT(Items(Box(0)), ElementsAre("Automatic", "Desk camera", "Test picture", "None"));
    EXPECT_THAT(Items(Box(1)), ElementsAre("Automatic", "Test tone", "None"));
    EXPECT_EQ(Box(0).currentText(), "Automatic");
}

TEST_F(SettingsDialogTest, ShowsAChosenDeviceThatIsNotThere) {
    EXPECT_THAT(Items(Box(2)), ElementsAre("Automatic", "Headphones", "None", "Old speaker (not there)"));
    EXPECT_EQ(Box(2).currentText(), "Old speaker (not there)");
}

TEST_F(SettingsDialogTest, TellsTheRoomOfAnotherCamera) {
    Choose(0, "Desk camera");
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("set Device.Camera Desk camera"));
    EXPECT_THAT(TakePushed(), ElementsAre("camera Desk camera"));
    Choose(0, "None");
    EXPECT_THAT(TakePushed(), ElementsAre("camera None"));
    Choose(0, "Automatic");
    EXPECT_THAT(TakePushed(), ElementsAre("camera configured"));
    EXPECT_EQ(Answers().settings["Device.Camera"], "");
}

TEST_F(SettingsDialogTest, TellsTheRoomOfOtherSoundDevices) {
    Choose(1, "None");
    Choose(2, "Headphones");
    EXPECT_THAT(TakeEngineCalls(),
                ElementsAre("set Device.Microphone None", "set Device.Speaker Headphones"));
    EXPECT_THAT(TakePushed(), ElementsAre("sound devices false", "sound devices false"));
}

TEST_F(SettingsDialogTest, TellsNothingOfTheSameDevice) {
    Choose(2, "Old speaker (not there)");
    EXPECT_THAT(TakeEngineCalls(), IsEmpty());
    EXPECT_THAT(TakePushed(), IsEmpty());
}

TEST_F(SettingsDialogTest, FollowsDevicesThatComeAndGo) {
    Answers().devices[Engine::DeviceKind::Speaker] = {"Headphones", "Old speaker"};
    Answers().devices[Engine::DeviceKind::Camera] = {"Test picture"};
    dialog_->Refresh();
    EXPECT_THAT(Items(Box(2)), ElementsAre("Automatic", "Headphones", "Old speaker", "None"));
    EXPECT_EQ(Box(2).currentText(), "Old speaker");
    EXPECT_THAT(Items(Box(0)), ElementsAre("Automatic", "Test picture", "None"));
    EXPECT_THAT(TakePushed(), IsEmpty());
    EXPECT_THAT(TakeEngineCalls(), IsEmpty());
}

TEST_F(SettingsDialogTest, TakesTheNextKeyForPushToTalk) {
    EXPECT_EQ(Key().text(), "V");
    Key().click();
    EXPECT_EQ(Key().text(), "Press a key...");
    QTest::keyClick(&Key(), Qt::Key_T);
    EXPECT_EQ(Key().text(), "T");
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("set Device.PushToTalkKey T"));
    // And only that one.
    QTest::keyClick(&Key(), Qt::Key_B);
    EXPECT_THAT(TakeEngineCalls(), IsEmpty());
}

TEST_F(SettingsDialogTest, TakesSpaceAsAKeyToo) {
    QTest::keyClick(&Key(), Qt::Key_Space);
    EXPECT_EQ(Key().text(), "Press a key...");
    QTest::keyClick(&Key(), Qt::Key_Space);
    EXPECT_EQ(Key().text(), "Space");
    EXPECT_EQ(Answers().settings["Device.PushToTalkKey"], "Space");
}

TEST_F(SettingsDialogTest, LeavesTheKeyWhenThePersonThinksBetter) {
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Tab}) {
        Key().click();
        QTest::keyClick(&Key(), key);
        EXPECT_EQ(Key().text(), "V");
    }
    Key().click();
    // No key of the room's vocabulary.
    QTest::keyClick(&Key(), Qt::Key_F5);
    EXPECT_EQ(Key().text(), "Press a key...");
    EXPECT_THAT(TakeEngineCalls(), IsEmpty());
    EXPECT_TRUE(dialog_->isVisible());
}

TEST_F(SettingsDialogTest, ClearsTheKey) {
    for (QPushButton* const button : dialog_->findChildren<QPushButton*>()) {
        if (button->accessibleName() == "No key for push-to-talk") button->click();
    }
    EXPECT_EQ(Key().text(), "No key");
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("set Device.PushToTalkKey "));
}

TEST_F(SettingsDialogTest, KeepsTheNamesOfThePrograms) {
    QList<QLineEdit*> fields = dialog_->findChildren<QLineEdit*>();
    ASSERT_EQ(fields.size(), 2);
    EXPECT_EQ(fields[0]->text(), "");
    EXPECT_EQ(fields[1]->text(), "flame2");
    fields[0]->setText(" resolve-bin ");
    QTest::keyClick(fields[0], Qt::Key_Return);
    QTest::keyClick(fields[1], Qt::Key_Return);
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("set ProcessMonitor.DaVinciResolve resolve-bin"));
}

}  // namespace
}  // namespace Corvanta::Host
