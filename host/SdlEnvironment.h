// What SDL must find in the environment before the library starts it inside a window of ours. Main thread
// only, after the application object and before RoomSession.
#pragma once

namespace Corvanta::Host {

enum class DisplayKind { OfTheDesktop, Private };

// A variable that the person has set already stays as it is, except the video driver: only X11 takes foreign
// windows.
void PrepareSdlEnvironment(DisplayKind display);

}  // namespace Corvanta::Host
