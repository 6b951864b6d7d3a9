#include "host/SidePanel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/host/RecordedEngine.h"

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SidePanelTest : public ::testing::Test {
protected:
    SidePanelTest() {
        ResetEngine();
        Answers().participants = {{"p1", "Ada", 1.0, 0.5, true}, {"p2", "Bo", 1.0, 0.0, false}};
        Answers().notes = "Ask about the cut";
        panel_ = std::make_unique<SidePanel>(
            nullptr, SidePanel::Wishes{
                         .close = [this] { wishes_.emplace_back("close"); },
                         .openSettings = [this] { wishes_.emplace_back("settings"); },
                         .remove = [this](const std::string& id,
                                          const std::string& name) { wishes_.push_back(id + " " + name); },
                         .tellNews = [this] { ++news_; }});
        panel_->resize(300, 480);
    }

    void Open(int page) {
        panel_->findChild<QTabWidget*>()->setCurrentIndex(page);
        panel_->show();
        panel_->FocusPage();
    }
    QPushButton* Button(const QString& name) {
        for (QPushButton* const button : panel_->findChildren<QPushButton*>()) {
            if (button->accessibleName() == name || button->text() == name) return button;
        }
        return nullptr;
    }
    bool Says(const QString& text) {
        for (const QLabel* const label : panel_->findChildren<QLabel*>()) {
            if (label->text() == text) return true;
        }
        return false;
    }

    std::vector<std::string> wishes_;
    int news_ = 0;
    std::unique_ptr<SidePanel> panel_;
};

TEST_F(SidePanelTest, KeepsTheOwnLinesOfTheChat) {
    Open(0);
    auto* const field = panel_->findChild<QLineEdit*>();
    QTest::keyClicks(field, "Hello");
    QTest::keyClick(field, Qt::Key_Return);
    QTest::keyClicks(field, "  ");
    QTest::keyClick(field, Qt::Key_Return);
    panel_->hide();
    panel_->show();
    const auto* const lines = panel_->findChild<QListWidget*>();
    ASSERT_EQ(lines->count(), 1);
    EXPECT_THAT(lines->item(0)->text().toStdString(),
                ::testing::MatchesRegex("You \\([0-9][0-9]:[0-9][0-9]\\): Hello"));
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("chat Hello"));
}

TEST_F(SidePanelTest, KeepsALineThatCouldNotBeSent) {
    Open(0);
    Answers().chatIsSent = false;
    auto* const field = panel_->findChild<QLineEdit*>();
    QTest::keyClicks(field, "Hello");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(field->text(), "Hello");
    EXPECT_EQ(panel_->findChild<QListWidget*>()->count(), 0);
    EXPECT_TRUE(Says("This was not sent. Try again in a moment"));
    Answers().chatIsSent = true;
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(field->text(), "");
    EXPECT_EQ(panel_->findChild<QListWidget*>()->count(), 1);
}

TEST_F(SidePanelTest, ShowsWhatTheOthersWriteAsPlainText) {
    Open(0);
    const auto now = std::chrono::system_clock::now();
    std::thread([&] { FireChatLine({"Ada", "<b>Grüße</b>\nan alle", now}); }).join();
    const auto* const lines = panel_->findChild<QListWidget*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return lines->count() == 1; }));
    const QString shown = lines->item(0)->text();
    EXPECT_TRUE(shown.startsWith("Ada (")) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith("): <b>Grüße</b>\nan alle")) << shown.toStdString();
    EXPECT_EQ(news_, 0) << "it is seen at once";
}

// Nobody writes in another one's name.
TEST_F(SidePanelTest, ShowsNamesOnOneLineAndTheRightWayRound) {
    Open(0);
    FireChatLine(
        {"Ada\n\x1b[1mBo\xE2\x80\xAE\xE2\x80\xA8 (12:00): Yes", "Hello", std::chrono::system_clock::now()});
    const auto* const lines = panel_->findChild<QListWidget*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return lines->count() == 1; }));
    EXPECT_TRUE(lines->item(0)->text().startsWith("Ada [1mBo (12:00): Yes ("))
        << lines->item(0)->text().toStdString();
}

