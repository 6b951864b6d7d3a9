#include "host/NotesPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextCursor>

#include <memory>
#include <string>
#include <thread>

#include "tests/host/RecordedEngine.h"

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NotesPageTest : public ::testing::Test {
protected:
    NotesPageTest() { ResetEngine(); }
    ~NotesPageTest() override { page_.reset(); }

    void Open(const std::string& notes) {
        Answers().notes = notes;
        page_ = std::make_unique<NotesPage>(nullptr);
        page_->show();
    }
    [[nodiscard]] QPlainTextEdit* Field() const { return page_->findChild<QPlainTextEdit*>(); }
    [[nodiscard]] std::string Shown() const { return Field()->toPlainText().toStdString(); }
    // At the end of the text.
    void Type(const QString& letters) const {
        Field()->moveCursor(QTextCursor::End);
        QTest::keyClicks(Field(), letters);
    }
    [[nodiscard]] bool Becomes(const std::string& text) const {
        return QTest::qWaitFor([&] { return Shown() == text; });
    }
    [[nodiscard]] std::string Problem() const {
        const auto* const label = page_->findChild<QLabel*>();
        return label->isVisible() ? label->text().toStdString() : std::string();
    }

    std::unique_ptr<NotesPage> page_;
};

TEST_F(NotesPageTest, ShowsWhatTheRoomHas) {
    Open("Ask about the cut");
    EXPECT_EQ(Shown(), "Ask about the cut");
    std::thread([] { FireNotes("Ask about the cut\nand the sound"); }).join();
    EXPECT_TRUE(Becomes("Ask about the cut\nand the sound"));
    page_.reset();
    EXPECT_THAT(TakeEngineCalls(), IsEmpty()) << "nobody has written anything";
}

TEST_F(NotesPageTest, KeepsWhatIsTypedAfterAPause) {
    Open("One");
    Type(" two");
    EXPECT_THAT(TakeEngineCalls(), IsEmpty()) << "not at every letter";
    EXPECT_TRUE(QTest::qWaitFor([] { return Answers().notes == "One two"; }));
    EXPECT_THAT(TakeEngineCalls(), ElementsAre("notes One two"));
}

TEST_F(NotesPageTest, KeepsTheLastLettersWhenTheProgramEnds) {
    Open("");
    Type("last");
    QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit");
    EXPECT_EQ(Answers().notes, "last");
    Type(" of all");
    page_.reset();
    EXPECT_EQ(Answers().notes, "last of all");
}

TEST_F(NotesPageTest, LosesNothingThatIsBeingTyped) {
    Open("top\nbottom");
    Type(" is mine");
    FireNotes("top is theirs\nbottom");
    EXPECT_TRUE(Becomes("top is theirs\nbottom is mine"));
    EXPECT_TRUE(QTest::qWaitFor([] { return Answers().notes == "top is theirs\nbottom is mine"; }));
    Type("!");
    FireNotes("top is theirs\nbottom is theirs");
    EXPECT_TRUE(Becomes("top is theirs\nbottom is theirs\nbottom is mine!"));
}

// The room has another text already, of which this side has not heard yet.
TEST_F(NotesPageTest, ShowsWhatWasMergedWhereItWasKept) {
    Open("top\nbottom");
    Type(" is mine");
    Answers().notes = "top is theirs\nbottom";
    EXPECT_TRUE(QTest::qWaitFor([] { return Answers().notes == "top is theirs\nbottom is mine"; }));
    EXPECT_TRUE(Becomes("top is theirs\nbottom is mine"));
    EXPECT_FALSE(QTest::qWaitFor([] { return TakeEngineCalls().size() > 1; }, 1500));
}

TEST_F(NotesPageTest, LeavesTheCursorAndTheStepsBackWhereTheyAre) {
    Open("one\nthree");
    QTextCursor cursor = Field()->textCursor();
    cursor.setPosition(9);
    Field()->setTextCursor(cursor);
    FireNotes("one\ntwo\nthree");
    ASSERT_TRUE(Becomes("one\ntwo\nthree"));
    EXPECT_EQ(Field()->textCursor().position(), 13);
    EXPECT_TRUE(Field()->document()->isUndoAvailable());
}

TEST_F(NotesPageTest, TakesTextsOfAllKindsWithoutWritingThemBack) {
    Open(
        "a\r\nb\xC2\xA0"
        "c\xE2\x80\xA8"
        "d \xF0\x9F\x98\x80");
    EXPECT_EQ(Shown(), "a\nb c\nd \xF0\x9F\x98\x80");
    FireNotes("a\nd \xF0\x9F\x98\x81");
    EXPECT_TRUE(Becomes("a\nd \xF0\x9F\x98\x81"));
    page_.reset();
    EXPECT_THAT(TakeEngineCalls(), IsEmpty());
}

TEST_F(NotesPageTest, SaysQuietlyWhenTheRoomCannotBeReached) {
    Open("");
    EXPECT_EQ(Problem(), "");
    Answers().notesStatus = Engine::NotesStatus::Unreachable;
    EXPECT_TRUE(QTest::qWaitFor([this] { return Problem().find("cannot be reached") != std::string::npos; }));
    Answers().notesStatus = Engine::NotesStatus::Refused;
    EXPECT_TRUE(QTest::qWaitFor([this] { return Problem().find("no place") != std::string::npos; }));
    Answers().notesStatus = Engine::NotesStatus::Kept;
    EXPECT_TRUE(QTest::qWaitFor([this] { return Problem().empty(); }));
}

TEST_F(NotesPageTest, SaysWhenThereIsTooMuch) {
    Open("");
    Field()->setPlainText(QString(static_cast<qsizetype>(Engine::kLongestNotes) + 1, QChar(u'x')));
    EXPECT_TRUE(QTest::qWaitFor([this] { return Problem().find("too long") != std::string::npos; }));
    EXPECT_THAT(TakeEngineCalls(), IsEmpty());
    Field()->setPlainText("short");
    EXPECT_TRUE(QTest::qWaitFor([] { return Answers().notes == "short"; }));
    EXPECT_EQ(Problem(), "");
}

TEST_F(NotesPageTest, WaitsForARoomWithWhatIsTyped) {
    Answers().notesStatus = Engine::NotesStatus::NoRoom;
    Open("nobody's");
    EXPECT_EQ(Shown(), "");
    Type("early");
    EXPECT_FALSE(QTest::qWaitFor([] { return !TakeEngineCalls().empty(); }, 1500));
    Answers().notesStatus = Engine::NotesStatus::Kept;
    FireNotes("there already");
    EXPECT_TRUE(QTest::qWaitFor([] { return Answers().notes == "there already\nearly"; }));
    EXPECT_TRUE(Becomes("there already\nearly"));
}

TEST_F(NotesPageTest, ListensToNobodyAfterItHasGone) {
    Open("");
    FireNotes("late");
    page_.reset();
    QCoreApplication::processEvents();
    FireNotes("later");
    QCoreApplication::processEvents();
}

}  // namespace
}  // namespace Corvanta::Host
