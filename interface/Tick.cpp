// The tick that the host calls: timers, the poll for the active speaker, and the view's own tick.
#include <cstdint>
#include <string>
#include <utility>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"
#include "platform/WebRTC.h"
#include "ui/Clock.h"
#include "ui/RoomActive.h"

namespace Corvanta::Interface {
namespace {

constexpr int64_t kNsPerMs = 1'000'000;
constexpr int64_t kSpeakerPollMs = 1000;

int64_t gLastTickNanos = UI::NowNs();
int64_t gElapsedSincePollMs = 0;
// Kept for a debugger's eye: how long the library has been ticked.
int64_t gTotalElapsedMs = 0;
bool gTicking = false;
void (*gAfterTick)(void) = nullptr;

// Also ends the tick when a host's callback throws through it.
class TickScope final {
public:
    TickScope() : outermost_(!std::exchange(gTicking, true)) {}
    ~TickScope() {
        if (outermost_) gTicking = false;
    }
    TickScope(const TickScope&) = delete;
    TickScope& operator=(const TickScope&) = delete;

private:
    const bool outermost_;
};

void AdvanceTimers() {
    const int64_t deltaMs = (UI::NowNs() - gLastTickNanos) / kNsPerMs;
    gTotalElapsedMs += deltaMs;
    gLastTickNanos = UI::NowNs();
    gElapsedSincePollMs += deltaMs;
}

void PollActiveSpeaker() {
    if (gElapsedSincePollMs <= kSpeakerPollMs) return;
    gElapsedSincePollMs = 0;
    std::string speaker;
    if (WebRTC_GetActiveSpeaker(speaker)) SDLinterface_VideoRoomUpdateActiveSpeaker(speaker);
}

}  // namespace

void ResetTickTimers() {
    gLastTickNanos = UI::NowNs();
    gElapsedSincePollMs = 0;
}

bool DeferUntilTickEnds(void (*call)(void)) {
    if (gTicking) gAfterTick = call;
    return gTicking;
}

}  // namespace Corvanta::Interface

using namespace Corvanta::Interface;

void SDL_VideoRoomCheckInputAndRender(void) {
    {
        const TickScope scope;
        AdvanceTimers();
        PollActiveSpeaker();
        // Owned for the time of the tick: a command from inside it may replace the view.
        if (const auto view = CurrentView()) view->Tick();
    }
    if (auto* call = std::exchange(gAfterTick, nullptr)) call();
}

void SDL_WPFVideoRoomCheckInputAndRender(void) {
    if (!Corvanta::roomActive.load()) {
        SDLinterface_VideoRoomQuit();
        return;
    }
    SDL_VideoRoomCheckInputAndRender();
    if (!Corvanta::roomActive.load()) SDLinterface_VideoRoomQuit();
}
