#include "host/RoomControls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>
#include <QToolButton>

#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "host/HostWindow.h"
#include "host/RoomCallbacks.h"
#include "host/SettingsDialog.h"
#include "host/WallControls.h"
#include "tests/host/RecordedEngine.h"
#include "tests/host/RecordedInterface.h"
#include "tests/host/TemporaryFolder.h"

namespace Corvanta::Host {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class RoomControlsTest : public ::testing::Test {
protected:
    RoomControlsTest() {
        ResetEngine();
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        window_.Room().setFocus();
        controls_.TellEntered();
        static_cast<void>(TakePushed());
    }

    static void Pass() { QApplication::processEvents(); }
    template <typename Widget>
    Widget& Part() {
        for (QObject* const child : window_.children()) {
            if (auto* const part = dynamic_cast<Widget*>(child)) return *part;
        }
        throw std::logic_error("no such part of the window");
    }
    // The notice that is shown, empty without one.
    QString NoticeText() {
        for (QObject* const child : window_.children()) {
            auto* const notice = dynamic_cast<Notice*>(child);
            if (notice != nullptr && notice->isVisible()) return notice->text();
        }
        return {};
    }
    static std::vector<std::string> TakeCalls() {
        std::vector<std::string> calls = TakePushed();
        std::erase_if(calls, [](const std::string& call) {
            return call.starts_with("text") || call.starts_with("move");
        });
        return calls;
    }

    HostWindow window_{"Review - Corvanta", 640, 480};
    WallControls wall_{window_, "Review"};
    RoomControls controls_{window_};
    const RoomCallbacks callbacks_{{.window = window_,
                                    .wall = wall_,
                                    .controls = controls_,
                                    .roomName = "Review",
                                    .sessionName = "review"}};
    const HostCallbacks table_ = RoomCallbacks::Table();
};

TEST_F(RoomControlsTest, TakesWhatTheRoomReportsOnTheNextPass) {
    EXPECT_TRUE(controls_.State().microphone);
    EXPECT_FALSE(controls_.State().camera);
    // As the room is entered.
    EXPECT_FALSE(controls_.State().sound);
    table_.OnMicrophoneChanged(false);
    table_.OnCameraToggled(true);
    table_.OnSpeakerToggled(true);
    table_.ShowDrawTool(true);
    EXPECT_TRUE(controls_.State().microphone);
    Pass();
    EXPECT_FALSE(controls_.State().microphone);
    EXPECT_TRUE(controls_.State().camera);
    EXPECT_TRUE(controls_.State().sound);
    EXPECT_TRUE(controls_.State().drawTool);
}

TEST_F(RoomControlsTest, NamesTheKeyToTalk) {
    table_.OnPushToTalkConfigured();
    Pass();
    EXPECT_EQ(NoticeText(), "");
    Answers().settings["Device.PushToTalkKey"] = "V";
    table_.OnPushToTalkConfigured();
    Pass();
    EXPECT_EQ(NoticeText(), "Hold V to talk");
}

TEST_F(RoomControlsTest, OpensThePanelBesideTheRoom) {
    table_.ShowOptions(true);
    Pass();
    EXPECT_TRUE(Part<SidePanel>().isVisible());
    EXPECT_EQ(window_.Room().width(), 384);
    EXPECT_EQ(Part<SidePanel>().geometry(), QRect(384, 0, 256, 480));
    EXPECT_THAT(TakeCalls(), Contains("notification false"));
    table_.ShowOptions(false);
    Pass();
    EXPECT_FALSE(Part<SidePanel>().isVisible());
    EXPECT_EQ(window_.Room().width(), 640);
    EXPECT_EQ(QApplication::focusWidget(), &window_.Room());
}

TEST_F(RoomControlsTest, ClicksTheRoomsButtonByTheKeyOfThePanel) {
    QTest::keyClick(&window_.Room(), Qt::Key_F2);
    EXPECT_THAT(TakeCalls(), ElementsAre("untoggle options true"));
    // The room asks for it.
    EXPECT_FALSE(Part<SidePanel>().isVisible());
}

TEST_F(RoomControlsTest, UntogglesTheRoomsButtonWhenThePersonClosesThePanel) {
    table_.ShowOptions(true);
    Pass();
    static_cast<void>(TakePushed());
    for (QPushButton* const button : Part<SidePanel>().findChildren<QPushButton*>()) {
        if (button->text() == "C&lose") button->click();
    }
    EXPECT_FALSE(Part<SidePanel>().isVisible());
    EXPECT_THAT(TakeCalls(), ElementsAre("untoggle options true"));
}

TEST_F(RoomControlsTest, ReleasesTheKeyToTalkWhenThePanelTakesTheKeyboard) {
    QTest::keyPress(&window_.Room(), Qt::Key_V);
    EXPECT_THAT(TakePushed(), Contains("key 0 V"));
    table_.ShowOptions(true);
    Pass();
    EXPECT_THAT(TakePushed(), Contains("key up 0 V"));
}

TEST_F(RoomControlsTest, ReleasesTheKeyToTalkWhenADialogTakesTheKeyboard) {
    QTest::keyPress(&window_.Room(), Qt::Key_Space);
    static_cast<void>(TakePushed());
    table_.StartNativeStream(3);
    EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() != &window_; }));
    EXPECT_THAT(TakePushed(), Contains("key up 0 Space"));
}

