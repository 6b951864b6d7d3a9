#include "tests/host/RecordedInterface.h"

#include <sstream>
#include <utility>

#include "interface/SDLinterface.h"

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

}  // namespace Corvanta::Host

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
