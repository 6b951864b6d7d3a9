#include "interface/ProcessState.h"

#include <mutex>
#include <set>
#include <utility>

#include "interface/TickState.h"
#include "ui/RoomActive.h"

namespace Corvanta::Interface {
namespace {

std::mutex gCurrentViewMutex;
// guards: what follows. Never destroyed: a host that ends without quitting ends with a view that media
// threads still feed, and whose window system may be gone.
std::shared_ptr<Room::VideoRoomView>& gCurrentView = *new std::shared_ptr<Room::VideoRoomView>;

std::mutex gLentSinksMutex;
// guards: what follows. Never destroyed, as the view.
std::set<std::shared_ptr<FrameCallback>>& gLentSinks = *new std::set<std::shared_ptr<FrameCallback>>;

constexpr int kRoomWindow = 0;
constexpr int kDetachedWindow = 1;
constexpr int kLastExtraWindow = 2;

}  // namespace

RoomSetting gRoomSetting;
std::atomic<int> gConnectionIndex{0};
std::atomic<bool> gLastMicEnabled{false};
std::atomic<bool> gLastVideoEnabled{false};
HostFunction<int> gRecordingStatusCallback;
HostFunction<bool> gNativeStreamStatusCallback;
std::vector<UI::AbstractView*> gExtraViews;

std::shared_ptr<Room::VideoRoomView> CurrentView() {
    const std::scoped_lock lock(gCurrentViewMutex);
    return gCurrentView;
}

std::shared_ptr<Room::VideoRoomView> ReplaceCurrentView(std::shared_ptr<Room::VideoRoomView> view) {
    const std::scoped_lock lock(gCurrentViewMutex);
    gCurrentView.swap(view);
    return view;
}

void AbandonView(const std::shared_ptr<Room::VideoRoomView>& view) {
    if (view == nullptr || DeferUntilViewIsLeft([view] { AbandonView(view); })) return;
    view->Abandon();
    RetireView(view);
}

void LendSink(std::shared_ptr<FrameCallback> sink) {
    const std::scoped_lock lock(gLentSinksMutex);
    gLentSinks.insert(std::move(sink));
}

void ReleaseLentSinks() {
    const std::scoped_lock lock(gLentSinksMutex);
    gLentSinks.clear();
}

std::shared_ptr<Recording::RecordingsView> GetRecordingsView() {
    return std::dynamic_pointer_cast<Recording::RecordingsView>(CurrentView());
}

UI::AbstractView* GetViewAt(int index, std::shared_ptr<Room::VideoRoomView>& keepAlive) {
    if (index == kLastExtraWindow) return gExtraViews.empty() ? nullptr : gExtraViews.back();
    if ((index != kRoomWindow && index != kDetachedWindow) || !roomActive.load()) return nullptr;
    keepAlive = CurrentView();
    if (keepAlive == nullptr) return nullptr;
    return index == kDetachedWindow ? keepAlive->GetDetachedView() : keepAlive.get();
}

int GetViewWindowId(int index) {
    const HostScope host;
    std::shared_ptr<Room::VideoRoomView> keepAlive;
    const UI::AbstractView* view = GetViewAt(index, keepAlive);
    return view == nullptr ? -1 : view->GetSdlWindowId();
}

std::optional<SDL_Point> GetViewSize(int index) {
    const HostScope host;
    const auto room = CurrentView();
    if (room == nullptr) return std::nullopt;
    const UI::AbstractView* view = nullptr;
    if (index == kRoomWindow) view = room.get();
    if (index == kDetachedWindow) view = room->GetDetachedView();
    if (view == nullptr) return std::nullopt;
    return SDL_Point{view->GetWidth(), view->GetHeight()};
}

}  // namespace Corvanta::Interface