TEST_F(RoomControlsTest, OpensAndClosesTheMixer) {
    auto& mixer = Part<AudioMixer>();
    table_.ShowAudioMixer(true);
    EXPECT_FALSE(mixer.isVisible());
    Pass();
    EXPECT_TRUE(mixer.isVisible());
    table_.ShowAudioMixer(false);
    Pass();
    EXPECT_FALSE(mixer.isVisible());
    EXPECT_THAT(TakeCalls(), IsEmpty());
    table_.OpenAudioMixer("p1", "Ada", 0.5F, -1, -1);
    Pass();
    EXPECT_TRUE(mixer.isVisible());
    mixer.close();
    EXPECT_THAT(TakeCalls(), Contains("untoggle mixer"));
}

TEST_F(RoomControlsTest, OpensAndClosesTheMixerByItsKey) {
    auto& mixer = Part<AudioMixer>();
    QTest::keyClick(&window_.Room(), Qt::Key_F3);
    EXPECT_TRUE(mixer.isVisible());
    EXPECT_THAT(TakeCalls(), IsEmpty());
    controls_.ToggleMixer();
    EXPECT_FALSE(mixer.isVisible());
    EXPECT_THAT(TakeCalls(), Contains("untoggle mixer"));
}

TEST_F(RoomControlsTest, StartsStreamsFromAnotherThreadWithoutWaiting) {
    Answers().devices[Engine::DeviceKind::Camera] = {"Test picture"};
    std::jthread([this] { table_.StartNativeStream(3); }).join();
    EXPECT_EQ(QApplication::activeWindow(), &window_);
    const auto dialogTitled = [](const QString& title) {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->windowTitle() == title) return window;
        }
        return static_cast<QWidget*>(nullptr);
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialogTitled("Stream a device") != nullptr; }));
    dialogTitled("Stream a device")->close();
    std::jthread([this] {
        table_.StartScreenShare();
        table_.StartMediaSiloStream();
        table_.StartApplicationStream(0, 6, -1);
    }).join();
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialogTitled("Share a screen or window") != nullptr; }));
    EXPECT_EQ(dialogTitled("Stream a MediaSilo file"), nullptr);
}

TEST_F(RoomControlsTest, ShowsWhatIsSharedAndStopsIt) {
    auto& bar = Part<SharingBar>();
    static_cast<void>(Engine::ShareStream(StreamType::File, "clip.mp4"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.isVisible(); }));
    EXPECT_EQ(bar.width(), 640);
    EXPECT_EQ(window_.RoomFrame().geometry(), QRect(0, bar.height(), 640, 480 - bar.height()));
    static_cast<void>(TakeEngineCalls());
    bar.findChild<QPushButton*>()->click();
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("stop 4"));
    EXPECT_FALSE(bar.isVisible());
    EXPECT_EQ(window_.Room().geometry(), QRect(0, 0, 640, 480));
    EXPECT_EQ(window_.RoomFrame().geometry(), QRect(0, 0, 640, 480));
}

