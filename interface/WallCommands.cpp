// The wall: in a window of its own, and in and out of the room's.
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"

using namespace Corvanta::Interface;

int SDLinterface_CreateDetachedView(void* nativeHandle, int width, int height) {
    const HostScope host;
    const auto view = CurrentView();
    // The wall must not lose its window while it draws on it.
    if (view == nullptr || IsViewAtWork()) return -1;
    return view->CreateDetachedView(nativeHandle, width, height);
}

void SDLinterface_TickDetachedView(void) {
    if (const auto view = CurrentView()) CallIntoView([&] { view->TickDetachedView(); });
}

void SDLinterface_SetDetachedLayout(int mode) {
    if (const auto view = CurrentView()) view->SetDetachedLayout(mode);
}

void SDLinterface_LeaveDetachedLayout(void) {
    const HostScope host;
    const auto view = CurrentView();
    if (view == nullptr || DeferUntilViewIsLeft([view] { view->LeaveDetachedLayout(); })) return;
    view->LeaveDetachedLayout();
}

void SDLinterface_SlideThumbnails(bool show, bool animated) {
    if (const auto view = CurrentView()) view->SlideThumbnails(show, animated);
}

void SDLInterface_SetDetachedBordersVisibility(bool visible) {
    if (const auto view = CurrentView()) view->GetThumbnails().SetDetachedBorders(visible);
}
