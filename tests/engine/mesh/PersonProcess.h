// A person of a room in a process of its own, for tests that kill, stop or flood it. It is given where to
// look for rooms, the room, its name and the three values of the colour that it shows; then, where it is to
// be in a network of its own, the name of a device that is handed over to that network when it has written
// "network", and the address that the device has. It writes "entered" when it is in, then what comes, one
// event a line (see RoomPerson::onLine), and does what it reads:
//
//   say TEXT          to everybody
//   flood COUNT       that many short texts, as fast as possible
//   leave             with a goodbye; the process ends
#pragma once

#include <functional>
#include <string>

#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

struct PersonProcess {
    std::string place;
    std::string room;
    std::string name;
    bool hasNetwork = false;
};

// What main() does with its words; until it is asked to leave, or nobody asks any more. The exit code.
int RunPerson(int count, char** words, const std::function<TransportMaker(const PersonProcess&)>& travel);

}  // namespace Corvanta::Engine