TEST_F(RoomControlsTest, ForgetsAStreamThatEndsByItself) {
    auto& bar = Part<SharingBar>();
    static_cast<void>(Engine::ShareStream(StreamType::Screenshare, "77"));
    static_cast<void>(Engine::ShareStream(StreamType::Device, "Test picture"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.findChildren<QPushButton*>().size() == 2; }));
    EndShared(StreamType::Screenshare);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.findChildren<QPushButton*>().size() == 1; }));
    EXPECT_TRUE(bar.isVisible());
    EndShared(StreamType::Device);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !bar.isVisible(); }));
}

TEST_F(RoomControlsTest, RemovesAPersonOnlyWhenTold) {
    const auto question = [this] { return window_.findChild<QMessageBox*>(); };
    const auto press = [&](QMessageBox::ButtonRole role) {
        for (QAbstractButton* const button : question()->buttons()) {
            if (question()->buttonRole(button) == role) return button->click();
        }
    };
    table_.RemoveParticipant("p1", "Ada");
    Pass();
    ASSERT_NE(question(), nullptr);
    EXPECT_EQ(question()->text(), "Remove Ada from the room?");
    press(QMessageBox::RejectRole);
    EXPECT_TRUE(QTest::qWaitFor([&] { return question() == nullptr; }));
    EXPECT_THAT(TakeEngineCalls(), IsEmpty());
    table_.RemoveParticipant("p1", "Ada");
    Pass();
    press(QMessageBox::AcceptRole);
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("remove p1"));
}

TEST_F(RoomControlsTest, KeepsAStillAndSaysWhere) {
    const TemporaryFolder folder;
    qputenv("XDG_CONFIG_HOME", folder.Path().c_str());
    std::ofstream(folder.Path() / "user-dirs.dirs")
        << "XDG_PICTURES_DIR=\"" << folder.Path().string() << "\"\n";
    const std::string written = folder.Path() / "exportedRemoteFrame.png";
    std::ofstream(written) << "picture";
    std::jthread([this, &written] { table_.OnStillExported(written.c_str()); }).join();
    EXPECT_FALSE(std::filesystem::exists(written));
    Pass();
    EXPECT_THAT(NoticeText().toStdString(), StartsWith("Saved " + folder.Path().string() + "/Review "));
    EXPECT_THAT(NoticeText().toStdString(), ::testing::EndsWith(" 1.png"));
    table_.OnStillExported(written.c_str());
    Pass();
    EXPECT_THAT(NoticeText().toStdString(), ::testing::HasSubstr("cannot be kept"));
    qunsetenv("XDG_CONFIG_HOME");
}

TEST_F(RoomControlsTest, ShowsThePointerThatTheRoomAsksFor) {
    const auto shapeOf = [this](int cursor) {
        table_.SetCursor(cursor);
        return window_.Room().cursor().shape();
    };
    EXPECT_EQ(shapeOf(1), Qt::PointingHandCursor);
    EXPECT_EQ(shapeOf(0), Qt::ArrowCursor);
    EXPECT_EQ(shapeOf(2), Qt::IBeamCursor) << "over the text that is typed";
    EXPECT_EQ(shapeOf(3), Qt::SizeAllCursor) << "where that text is moved";
    for (const int unknown : {4, 7, -1}) {
        EXPECT_EQ(shapeOf(1), Qt::PointingHandCursor);
        EXPECT_EQ(shapeOf(unknown), Qt::ArrowCursor) << unknown;
    }
}

TEST_F(RoomControlsTest, OpensThePaletteWhenTheRoomAsksAndClosesItByItsButton) {
    auto& palette = Part<DrawPalette>();
    table_.ShowDrawTool(true);
    EXPECT_FALSE(palette.isVisible());
    Pass();
    EXPECT_TRUE(palette.isVisible());
    EXPECT_TRUE(controls_.State().drawTool);
    EXPECT_THAT(TakeCalls(), ElementsAre(StartsWith("draw tool true 0 ")));
    for (QToolButton* const button : palette.findChildren<QToolButton*>()) {
        if (button->accessibleName() == "Close") button->click();
    }
    EXPECT_FALSE(palette.isVisible());
    EXPECT_FALSE(controls_.State().drawTool);
    EXPECT_THAT(TakeCalls(), ElementsAre(StartsWith("draw tool false 0 ")));
}

