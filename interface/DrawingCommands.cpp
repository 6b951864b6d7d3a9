// The host's commands on the drawing over the main video.
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
    if (const auto view = CurrentView()) CallIntoView([&] { (view->GetDrawings().*command)(); });
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