TEST_F(SidePanelTest, TellsOfLinesThatNobodySees) {
    const auto write = [this] {
        const auto* const lines = panel_->findChild<QListWidget*>();
        const int before = lines->count();
        FireChatLine({"Ada", "Hello", std::chrono::system_clock::now()});
        return QTest::qWaitFor([&] { return lines->count() == before + 1; });
    };
    const auto* const pages = panel_->findChild<QTabWidget*>();
    const QString read = pages->tabText(0);
    ASSERT_TRUE(write());
    EXPECT_EQ(news_, 1);
    EXPECT_NE(pages->tabText(0), read);
    Open(0);
    EXPECT_EQ(pages->tabText(0), read);
    ASSERT_TRUE(write());
    EXPECT_EQ(news_, 1);
    // On another page the tab says it.
    Open(1);
    ASSERT_TRUE(write());
    EXPECT_EQ(news_, 1);
    EXPECT_NE(pages->tabText(0), read);
    Open(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return pages->tabText(0) == read; }));
}

TEST_F(SidePanelTest, KeepsNoMoreLinesThanAreRead) {
    Open(0);
    for (int line = 0; line < 1100; ++line)
        FireChatLine({"Ada", std::to_string(line), std::chrono::system_clock::now()});
    const auto* const lines = panel_->findChild<QListWidget*>();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return lines->count() > 0 && lines->item(lines->count() - 1)->text().endsWith(": 1099"); }));
    EXPECT_EQ(lines->count(), 1000);
}

TEST_F(SidePanelTest, ListensToNobodyAfterItHasGone) {
    FireChatLine({"Ada", "late", std::chrono::system_clock::now()});
    panel_.reset();
    QCoreApplication::processEvents();
    FireChatLine({"Ada", "later", std::chrono::system_clock::now()});
    QCoreApplication::processEvents();
    EXPECT_EQ(news_, 0);
}

TEST_F(SidePanelTest, ShowsTheRoomsNotes) {
    Open(1);
    const auto* const notes = panel_->findChild<QPlainTextEdit*>();
    EXPECT_EQ(notes->toPlainText(), "Ask about the cut");
}

TEST_F(SidePanelTest, ListsThePeopleAndMarksWhoSpeaks) {
    Open(2);
    EXPECT_TRUE(Says("Ada (speaking)"));
    EXPECT_TRUE(Says("Bo"));
    Answers().participants = {{"p2", "Bo", 1.0, 0.0, true}};
    EXPECT_TRUE(QTest::qWaitFor([this] { return Says("Bo (speaking)") && Button("Remove Ada") == nullptr; }));
}

TEST_F(SidePanelTest, AsksToRemoveThatPerson) {
    Open(2);
    Button("Remove Bo")->click();
    EXPECT_THAT(wishes_, ElementsAre("p2 Bo"));
}

TEST_F(SidePanelTest, TellsOfArrivalsWhileItIsHidden) {
    QTest::qWait(700);
    EXPECT_EQ(news_, 0) << "those who were there have not come";
    Answers().participants.push_back({"p3", "Cy", 1.0, 0.0, false});
    EXPECT_TRUE(QTest::qWaitFor([this] { return news_ == 1; }));
    Answers().participants.erase(Answers().participants.begin());
    QTest::qWait(700);
    EXPECT_EQ(news_, 1);
    Open(0);
    Answers().participants.push_back({"p4", "Di", 1.0, 0.0, false});
    QTest::qWait(300);
    panel_->hide();
    QTest::qWait(700);
    EXPECT_EQ(news_, 1);
}

TEST_F(SidePanelTest, SaysWhatIsOnAndTheKeyToTalk) {
    panel_->SetState({.microphone = true, .camera = false, .sound = true}, "Space");
    EXPECT_TRUE(Says("Microphone on, camera off, sound on. Hold Space to talk"));
    panel_->SetState({.microphone = false, .camera = false, .sound = true}, "");
    EXPECT_TRUE(Says("Microphone off, camera off, sound on"));
}

TEST_F(SidePanelTest, AsksForSettingsAndToBeClosed) {
    Open(0);
    Button("&Settings...")->click();
    Button("C&lose")->click();
    EXPECT_THAT(wishes_, ElementsAre("settings", "close"));
    EXPECT_TRUE(panel_->isVisible());
}

TEST_F(SidePanelTest, FitsANarrowWindow) {
    EXPECT_LE(panel_->minimumSizeHint().width(), 256);
    EXPECT_LE(panel_->minimumSizeHint().height(), 480);
}

}  // namespace
}  // namespace Corvanta::Host
