#include "host/ChatPage.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace Corvanta::Host {
namespace {

constexpr int kMostLetters = 4000;

}  // namespace

ChatPage::ChatPage(QWidget* parent) : QWidget(parent) {
    auto* const rows = new QVBoxLayout(this);
    lines_ = new QListWidget(this);
    lines_->setWordWrap(true);
    lines_->setSelectionMode(QAbstractItemView::NoSelection);
    lines_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lines_->setAccessibleName(QStringLiteral("Chat"));
    rows->addWidget(lines_, 1);
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
}

void ChatPage::Send() {
    const QString text = field_->text().trimmed();
    if (text.isEmpty()) return;
    lines_->addItem(QStringLiteral("You: ") + text);
    lines_->scrollToBottom();
    field_->clear();
}

}  // namespace Corvanta::Host
