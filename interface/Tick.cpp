// The tick that the host calls: timers, what is asked for once a second, and the view's own tick.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"
#include "platform/WebRTC.h"
#include "ui/Clock.h"
#include "ui/LockOrder.h"
#include "ui/RoomActive.h"

namespace Corvanta::Interface {
namespace {

constexpr int64_t kNsPerMs = 1'000'000;
constexpr int64_t kPollMs = 1000;

UI::OrderedMutex<std::recursive_mutex, UI::LockRank::Host> gHostMutex;
// guards: what follows
int gHostScopes = 0;
// Never destroyed, as the current view.
std::vector<std::shared_ptr<Room::VideoRoomView>>& gRetiredViews =
    *new std::vector<std::shared_ptr<Room::VideoRoomView>>;
int64_t gLastTickNanos = UI::NowNs();
int64_t gElapsedSincePollMs = 0;
// Kept for a debugger's eye: how long the library has been ticked.
int64_t gTotalElapsedMs = 0;
bool gInsideView = false;
std::vector<std::function<void()>> gDeferred;

// Also leaves the view when a host's function throws through it.
class ViewScope final {
public:
    ViewScope() : outermost_(!std::exchange(gInsideView, true)) {}
    ~ViewScope() {
        if (outermost_) gInsideView = false;
    }
    ViewScope(const ViewScope&) = delete;
    ViewScope& operator=(const ViewScope&) = delete;

private:
    const bool outermost_;
};

void AdvanceTimers() {
    const int64_t deltaMs = (UI::NowNs() - gLastTickNanos) / kNsPerMs;
    gTotalElapsedMs += deltaMs;
    gLastTickNanos = UI::NowNs();
    gElapsedSincePollMs += deltaMs;
}

void PollEverySecond() {
    if (gElapsedSincePollMs <= kPollMs) return;
    gElapsedSincePollMs = 0;
    if (const auto view = CurrentView()) view->RequestTrackCheck();
    std::string speaker;
    if (WebRTC_GetActiveSpeaker(speaker)) SDLinterface_VideoRoomUpdateActiveSpeaker(std::move(speaker));
}

}  // namespace

HostScope::HostScope() {
    gHostMutex.lock();
    ++gHostScopes;
}

HostScope::~HostScope() {
    std::vector<std::shared_ptr<Room::VideoRoomView>> retired;
    if (--gHostScopes == 0) retired.swap(gRetiredViews);
    gHostMutex.unlock();
}

void RetireView(std::shared_ptr<Room::VideoRoomView> view) {
    // Once: each entry would take the other for a thread that still uses the view.
    const bool isKnown = std::find(gRetiredViews.begin(), gRetiredViews.end(), view) != gRetiredViews.end();
    if (view != nullptr && !isKnown) gRetiredViews.push_back(std::move(view));
}

void ResetTickTimers() {
    gLastTickNanos = UI::NowNs();
    gElapsedSincePollMs = 0;
}

void CallIntoView(const std::function<void()>& body) {
    const HostScope host;
    {
        const ViewScope scope;
        body();
    }
    if (gInsideView) return;
    for (const std::function<void()>& action : std::exchange(gDeferred, {})) action();
}

bool IsViewAtWork() {
    return gInsideView;
}

bool DeferUntilViewIsLeft(std::function<void()> action) {
    if (gInsideView) gDeferred.push_back(std::move(action));
    return gInsideView;
}

}  // namespace Corvanta::Interface

using namespace Corvanta::Interface;

void SDL_VideoRoomCheckInputAndRender(void) {
    CallIntoView([] {
        AdvanceTimers();
        PollEverySecond();
        // Owned for the time of the tick: a command from inside it may replace the view.
        if (const auto view = CurrentView()) view->Tick();
    });
}

void SDL_WPFVideoRoomCheckInputAndRender(void) {
    const HostScope host;
    if (!Corvanta::roomActive.load()) {
        SDLinterface_VideoRoomQuit();
        return;
    }
    SDL_VideoRoomCheckInputAndRender();
    if (!Corvanta::roomActive.load()) SDLinterface_VideoRoomQuit();
}
