#include "host/RoomControls.h"

#include <QKeySequence>
#include <QMessageBox>
#include <QMetaObject>
#include <QPushButton>
#include <QShortcut>

#include <utility>

#include "engine/Engine.h"
#include "host/HostWindow.h"
#include "host/SettingsDialog.h"
#include "host/ShownName.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

constexpr const char* kPushToTalkKey = "Device.PushToTalkKey";
constexpr std::chrono::milliseconds kNoticeTime{6000};
constexpr std::chrono::milliseconds kLookForConnectionEvery{250};
// The connection may still count as open when its loss is told.
constexpr std::chrono::milliseconds kLeastTimeOfLoss{2000};

}  // namespace

RoomControls::RoomControls(HostWindow& window)
    : window_(window),
      dialogs_(window, sharing_),
      bar_(new SharingBar(&window, [this](StreamType type) { sharing_.Stop(type); })),
      panel_(new SidePanel(
          &window,
          {.close = [this] { ClosePanel(); },
           .openSettings = [this] { OpenSettings(); },
           .remove = [this](const std::string& id, const std::string& name) { AskToRemove(id, name); },
           .tellNews = [] { SDLInterface_VideoRoomSetShowSidebarNotification(true); }})),
      mixer_(new AudioMixer(&window, [] { SDLInterface_VideoRoomUntoggleAudioMixer(); })),
      palette_(new DrawPalette(window, [this] { SetDrawTool(false); })),
      passing_(new Notice(window, Notice::Height::Low)),
      connection_(new Notice(window, Notice::Height::Middle)) {
    window_.SetBar(bar_);
    window_.SetPanel(panel_);
    sharing_.SetOnChanged([this] {
        bar_->SetShared(sharing_.Shared());
        window_.ShowBar(!sharing_.Shared().empty());
    });
    connectionTimer_.callOnTimeout([this] { LookForConnection(); });
    const auto onKey = [this](const QKeySequence& key, void (RoomControls::*action)()) {
        auto* const shortcut = new QShortcut(key, &window_);  // owned by the window
        QObject::connect(shortcut, &QShortcut::activated, this, [this, action] { (this->*action)(); });
    };
    onKey(Qt::Key_F2, &RoomControls::TogglePanel);
    onKey(Qt::Key_F3, &RoomControls::ToggleMixer);
    onKey(Qt::Key_F4, &RoomControls::ToggleDrawTool);
    onKey(Qt::CTRL | Qt::Key_Comma, &RoomControls::OpenSettings);
    Engine::SetDevicesChangedListener([this] {
        Later([](RoomControls& controls) {
            controls.dialogs_.RefreshDevices();
            if (auto* const settings = dynamic_cast<SettingsDialog*>(controls.settings_.data())) {
                settings->Refresh();
            }
        });
    });
}

RoomControls::~RoomControls() {
    Engine::SetDevicesChangedListener({});
    delete settings_;
    delete question_;
    delete mixer_;
    delete palette_;
    delete panel_;
    delete bar_;
    delete passing_;
    delete connection_;
}

void RoomControls::Later(std::function<void(RoomControls&)> action) {
    QMetaObject::invokeMethod(
        this, [this, action = std::move(action)] { action(*this); }, Qt::QueuedConnection);
}

void RoomControls::TellEntered() {
    state_.microphone = SDLinterface_VideoRoomGetMicEnabled();
    state_.camera = SDLinterface_VideoRoomGetVideoEnabled();
    ShowState();
    palette_->TellEntered();
}

void RoomControls::SetMicrophone(bool on) {
    state_.microphone = on;
    ShowState();
}

void RoomControls::SetCamera(bool on) {
    state_.camera = on;
    ShowState();
}

void RoomControls::SetSound(bool on) {
    state_.sound = on;
    ShowState();
}

void RoomControls::ShowState() {
    panel_->SetState(state_, Engine::ReadSetting(kPushToTalkKey));
}

