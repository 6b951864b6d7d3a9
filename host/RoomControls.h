// What the room asks of the program around it, and what the person does there: dialogs, the side panel, the
// mixer, notices. Made before the room is entered; it stays until the room has ended. Main thread only, but
// for Later.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "host/AudioMixer.h"
#include "host/DrawPalette.h"
#include "host/Failure.h"
#include "host/Notice.h"
#include "host/RoomState.h"
#include "host/SharingBar.h"
#include "host/SidePanel.h"
#include "host/StreamDialogs.h"
#include "host/StreamSharing.h"

namespace Corvanta::Host {

class HostWindow;
class SettingsDialog;

class RoomControls final : public QObject {
public:
    // Gives the window its bar, its panel and its keys; it must outlive this object.
    explicit RoomControls(HostWindow& window);
    ~RoomControls() override;
    RoomControls(const RoomControls&) = delete;
    RoomControls& operator=(const RoomControls&) = delete;

    // Does it on the next pass of the event loop, or never if this object goes before. What follows opens
    // windows and calls into the library, and so is not for a function that the room calls: these take this
    // way. Any thread.
    void Later(std::function<void(RoomControls&)> action);

    // The room is entered: what it starts with.
    void TellEntered();

    void SetMicrophone(bool on);
    void SetCamera(bool on);
    void SetSound(bool on);
    void TellPushToTalk();
    void ShowPanel(bool on);
    void TogglePanel();
    void ShowMixer(bool on);
    void ToggleMixer();
    void OpenMixerAt(const std::string& streamId, const std::string& name, double volume);
    void StartStream(StreamType type) { dialogs_.Open(type); }
    void StartApplication(StreamType type, std::int32_t processId) {
        dialogs_.StartApplication(type, processId);
    }
    void StartMediaSilo() { dialogs_.OpenMediaSilo(); }
    void OpenSettings();
    void AskToRemove(const std::string& streamId, const std::string& name);
    void TellStill(const std::variant<std::filesystem::path, Failure>& still);
    void TellConnectionDropped(bool willRetry, bool endedHere);
    void SetDrawTool(bool on);
    void ToggleDrawTool() { SetDrawTool(!state_.drawTool); }
    void SetDrawHistory(bool canUndo, bool canRedo) { palette_->SetHistory(canUndo, canRedo); }

    [[nodiscard]] const RoomState& State() const { return state_; }

private:
    void ShowState();
    void ClosePanel();
    void LookForConnection();

    HostWindow& window_;
    RoomState state_;
    StreamSharing sharing_;
    StreamDialogs dialogs_;
    QPointer<QDialog> settings_;
    QPointer<QDialog> question_;
    // Children of the window, as which they go.
    QPointer<SharingBar> bar_;
    QPointer<SidePanel> panel_;
    QPointer<AudioMixer> mixer_;
    QPointer<DrawPalette> palette_;
    QPointer<Notice> passing_;
    QPointer<Notice> connection_;
    QTimer connectionTimer_;
    std::chrono::steady_clock::time_point droppedAt_;
};

}  // namespace Corvanta::Host
