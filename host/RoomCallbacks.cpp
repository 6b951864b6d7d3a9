#include "host/RoomCallbacks.h"

#include <QMetaObject>
#include <QStandardPaths>

#include <array>
#include <atomic>
#include <cassert>
#include <utility>

#include "host/HostWindow.h"
#include "host/RoomControls.h"
#include "host/StillPath.h"
#include "host/WallControls.h"

namespace Corvanta::Host {
namespace {

// By the number that the room tells.
constexpr std::array kCursors{Qt::ArrowCursor, Qt::PointingHandCursor, Qt::IBeamCursor, Qt::SizeAllCursor};

// The functions are plain C ones, so what they act on stands at process scope. Only read while there is a
// room, and only written while there is none.
std::atomic<const RoomParts*> gParts{nullptr};

void OnWindow(void (*action)(HostWindow&)) {
    if (const RoomParts* const parts = gParts) {
        QMetaObject::invokeMethod(
            &parts->window, [&window = parts->window, action] { action(window); }, Qt::QueuedConnection);
    }
}

void OnWall(std::function<void(WallControls&)> action) {
    if (const RoomParts* const parts = gParts) parts->wall.Later(std::move(action));
}

void OnControls(std::function<void(RoomControls&)> action) {
    if (const RoomParts* const parts = gParts) parts->controls.Later(std::move(action));
}

// An entry that hands its one flag on.
template <void (RoomControls::*action)(bool)>
void Pass(bool on) {
    OnControls([on](RoomControls& controls) { (controls.*action)(on); });
}

template <void (RoomControls::*action)()>
void Pass() {
    OnControls([](RoomControls& controls) { (controls.*action)(); });
}

std::string TextOf(const char* text) {
    return text == nullptr ? std::string() : text;
}

void StartScreenShare() {
    OnControls([](RoomControls& controls) { controls.StartStream(StreamType::Screenshare); });
}

void SetFullscreen(bool on) {
    if (on) {
        OnWindow([](HostWindow& window) { window.SetFullscreen(true); });
    } else {
        OnWindow([](HostWindow& window) { window.SetFullscreen(false); });
    }
}

void DetachWall() {
    OnWall([](WallControls& wall) { wall.Detach(wall.Layout()); });
}

void AttachWall() {
    OnWall(&WallControls::Attach);
}

void OpenAudioMixer(const char* streamId, const char* displayName, float volume, int32_t, int32_t) {
    OnControls([id = TextOf(streamId), name = TextOf(displayName), volume](RoomControls& controls) {
        controls.OpenMixerAt(id, name, static_cast<double>(volume));
    });
}

void LeaveRoom() {
    OnWindow([](HostWindow& window) { window.close(); });
}

// On the thread that wrote it, before the next still can be written to the same place.
void OnStillExported(const char* path) {
    const RoomParts* const parts = gParts;
    if (parts == nullptr || path == nullptr) return;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    auto still = KeepStill(path, pictures.toStdString(), parts->roomName, Today());
    OnControls([still = std::move(still)](RoomControls& controls) { controls.TellStill(still); });
}

// Every tick, so at once and only when it is another one.
void SetCursor(int32_t cursor) {
    const RoomParts* const parts = gParts;
    if (parts == nullptr) return;
    RoomWidget& room = parts->window.Room();
    const auto number = static_cast<std::size_t>(cursor);
    const Qt::CursorShape shape = number < kCursors.size() ? kCursors[number] : kCursors.front();
    if (room.cursor().shape() != shape) room.setCursor(shape);
}

void ReportHistoryState(bool canUndo, bool canRedo) {
    OnControls([=](RoomControls& controls) { controls.SetDrawHistory(canUndo, canRedo); });
}

void StartNativeStream(int32_t type) {
    OnControls([type](RoomControls& controls) { controls.StartStream(static_cast<StreamType>(type)); });
}

void StartApplicationStream(int32_t, int32_t type, int32_t processId) {
    OnControls([type, processId](RoomControls& controls) {
        controls.StartApplication(static_cast<StreamType>(type), processId);
    });
}

void RemoveParticipant(const char* streamId, const char* displayName) {
    OnControls([id = TextOf(streamId), name = TextOf(displayName)](RoomControls& controls) {
        controls.AskToRemove(id, name);
    });
}

}  // namespace

RoomCallbacks::RoomCallbacks(RoomParts parts) : parts_(std::move(parts)) {
    assert(gParts == nullptr);
    gParts = &parts_;
}

RoomCallbacks::~RoomCallbacks() {
    gParts = nullptr;
}

HostCallbacks RoomCallbacks::Table() {
    HostCallbacks table{};
    table.OnMicrophoneChanged = Pass<&RoomControls::SetMicrophone>;
    table.OnPushToTalkConfigured = Pass<&RoomControls::TellPushToTalk>;
    table.OnCameraToggled = Pass<&RoomControls::SetCamera>;
    table.OnSpeakerToggled = Pass<&RoomControls::SetSound>;
    table.ShowAudioMixer = Pass<&RoomControls::ShowMixer>;
    table.StartScreenShare = StartScreenShare;
    table.ShowOptions = Pass<&RoomControls::ShowPanel>;
    table.SetFullscreen = SetFullscreen;
    table.ShowDrawTool = Pass<&RoomControls::SetDrawTool>;
    table.DetachWall = DetachWall;
    table.AttachWall = AttachWall;
    table.OpenAudioMixer = OpenAudioMixer;
    table.LeaveRoom = LeaveRoom;
    table.OnStillExported = OnStillExported;
    table.SetCursor = SetCursor;
    table.ReportHistoryState = ReportHistoryState;
    table.StartNativeStream = StartNativeStream;
    table.StartApplicationStream = StartApplicationStream;
    table.StartMediaSiloStream = Pass<&RoomControls::StartMediaSilo>;
    table.RemoveParticipant = RemoveParticipant;
    return table;
}

void RoomCallbacks::OnConnectionDropped(bool willRetry, bool endedHere) {
    OnControls([=](RoomControls& controls) { controls.TellConnectionDropped(willRetry, endedHere); });
}

}  // namespace Corvanta::Host
