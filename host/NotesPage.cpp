#include "host/NotesPage.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QTextOption>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

#include "engine/Engine.h"

namespace Corvanta::Host {
namespace {

// Not at every letter.
constexpr std::chrono::milliseconds kKeepAfter{1000};
constexpr std::chrono::milliseconds kLookEvery{500};
// When another process takes the room's service over, nobody answers for a second or two.
constexpr int kLostLooks = 5;

// As a field of this toolkit has it.
QString Plain(const std::string& text) {
    QString plain = QString::fromStdString(text);
    plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (const QChar feed : {QChar(u'\r'), QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator),
                             QChar(char16_t{0xFDD0}), QChar(char16_t{0xFDD1}), QChar(QChar::Null)})
        plain.replace(feed, QChar(u'\n'));
    return plain.replace(QChar(QChar::Nbsp), QChar(u' '));
}

QString ProblemText(Engine::NotesStatus status, bool isTooLong) {
    if (isTooLong) return QStringLiteral("The notes are too long: the last changes are not kept");
    if (status == Engine::NotesStatus::Unreachable)
        return QStringLiteral(
            "The room's notes cannot be reached. What you write is kept here until they can");
    if (status == Engine::NotesStatus::Refused)
        return QStringLiteral("The room has no place for these notes. They are kept here");
    return {};
}

}  // namespace

NotesPage::NotesPage(QWidget* parent) : QWidget(parent) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    text_ = new QPlainTextEdit(this);
    text_->setPlaceholderText(QStringLiteral("Notes of the room"));
    text_->setAccessibleName(QStringLiteral("Notes"));
    text_->setTabChangesFocus(true);
    // Whoever is in the room may write a word without end, which takes minutes to be broken anywhere.
    text_->setWordWrapMode(QTextOption::WordWrap);
    setFocusProxy(text_);
    rows->addWidget(text_, 1);
    problem_ = new QLabel(this);
    problem_->setWordWrap(true);
    problem_->setTextFormat(Qt::PlainText);
    problem_->hide();
    rows->addWidget(problem_);
    keepTimer_.setSingleShot(true);
    keepTimer_.callOnTimeout([this] { Keep(); });
    lookTimer_.callOnTimeout([this] { Look(); });
    QObject::connect(text_, &QPlainTextEdit::textChanged, this, [this] {
        // Who writes on and on without a pause is read by the others meanwhile.
        if (!keepTimer_.isActive()) keepTimer_.start(kKeepAfter);
    });
    // The room is closed before the window goes.
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] { Keep(); });
    // Called on a thread of the engine. What is still on its way when the page goes is dropped with it.
    Engine::SetNotesListener([this](const std::string&) {
        QMetaObject::invokeMethod(
            this, [this] { Take(); }, Qt::QueuedConnection);
    });
    Take();
}

NotesPage::~NotesPage() {
    Engine::SetNotesListener({});
    if (keepTimer_.isActive()) Keep();
}

void NotesPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Look();
    lookTimer_.start(kLookEvery);
}

void NotesPage::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    lookTimer_.stop();
}

void NotesPage::Keep() {
    keepTimer_.stop();
    const std::string typed = Typed();
    isTooLong_ = typed.size() > Engine::kLongestNotes;
    if (typed != base_ && !isTooLong_) {
        if (Engine::SetNotes(typed, base_)) {
            base_ = typed;
        } else {
            // There is no room yet.
            keepTimer_.start(kKeepAfter);
        }
        Take();
    }
    Look();
}

void NotesPage::Take() {
    if (Engine::GetNotesStatus() == Engine::NotesStatus::NoRoom) return;
    const std::string current = Plain(Engine::GetNotes()).toStdString();
    if (current == base_) return;
    const std::string merged = Engine::MergeNotes(base_, Typed(), current);
    base_ = current;
    Show(merged);
    if (merged != current && !keepTimer_.isActive()) keepTimer_.start(kKeepAfter);
}

void NotesPage::Look() {
    auto status = Engine::GetNotesStatus();
    lostLooks_ = status == Engine::NotesStatus::Unreachable ? lostLooks_ + 1 : 0;
    if (lostLooks_ > 0 && lostLooks_ < kLostLooks) status = Engine::NotesStatus::Sending;
    const QString problem = ProblemText(status, isTooLong_);
    problem_->setText(problem);
    problem_->setVisible(!problem.isEmpty());
}

std::string NotesPage::Typed() const {
    return text_->toPlainText().toStdString();
}

void NotesPage::Show(const std::string& text) {
    const QString shown = text_->toPlainText();
    const QString wanted = QString::fromStdString(text);
    const auto shorter = std::min(shown.size(), wanted.size());
    qsizetype head = 0;
    while (head < shorter && shown[head] == wanted[head]) ++head;
    if (head > 0 && shown[head - 1].isHighSurrogate()) --head;
    qsizetype tail = 0;
    while (tail < shorter - head && shown[shown.size() - tail - 1] == wanted[wanted.size() - tail - 1])
        ++tail;
    if (tail > 0 && shown[shown.size() - tail].isLowSurrogate()) --tail;
    const QSignalBlocker quiet(text_);
    QTextCursor change(text_->document());
    change.setPosition(static_cast<int>(head));
    change.setPosition(static_cast<int>(shown.size() - tail), QTextCursor::KeepAnchor);
    change.insertText(wanted.mid(head, wanted.size() - tail - head));
}

}  // namespace Corvanta::Host