TEST_F(RoomControlsTest, OpensAndClosesThePaletteByItsKey) {
    auto& palette = Part<DrawPalette>();
    QTest::keyClick(&window_.Room(), Qt::Key_F4);
    EXPECT_TRUE(palette.isVisible());
    QTest::keyClick(&window_.Room(), Qt::Key_F4);
    EXPECT_FALSE(palette.isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &window_.Room());
}

TEST_F(RoomControlsTest, EnablesUndoAndRedoAsTheRoomReports) {
    const auto enabled = [this](const QString& name) {
        for (QToolButton* const button : Part<DrawPalette>().findChildren<QToolButton*>()) {
            if (button->accessibleName() == name) return button->isEnabled();
        }
        throw std::logic_error("no such button");
    };
    EXPECT_FALSE(enabled("Undo"));
    table_.ReportHistoryState(true, false);
    Pass();
    EXPECT_TRUE(enabled("Undo"));
    EXPECT_FALSE(enabled("Redo"));
    table_.ReportHistoryState(false, true);
    Pass();
    EXPECT_FALSE(enabled("Undo"));
    EXPECT_TRUE(enabled("Redo"));
}

TEST_F(RoomControlsTest, HandsTheDrawingToolsSettingsToTheRoomThatIsEntered) {
    controls_.TellEntered();
    EXPECT_THAT(TakeCalls(), ElementsAre(StartsWith("draw tool false 0 5 ")));
}

TEST_F(RoomControlsTest, SaysThatTheConnectionIsLostUntilItIsBack) {
    Answers().connected = false;
    std::jthread([] { RoomCallbacks::OnConnectionDropped(true, false); }).join();
    Pass();
    EXPECT_EQ(NoticeText(), "The connection was lost. Trying again...");
    QTest::qWait(2500);
    EXPECT_EQ(NoticeText(), "The connection was lost. Trying again...");
    Answers().connected = true;
    EXPECT_TRUE(QTest::qWaitFor([this] { return NoticeText().isEmpty(); }));
}

TEST_F(RoomControlsTest, TellsTheRoomOfArrivalsBehindAHiddenPanel) {
    QTest::qWait(700);
    Answers().participants.push_back({"p1", "Ada", 1.0, 0.0, false});
    EXPECT_TRUE(QTest::qWaitFor([] {
        const auto calls = TakeCalls();
        return std::ranges::find(calls, "notification true") != calls.end();
    }));
}

TEST_F(RoomControlsTest, OpensOneSettingsDialogByItsKey) {
    const auto settings = [this] { return window_.findChildren<QDialog*>(); };
    QTest::keyClick(&window_.Room(), Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_EQ(settings().size(), 1);
    EXPECT_EQ(settings().first()->windowTitle(), "Settings");
    controls_.OpenSettings();
    EXPECT_EQ(settings().size(), 1);
    Answers().devices[Engine::DeviceKind::Camera] = {"New camera"};
    std::jthread([] { FireDevicesChanged(); }).join();
    Pass();
    EXPECT_GE(settings().first()->findChildren<QComboBox*>().first()->findText("New camera"), 0);
}

TEST_F(RoomControlsTest, FitsTheNoticeIntoANarrowRoom) {
    window_.resize(300, 200);
    controls_.TellStill(
        std::filesystem::path("/a/very/long/path/with many words/that does not fit/one line.png"));
    for (QObject* const child : window_.children()) {
        const auto* const notice = dynamic_cast<Notice*>(child);
        if (notice != nullptr && notice->isVisible()) {
            EXPECT_TRUE(window_.RoomFrame().geometry().contains(notice->geometry()));
        }
    }
}

}  // namespace
}  // namespace Corvanta::Host
