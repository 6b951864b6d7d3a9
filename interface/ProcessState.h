// The process-wide state of the host boundary. Unless said otherwise an item belongs to the host's thread.
// The room's one flag for all threads, roomActive, stands in ui/RoomActive.h.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/HostCallbacks.h"
#include "platform/VideoFrameBuffer.h"
#include "recording/RecordingsView.h"
#include "room/VideoRoomView.h"

namespace Corvanta::Interface {

// The window and the functions that the next room entry uses.
struct RoomSetting {
    void* nativeHandle = nullptr;
    int width = 0;
    int height = 0;
    HostCallbacks callbacks{};
};

// The one current view, as a shared owner; empty without one. Any thread: media threads come while a view is
// being replaced or ends.
[[nodiscard]] std::shared_ptr<Room::VideoRoomView> CurrentView();
// Puts another view in its place and returns the one that was there.
std::shared_ptr<Room::VideoRoomView> ReplaceCurrentView(std::shared_ptr<Room::VideoRoomView> view);
// Frees the window and the renderer of a view whose place another takes: now, or if the view is at work as
// soon as it is left.
void AbandonView(const std::shared_ptr<Room::VideoRoomView>& view);
// The current view if it is a recordings view, else empty. Any thread.
[[nodiscard]] std::shared_ptr<Recording::RecordingsView> GetRecordingsView();

// Keeps a sink that was lent to the media manager alive, whatever becomes of its tile and room, until the
// media manager is closed. Any thread.
void LendSink(std::shared_ptr<FrameCallback> sink);
// The media manager is closed and calls no sink any more.
void ReleaseLentSinks();

// SDL's window id for the index by which hosts name windows: 0 the room's, 1 the detached wall's, 2 the last
// extra view's. -1 without such a window, without a running room for 0 and 1, and for any other index.
[[nodiscard]] int GetViewWindowId(int index);
// Size in logical pixels of the view at such an index, by which the host's fractions are multiplied; nothing
// without such a view.
[[nodiscard]] std::optional<SDL_Point> GetViewSize(int index);
// The view at such an index; null where GetViewWindowId has none. keepAlive owns it meanwhile.
[[nodiscard]] UI::AbstractView* GetViewAt(int index, std::shared_ptr<Room::VideoRoomView>& keepAlive);

// Calls of a function that the host may replace at any time, from any thread.
template <typename Argument>
class HostFunction final {
public:
    void Set(void (*function)(Argument)) { function_.store(function); }
    void operator()(Argument argument) const {
        if (auto* function = function_.load()) function(argument);
    }

private:
    std::atomic<void (*)(Argument)> function_{nullptr};
};

extern RoomSetting gRoomSetting;
// Of the last entry; -1 after a failed one. The host reads and writes it.
extern std::atomic<int> gConnectionIndex;
// Microphone and camera of the last view, kept so that they can be asked for without one.
extern std::atomic<bool> gLastMicEnabled;
extern std::atomic<bool> gLastVideoEnabled;
extern HostFunction<int> gRecordingStatusCallback;
extern HostFunction<bool> gNativeStreamStatusCallback;
// Borrowed; window index 2 names the last.
extern std::vector<UI::AbstractView*> gExtraViews;

}  // namespace Corvanta::Interface
