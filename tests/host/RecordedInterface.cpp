#include "tests/host/RecordedInterface.h"

#include <cstring>
#include <iomanip>
#include <sstream>
#include <utility>

namespace Corvanta::Host {
namespace {

template <typename... Arguments>
void Record(const char* name, const Arguments&... arguments) {
    std::ostringstream line;
    line << std::boolalpha << name;
    ((line << ' ' << arguments), ...);
    Pushed().push_back(line.str());
}

}  // namespace

std::vector<std::string>& Pushed() {
    static std::vector<std::string> calls;
    return calls;
}

std::vector<std::string> TakePushed() {
    return std::exchange(Pushed(), {});
}

DrawingAnswers& Drawing() {
    static DrawingAnswers answers;
    return answers;
}

}  // namespace Corvanta::Host

using Corvanta::Host::Drawing;
using Corvanta::Host::Record;

void SDLinterface_PushMouseMoveEvent(int window, float x, float y) {
    Record("move", window, x, y);
}

void SDLinterface_PushMouseButtonDownEvent(int window) {
    Record("down", window);
}

void SDLinterface_PushMouseButtonUpEvent(int window) {
    Record("up", window);
}

void SDLinterface_PushScrollWheelEvent(int window, int x, int y) {
    Record("wheel", window, x, y);
}

void SDLinterface_PushKeyDownEvent(int window, const char* keyName) {
    Record("key", window, keyName);
}

void SDLinterface_PushKeyUpEvent(int window, const char* keyName) {
    Record("key up", window, keyName);
}

int SDLinterface_TextInputEnabled(bool enabled) {
    Record("text", enabled);
    return 0;
}

void SDLinterface_VideoRoomSetFullscreenEnabled(bool enabled) {
    Record("full screen", enabled);
}

void SDLInterface_VideoRoomUntoggleAudioMixer(void) {
    Record("untoggle mixer");
}

void SDLinterface_VideoRoomUntoggleOptionsButton(bool click) {
    Record("untoggle options", click);
}

void SDLInterface_VideoRoomSetShowSidebarNotification(bool show) {
    Record("notification", show);
}

void SDLInterface_VideoRoomSetParticipantVolume(const char* streamId, float volume) {
    Record("volume", streamId, volume);
}

void SDLInterface_VideoRoomSetParticipantsVolume(float volume) {
    Record("participants volume", volume);
}

void SDLInterface_VideoRoomSetStreamsVolume(float volume) {
    Record("streams volume", volume);
}

bool SDLinterface_VideoRoomAudioDeviceUpdate(bool renegotiate) {
    Record("sound devices", renegotiate);
    return true;
}

bool SDLinterface_VideoRoomTriggerDeviceRenegociation(void* deviceName, void*, void*, void*) {
    Record("camera", deviceName == nullptr ? "configured" : static_cast<const char*>(deviceName));
    return true;
}

bool SDLinterface_VideoRoomGetMicEnabled(void) {
    return true;
}

bool SDLinterface_VideoRoomGetVideoEnabled(void) {
    return false;
}

bool SDLinterface_LoadDrawToolState(DrawToolState* state) {
    Record("load draw tool");
    const Corvanta::Host::DrawingAnswers& stored = Drawing();
    auto* const family = new char[stored.fontFamily.size() + 1];
    std::memcpy(family, stored.fontFamily.c_str(), stored.fontFamily.size() + 1);
    delete[] state->fontFamilyName;
    *state = {.enabled = state->enabled,
              .selectedTool = DrawToolPencil,
              .complexSelectedShape = stored.complexSelectedShape,
              .pencilStrokeWidth = stored.pencilStrokeWidth,
              .shapeStrokeWidth = 20.0,
              .fontFamilyName = family,
              .fontSize = stored.fontSize,
              .useBoldFont = false,
              .useItalicizedFont = false,
              .primaryColor = 0xE85C41FF,
              .secondaryColor = 0xFFFFFFFF,
              .eraserStrokeWidth = 10.0};
    return true;
}

void SDLinterface_SetDrawToolState(const DrawToolState* state) {
    std::ostringstream colors;
    colors << std::hex << std::setfill('0') << std::setw(8) << state->primaryColor << ' ' << std::setw(8)
           << state->secondaryColor;
    Record("draw tool", state->enabled, state->selectedTool, state->complexSelectedShape, "widths",
           state->pencilStrokeWidth, state->shapeStrokeWidth, state->eraserStrokeWidth, "font",
           state->fontFamilyName, state->fontSize, state->useBoldFont, state->useItalicizedFont, "colours",
           colors.str());
}

void SDLinterface_UndoCurrentCanvas(void) {
    Record("undo");
}

void SDLinterface_RedoCurrentCanvas(void) {
    Record("redo");
}

void SDLinterface_ClearCurrentCanvas(void) {
    Record("clear");
}

bool SDLinterface_IsTextOpen(void) {
    return Drawing().textOpen;
}
