// The way into a recording, and what its playback reports.
#include "interface/Credential.h"
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"
#include "platform/Connections.h"
#include "platform/Logger.h"
#include "ui/LockOrder.h"
#include "ui/RoomActive.h"

namespace {

// The view's own clock follows the seek that it asked for, so the answer needs no action.
void OnOffsetSeeked(long long /*seconds*/) {}

}  // namespace

using namespace Corvanta;
using namespace Corvanta::Interface;

int SDLinterface_RecordingViewInit(void* nativeHandle, int width, int height,
                                   const RecordingHostFunctions* functions) {
    const HostScope host;
    const UI::OtherRoomScope fromAnother;
    SDLinterface_GlobalInit();
    const auto view = std::make_shared<Recording::RecordingsView>(0);
    AbandonView(CurrentView());
    const int result =
        view->Init(nativeHandle, width, height, functions != nullptr ? *functions : RecordingHostFunctions{});
    // Only now, so that no callback reaches a view that is being made.
    RetireView(ReplaceCurrentView(view));
    return result;
}

int SDLinterface_ConnectToRecording(void* connectionArg0, void* connectionArg1, const char* title,
                                    double durationMs, void (*statusCallback)(int status)) {
    if (CurrentView() == nullptr || !roomActive.load()) return -1;
    const std::string cookie = ConnectionCookie();
    gRecordingStatusCallback.Set(statusCallback);
    const RecordingPlaybackCallbacks callbacks{&SDLinterface_OnRecordingPlaybackStatus,
                                               &SDLinterface_OnRecordingPlaybackProgress, &OnOffsetSeeked,
                                               &SDLinterface_OnActiveStreams};
    const int index = Connections_InitRecording(connectionArg0, cookie.c_str(), connectionArg1, callbacks);
    gConnectionIndex.store(index);
    if (index == -1) {
        LOG(2, "Recording connection failed");
        return -1;
    }
    LOG(2, "Recording connection successfully connected");
    if (const auto view = GetRecordingsView())
        view->InitPlayback(index, title != nullptr ? title : "", durationMs);
    return index;
}

int SDLinterface_DisconnectFromRecording(int connectionIndex) {
    if (const auto view = GetRecordingsView()) view->Reset();
    return Connections_EndRecording(connectionIndex);
}

void SDLinterface_OnRecordingPlaybackStatus(int status) {
    if (const auto view = GetRecordingsView()) view->OnPlaybackStatus(status);
    gRecordingStatusCallback(status);
}

void SDLinterface_OnRecordingPlaybackProgress(int /*position*/, int /*duration*/) {}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the media manager gives the list away.
void SDLinterface_OnActiveStreams(std::vector<std::string> streamIds) {
    if (const auto view = GetRecordingsView()) view->OnActiveStreams(streamIds);
}
