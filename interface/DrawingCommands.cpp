// The host's commands on the drawing over the main video.
#include <exception>

#include "drawing/DrawToolSettings.h"
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"
#include "platform/Logger.h"

using namespace Corvanta;
using namespace Corvanta::Interface;

namespace {

// Under the host's lock, as a tick, so that no gesture is under way meanwhile.
void CallIntoDrawings(void (Drawing::DrawingCanvasManager::*command)()) {
    const HostScope host;
    const auto view = CurrentView();
    if (view == nullptr) return;
    CallIntoView([&] {
        try {
            (view->GetDrawings().*command)();
        } catch (const std::exception& error) {
            // The host is no C++, and a stream whose id is no text cannot be named in a message.
            LOG(3, "A change of the drawing could not be shared: %s", error.what());
        }
    });
}

}  // namespace

bool SDLinterface_LoadDrawToolState(DrawToolState* state) {
    if (state == nullptr) {
        LOG(3, "The drawing tool's settings have no place to go to");
    } else {
        Drawing::LoadDrawToolSettings(*state);
    }
    return true;
}

void SDLinterface_SetDrawToolState(const DrawToolState* state) {
    const HostScope host;
    const auto view = CurrentView();
    if (view != nullptr && state != nullptr) CallIntoView([&] { view->SetDrawToolState(*state); });
}

void SDLinterface_UndoCurrentCanvas(void) {
    CallIntoDrawings(&Drawing::DrawingCanvasManager::UndoCurrentCanvas);
}

void SDLinterface_RedoCurrentCanvas(void) {
    CallIntoDrawings(&Drawing::DrawingCanvasManager::RedoCurrentCanvas);
}

void SDLinterface_ClearCurrentCanvas(void) {
    CallIntoDrawings(&Drawing::DrawingCanvasManager::ClearCurrentCanvas);
}

bool SDLinterface_IsTextOpen(void) {
    const HostScope host;
    const auto view = CurrentView();
    return view != nullptr && view->GetDrawings().IsTextOpen();
}