void RoomControls::TellPushToTalk() {
    ShowState();
    const std::string text = PushToTalkText(Engine::ReadSetting(kPushToTalkKey));
    if (!text.empty()) passing_->ShowFor(QString::fromStdString(text), kNoticeTime);
}

void RoomControls::ShowPanel(bool on) {
    if (on) {
        ShowState();
        SDLInterface_VideoRoomSetShowSidebarNotification(false);
    }
    window_.ShowPanel(on);
    if (on) panel_->FocusPage();
}

void RoomControls::TogglePanel() {
    // As a click on the room's own button, which then asks for the panel, so that both agree.
    SDLinterface_VideoRoomUntoggleOptionsButton(true);
}

void RoomControls::ClosePanel() {
    window_.ShowPanel(false);
    SDLinterface_VideoRoomUntoggleOptionsButton(true);
}

void RoomControls::ShowMixer(bool on) {
    if (on) {
        mixer_->Open();
    } else {
        mixer_->Close();
    }
}

void RoomControls::ToggleMixer() {
    if (mixer_->isVisible()) {
        mixer_->close();  // as the person's own, which the room's button hears of
    } else {
        mixer_->Open();
    }
}

void RoomControls::OpenMixerAt(const std::string& streamId, const std::string& name, double volume) {
    mixer_->OpenAt(streamId, name, volume);
}

void RoomControls::SetDrawTool(bool on) {
    state_.drawTool = on;
    if (on) {
        palette_->Open();
    } else {
        palette_->Close();
    }
}

void RoomControls::OpenSettings() {
    // One that was closed stays a moment before it goes.
    if (settings_ == nullptr || !settings_->isVisible()) {
        settings_ = new SettingsDialog(&window_);
        settings_->setAttribute(Qt::WA_DeleteOnClose);
        QObject::connect(settings_, &QDialog::finished, this, [this] { ShowState(); });
    }
    settings_->show();
    settings_->raise();
    settings_->activateWindow();
}

void RoomControls::AskToRemove(const std::string& streamId, const std::string& name) {
    delete question_;  // of somebody else
    auto* const question = new QMessageBox(QMessageBox::Question, QStringLiteral("Remove from the room"),
                                           QStringLiteral("Remove %1 from the room?").arg(ShownName(name)),
                                           QMessageBox::Cancel, &window_);
    question->setTextFormat(Qt::PlainText);
    question->addButton(QStringLiteral("&Remove"), QMessageBox::AcceptRole);
    question->setDefaultButton(QMessageBox::Cancel);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setModal(false);
    QObject::connect(question, &QMessageBox::buttonClicked, this,
                     [question, streamId](QAbstractButton* button) {
                         if (question->buttonRole(button) == QMessageBox::AcceptRole)
                             Engine::RemoveParticipant(streamId);
                     });
    question_ = question;
    question->show();
}

void RoomControls::TellStill(const std::variant<std::filesystem::path, Failure>& still) {
    std::string text;
    if (const auto* const failure = std::get_if<Failure>(&still)) {
        text = failure->line;
    } else {
        text = "Saved ";
        text += std::get<std::filesystem::path>(still).string();
    }
    passing_->ShowFor(QString::fromStdString(text), kNoticeTime);
}

void RoomControls::TellConnectionDropped(bool willRetry, bool endedHere) {
    const std::string_view text = ConnectionText(willRetry, endedHere);
    connection_->ShowText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    droppedAt_ = std::chrono::steady_clock::now();
    connectionTimer_.start(kLookForConnectionEvery);
}

void RoomControls::LookForConnection() {
    if (std::chrono::steady_clock::now() < droppedAt_ + kLeastTimeOfLoss) return;
    if (!Engine::GetRoomStatus().connected) return;
    connection_->Hide();
    connectionTimer_.stop();
}

}  // namespace Corvanta::Host
