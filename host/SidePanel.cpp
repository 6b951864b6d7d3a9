#include "host/SidePanel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

#include "engine/Engine.h"
#include "host/ChatPage.h"
#include "host/NotesPage.h"

namespace Corvanta::Host {
namespace {

// Meters want a quick eye, an arrival does not.
constexpr std::chrono::milliseconds kLookWhenShown{100};
constexpr std::chrono::milliseconds kLookWhenHidden{500};
constexpr int kMargin = 8;
constexpr int kChatPage = 0;

}  // namespace

SidePanel::SidePanel(QWidget* parent, Wishes wishes) : QWidget(parent), wishes_(std::move(wishes)) {
    setAutoFillBackground(true);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    pages_ = new QTabWidget(this);
    pages_->setDocumentMode(true);
    // A narrow panel scrolls its tabs rather than growing.
    pages_->setUsesScrollButtons(true);
    people_ = new PeopleList(pages_, wishes_.remove);
    pages_->addTab(new ChatPage(pages_, [this] { OnChatLine(); }), QString());
    MarkChat(false);
    pages_->addTab(new NotesPage(pages_), QStringLiteral("&Notes"));
    pages_->addTab(people_, QStringLiteral("&People"));
    rows->addWidget(pages_, 1);
    state_ = new QLabel(this);
    state_->setWordWrap(true);
    state_->setTextFormat(Qt::PlainText);
    state_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    rows->addWidget(state_);
    auto* const buttons = new QHBoxLayout;
    auto* const settings = new QPushButton(QStringLiteral("&Settings..."), this);
    auto* const close = new QPushButton(QStringLiteral("C&lose"), this);
    buttons->addWidget(settings);
    buttons->addStretch();
    buttons->addWidget(close);
    rows->addLayout(buttons);
    QObject::connect(settings, &QPushButton::clicked, this, [this] { wishes_.openSettings(); });
    QObject::connect(close, &QPushButton::clicked, this, [this] { wishes_.close(); });
    timer_.callOnTimeout([this] { Look(); });
    timer_.start(kLookWhenHidden);
}

void SidePanel::SetState(const RoomState& state, const std::string& pushToTalkKey) {
    std::string text = StatusText(state);
    const std::string pushToTalk = PushToTalkText(pushToTalkKey);
    if (!pushToTalk.empty()) {
        text += ". ";
        text += pushToTalk;
    }
    state_->setText(QString::fromStdString(text));
}

void SidePanel::FocusPage() {
    QWidget* const page = pages_->currentWidget();
    // A page without a field of its own leaves the keyboard to the tabs.
    if (page->focusPolicy() == Qt::NoFocus && page->focusProxy() == nullptr) {
        pages_->setFocus();
    } else {
        page->setFocus();
    }
}

void SidePanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Look();
    timer_.start(kLookWhenShown);
}

void SidePanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.start(kLookWhenHidden);
}

void SidePanel::Look() {
    const std::vector<Engine::ParticipantInfo> people = Engine::ListParticipants();
    std::set<std::string> there;
    for (const Engine::ParticipantInfo& person : people) there.insert(person.streamId);
    const bool joined = known_ && !std::ranges::includes(*known_, there);
    known_ = std::move(there);
    if (isVisible()) {
        if (pages_->currentIndex() == kChatPage) MarkChat(false);
        people_->SetPeople(people);
    } else if (joined) {
        wishes_.tellNews();
    }
}

void SidePanel::OnChatLine() {
    if (isVisible() && pages_->currentIndex() == kChatPage) return;
    MarkChat(true);
    // An open panel shows the mark itself.
    if (!isVisible()) wishes_.tellNews();
}

void SidePanel::MarkChat(bool isUnread) {
    pages_->setTabText(kChatPage, isUnread ? QStringLiteral("&Chat \u2022") : QStringLiteral("&Chat"));
}

}  // namespace Corvanta::Host
