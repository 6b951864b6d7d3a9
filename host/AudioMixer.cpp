#include "host/AudioMixer.h"

#include <QCloseEvent>
#include <QFrame>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include <chrono>
#include <set>
#include <utility>

#include "host/ShownName.h"
#include "host/VolumeRow.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kLookEvery{100};
constexpr int kWidth = 320;
constexpr int kHeight = 420;
constexpr double kFull = 1.0;

}  // namespace

AudioMixer::AudioMixer(QWidget* parent, std::function<void()> onClosed)
    : QWidget(parent, Qt::Dialog), onClosed_(std::move(onClosed)) {
    setWindowTitle(QStringLiteral("Audio mixer"));
    resize(kWidth, kHeight);
    auto* const all = new QVBoxLayout(this);
    all->addWidget(new VolumeRow(this, QStringLiteral("All participants"), kFull, VolumeRow::Meter::None,
                                 SDLInterface_VideoRoomSetParticipantsVolume));
    all->addWidget(new VolumeRow(this, QStringLiteral("All streams"), kFull, VolumeRow::Meter::None,
                                 SDLInterface_VideoRoomSetStreamsVolume));
    scroll_ = new QScrollArea(this);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    // The keyboard goes from slider to slider.
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* const content = new QWidget;
    rows_ = new QVBoxLayout(content);
    rows_->addStretch();
    scroll_->setWidget(content);
    all->addWidget(scroll_, 1);
    auto* const escape = new QShortcut(Qt::Key_Escape, this);
    QObject::connect(escape, &QShortcut::activated, this, [this] { close(); });
    timer_.callOnTimeout([this] { Look(); });
}

void AudioMixer::Open() {
    Look();
    timer_.start(kLookEvery);
    show();
    raise();
    activateWindow();
}

void AudioMixer::OpenAt(const std::string& streamId, const std::string& name, double volume) {
    Open();
    auto found = entries_.find(streamId);
    if (found == entries_.end()) {
        VolumeRow* const row = AddRow(streamId, ShownName(name), volume);
        found = entries_.emplace(streamId, Entry{row, true}).first;
    }
    found->second.row->FocusSlider();
    // A row that has just been made has its place after this.
    rows_->activate();
    scroll_->ensureWidgetVisible(found->second.row);
}

void AudioMixer::Close() {
    End();
    hide();
}

void AudioMixer::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    End();
    onClosed_();
}

void AudioMixer::End() {
    timer_.stop();
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        const auto next = std::next(entry);
        if (entry->second.isExtra) Remove(entry);
        entry = next;
    }
}

VolumeRow* AudioMixer::AddRow(const std::string& streamId, const QString& name, double volume) {
    auto* const row =
        new VolumeRow(scroll_->widget(), name, volume, VolumeRow::Meter::Shown, [streamId](float position) {
            SDLInterface_VideoRoomSetParticipantVolume(streamId.c_str(), position);
        });
    rows_->insertWidget(rows_->count() - 1, row);
    return row;
}

void AudioMixer::Remove(std::map<std::string, Entry>::iterator entry) {
    delete entry->second.row;
    entries_.erase(entry);
}

void AudioMixer::Look() {
    std::set<std::string> there;
    for (const Engine::ParticipantInfo& participant : Engine::ListParticipants()) {
        there.insert(participant.streamId);
        const QString name = ShownName(participant.name);
        Entry& entry = entries_[participant.streamId];
        if (entry.row == nullptr) entry.row = AddRow(participant.streamId, name, participant.volume);
        entry.isExtra = false;
        entry.row->SetName(name);
        entry.row->SetVolume(participant.volume);
        entry.row->SetLoudness(participant.loudness);
    }
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        const auto next = std::next(entry);
        if (!entry->second.isExtra && !there.contains(entry->first)) Remove(entry);
        entry = next;
    }
}

}  // namespace Corvanta::Host
