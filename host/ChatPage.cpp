#include "host/ChatPage.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <utility>

#include "host/ShownName.h"

namespace Corvanta::Host {
namespace {

constexpr int kMostLetters = 4000;
// The oldest lines go, so that a long session costs no more than a short one.
constexpr int kMostLines = 1000;

}  // namespace

ChatPage::ChatPage(QWidget* parent, std::function<void()> onLine)
    : QWidget(parent), onLine_(std::move(onLine)) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    lines_ = new QListWidget(this);
    lines_->setWordWrap(true);
    lines_->setSelectionMode(QAbstractItemView::NoSelection);
    lines_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lines_->setAccessibleName(QStringLiteral("Chat"));
    rows->addWidget(lines_, 1);
    problem_ = new QLabel(this);
    problem_->setWordWrap(true);
    problem_->setTextFormat(Qt::PlainText);
    problem_->hide();
    rows->addWidget(problem_);
    auto* const row = new QHBoxLayout;
    field_ = new QLineEdit(this);
    field_->setPlaceholderText(QStringLiteral("Write to the room"));
    field_->setMaxLength(kMostLetters);
    setFocusProxy(field_);
    auto* const send = new QPushButton(QStringLiteral("Send"), this);
    row->addWidget(field_, 1);
    row->addWidget(send);
    rows->addLayout(row);
    QObject::connect(field_, &QLineEdit::returnPressed, this, [this] { Send(); });
    QObject::connect(send, &QPushButton::clicked, this, [this] { Send(); });
    // Called on a thread of the engine. What is still on its way when the page goes is dropped with it.
    Engine::SetChatListener([this](const Engine::ChatLine& line) {
        QMetaObject::invokeMethod(
            this, [this, line] { Add(line); }, Qt::QueuedConnection);
    });
}

ChatPage::~ChatPage() {
    Engine::SetChatListener({});
}

void ChatPage::Add(const Engine::ChatLine& line) {
    AddRow(ShownName(line.name), line.time, QString::fromStdString(line.text));
    onLine_();
}

void ChatPage::AddRow(const QString& name, std::chrono::system_clock::time_point time, const QString& text) {
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    const QString clock =
        QDateTime::fromMSecsSinceEpoch(sinceEpoch.count()).toString(QStringLiteral("HH:mm"));
    // Who reads what was written before is left there.
    const auto* const bar = lines_->verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    lines_->addItem(QStringLiteral("%1 (%2): ").arg(name, clock) + text);
    while (lines_->count() > kMostLines) delete lines_->takeItem(0);
    if (isAtEnd) lines_->scrollToBottom();
}

void ChatPage::Send() {
    const QString text = field_->text().trimmed();
    if (text.isEmpty()) return;
    const std::string bytes = text.toStdString();
    const bool isSent = Engine::SendChat(bytes);
    problem_->setText(bytes.size() > Engine::kLongestChat
                          ? QStringLiteral("This is too long to be sent at once")
                          : QStringLiteral("This was not sent. Try again in a moment"));
    problem_->setVisible(!isSent);
    if (!isSent) return;
    AddRow(QStringLiteral("You"), std::chrono::system_clock::now(), text);
    lines_->scrollToBottom();
    field_->clear();
}

}  // namespace Corvanta::Host
