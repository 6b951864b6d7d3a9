#include "tests/host/RecordedWall.h"

#include <sstream>

#include "interface/SDLinterface.h"
#include "tests/host/RecordedInterface.h"

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

int& OpenAnswer() {
    static int answer = 1;
    return answer;
}

}  // namespace Corvanta::Host

using Corvanta::Host::OpenAnswer;
using Corvanta::Host::Record;

int SDLinterface_CreateDetachedView(void* nativeHandle, int width, int height) {
    Record("create wall", nativeHandle != nullptr, width, height);
    return OpenAnswer();
}

void SDLinterface_TickDetachedView(void) {
    Record("tick wall");
}

void SDLinterface_SetDetachedLayout(int mode) {
    Record("layout", mode);
}

void SDLinterface_LeaveDetachedLayout(void) {
    Record("leave");
}

void SDLinterface_SlideThumbnails(bool show, bool animated) {
    Record("slide", show, animated);
}

int SDLinterface_OpenLocalPreview(void* nativeHandle, int width, int height, bool fit) {
    Record("open preview", nativeHandle != nullptr, width, height, fit);
    return OpenAnswer();
}

void SDLinterface_TickLocalPreview(void) {
    Record("tick preview");
}

void SDLinterface_CloseLocalPreview(void) {
    Record("close preview");
}

void SDLinterface_UpdateWindowScale(int window, float scale) {
    Record("scale", window, scale);
}
