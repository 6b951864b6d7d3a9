// Commands and queries that go straight to the current view.
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"

using namespace Corvanta;
using namespace Corvanta::Interface;

void SDLinterface_VideoRoomResize(int width, int height) {
    if (const auto view = CurrentView()) CallIntoView([&] { view->Resize(width, height); });
}

void SDLinterface_VideoRoomSetViewport(int width, int height) {
    const HostScope host;
    if (const auto view = CurrentView()) view->SetViewport(width, height);
}

void SDLinterface_VideoRoomSetContentScaleFactor(float factor) {
    const HostScope host;
    if (const auto view = CurrentView()) view->SetContentScaleFactor(factor);
}

void SDLinterface_UpdateWindowScale(int window, float scale) {
    const HostScope host;
    std::shared_ptr<Room::VideoRoomView> keepAlive;
    if (UI::AbstractView* view = GetViewAt(window, keepAlive)) {
        CallIntoView([&] { view->SetWindowScale(scale); });
    }
}

void SDLinterface_VideoRoomSetSDRBrightnessBoost(float nits) {
    const HostScope host;
    if (const auto view = CurrentView()) view->SetSDRBrightness(nits);
}

float SDLinterface_VideoRoomGetSDRBrightnessBoost(void) {
    const HostScope host;
    const auto view = CurrentView();
    return view != nullptr ? view->GetSDRBrightness() : 0.0F;
}

void* SDLinterface_VideoRoomGetNativeVideoView(void) {
    const auto view = CurrentView();
    return view != nullptr ? view->GetNativeView() : nullptr;
}

void SDLinterface_VideoRoomSetFullscreenEnabled(bool enabled) {
    if (const auto view = CurrentView()) view->SetFullscreenEnabled(enabled);
}

void SDLinterface_VideoRoomSetMicEnabled(bool enabled) {
    gLastMicEnabled.store(enabled);
    if (const auto view = CurrentView()) CallIntoView([&] { view->SetMicEnabled(enabled); });
}

bool SDLinterface_VideoRoomGetMicEnabled(void) {
    const auto view = CurrentView();
    return view != nullptr ? view->IsMicEnabled() : gLastMicEnabled.load();
}

void SDLinterface_VideoRoomSetVideoEnabled(bool enabled) {
    gLastVideoEnabled.store(enabled);
    if (const auto view = CurrentView()) CallIntoView([&] { view->SetVideoEnabled(enabled); });
}

bool SDLinterface_VideoRoomGetVideoEnabled(void) {
    const auto view = CurrentView();
    return view != nullptr ? view->IsVideoEnabled() : gLastVideoEnabled.load();
}
