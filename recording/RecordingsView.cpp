#include "recording/RecordingsView.h"

#include <SDL_image.h>

#include <algorithm>
#include <cmath>

#include "drawing/DrawingCanvasManager.h"
#include "platform/Logger.h"
#include "ui/RoomActive.h"
#include "ui/TextureCache.h"

namespace Corvanta::Recording {
namespace {

// Both mean that the recording is opened from its beginning.
[[nodiscard]] bool StartsAnew(int status) {
    return status == static_cast<int>(RecordingPlaybackStatus::Opening) ||
           status == static_cast<int>(RecordingPlaybackStatus::Reopening);
}

// Playback goes on elsewhere, where what was drawn up to here need not have been.
[[nodiscard]] bool EndsDrawings(int status) {
    return status == static_cast<int>(RecordingPlaybackStatus::Ready) ||
           status == static_cast<int>(RecordingPlaybackStatus::Seeking) ||
           status == static_cast<int>(RecordingPlaybackStatus::Ended);
}

// Ten years: keeps a wild duration within the integer.
constexpr double kLongestRecordingMs = 10.0 * 365 * 24 * 3600 * 1000;

}  // namespace

RecordingsView::RecordingsView(int id) : VideoRoomView(id, HostCallbacks{}) {}

int RecordingsView::Init(void* nativeHandle, int width, int height,
                         const RecordingHostFunctions& hostFunctions) {
    const int result = VideoRoomView::Init(nativeHandle, width, height);
    hostFunctions_ = hostFunctions;
    if (GetRenderer() != nullptr) UI::ReleaseRendererTextures(GetRenderer());
    // This view plays its sound elsewhere and must not keep an audio device.
    if (SDL_WasInit(SDL_INIT_AUDIO) != 0) {
        SDL_AudioQuit();
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    }
    if (result >= 0 && (IMG_Init(IMG_INIT_PNG) & IMG_INIT_PNG) == 0) {
        LOG(3, "could not initialize sdl2_image because %s", SDL_GetError());
    }
    return result;
}

void RecordingsView::InitPlayback(int connectionIndex, const std::string& title, double durationMs) {
    connectionIndex_ = connectionIndex;
    title_ = title;
    durationMs_ =
        std::isnan(durationMs) ? 0 : static_cast<int64_t>(std::clamp(durationMs, 0.0, kLongestRecordingMs));
}

void RecordingsView::Reset() {
    const std::scoped_lock lock(remoteLock_);
    SetActiveSpeaker("");
    mainTile_ = nullptr;
    spotlightTile_ = nullptr;
    // Cleared first: a canvas keeps what it has of a source that goes.
    GetDrawings().ClearAllSources();
    GetDrawings().RemoveAllSources();
    // The tiles stay, and show what is drawn when the recording is played again.
    for (const auto& [id, tile] : remoteTiles_) {
        if (Drawing::DrawingCanvas* const canvas = tile->GetCanvas()) GetDrawings().AttachCanvas(id, canvas);
    }
}

void RecordingsView::Shutdown() {
    VideoRoomView::Shutdown();
    // A later view has a manager of its own.
    if (Drawing::DrawingCanvasManager::Instance().get() == &GetDrawings()) {
        Drawing::DrawingCanvasManager::DestroyInstance();
    }
}

void RecordingsView::OnPlaybackStatus(int status) {
    if (StartsAnew(status)) Reset();
    if (EndsDrawings(status)) GetDrawings().ClearAllSources();
}

void RecordingsView::OnActiveStreams(const std::vector<std::string>& streamIds) {
    const std::scoped_lock lock(remoteLock_);
    activeStreamCount_ = 0;
    for (const auto& [id, tile] : remoteTiles_) {
        tile->renderable = std::find(streamIds.begin(), streamIds.end(), id) != streamIds.end();
        if (tile->renderable) ++activeStreamCount_;
    }
}

int RecordingsView::GetActiveStreamCount() const {
    const std::scoped_lock lock(remoteLock_);
    return activeStreamCount_;
}

std::shared_ptr<FrameCallback> RecordingsView::AddRemoteVideoSource(const std::string& streamId) {
    LOG(2, "New recording remote video track with id: %s", streamId.c_str());
    const std::scoped_lock lock(remoteLock_);
    const bool known = FindRemoteTile(streamId) != nullptr;
    std::shared_ptr<FrameCallback> sink = VideoRoomView::AddRemoteVideoSource(streamId);
    // Nothing of it is shown before the recording says that the stream is on.
    if (sink != nullptr && !known) FindRemoteTile(streamId)->renderable = false;
    return sink;
}

void RecordingsView::SetCursor(int /*cursor*/, int /*layer*/) {}

}  // namespace Corvanta::Recording
