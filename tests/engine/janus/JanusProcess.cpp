// A member of a room on a server in a process of its own, for tests that kill, stop or flood it. It is given
// the server's address, the room, its name and the three values of the colour that it shows; then, where it
// is to be in a network of its own, the name of a device that is handed over to that network when it has
// written "network", and the address that the device has. It writes "entered" when it is in, then what comes,
// one event a line (see RoomPerson::onLine), and does what it reads:
//
//   say TEXT          to everybody
//   flood COUNT       that many short texts, as fast as possible
#include <signal.h>
#include <sys/prctl.h>

#include <cstdlib>
#include <iostream>
#include <mutex>
#include <string>

#include "engine/janus/JanusTransport.h"
#include "tests/engine/mesh/RoomPerson.h"
#include "tests/engine/mesh/TunLink.h"

int main(int count, char** words) {
    using namespace Corvanta::Engine;
    if (count != 7 && count != 9) return EXIT_FAILURE;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (count == 9) {
        if (!EnterEmptyNetwork()) return EXIT_FAILURE;
        std::cout << "network" << std::endl;
        if (!BringUp(words[7], words[8])) return EXIT_FAILURE;
    }
    const JanusOptions options{.server = {.address = words[1], .certificateAuthority = {}, .token = {}},
                               .room = words[2],
                               .name = words[3]};
    RoomPerson person(
        [&options](EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<JanusTransport>(loop, mixer, options);
        },
        Yuv{std::atoi(words[4]), std::atoi(words[5]), std::atoi(words[6])}, 0.1);
    std::mutex mutex;
    person.onLine = [&mutex](const std::string& line) {
        const std::lock_guard lock(mutex);
        std::cout << line.substr(0, 200) << std::endl;
    };
    if (!person.Enters()) return EXIT_FAILURE;
    person.onLine("entered");
    for (std::string line; std::getline(std::cin, line);) {
        if (line.starts_with("say ")) person.Say(line.substr(4));
        if (line.starts_with("flood ")) {
            const int texts = std::atoi(line.c_str() + 6);
            for (int index = 0; index < texts; ++index) person.Say("flood " + std::to_string(index));
        }
    }
    return EXIT_SUCCESS;
}
