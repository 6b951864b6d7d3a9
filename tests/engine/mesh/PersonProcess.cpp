#include "tests/engine/mesh/PersonProcess.h"

#include <signal.h>
#include <sys/prctl.h>

#include <cstdlib>
#include <iostream>
#include <mutex>

#include "tests/engine/mesh/RoomPerson.h"
#include "tests/engine/mesh/TunLink.h"

namespace Corvanta::Engine {

int RunPerson(int count, char** words, const std::function<TransportMaker(const PersonProcess&)>& travel) {
    if (count != 7 && count != 9) return EXIT_FAILURE;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool hasNetwork = count == 9;
    if (hasNetwork) {
        if (!EnterEmptyNetwork()) return EXIT_FAILURE;
        std::cout << "network" << std::endl;
        if (!BringUp(words[7], words[8])) return EXIT_FAILURE;
    }
    RoomPerson person(
        travel({.place = words[1], .room = words[2], .name = words[3], .hasNetwork = hasNetwork}),
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
        if (line == "leave") break;
    }
    return EXIT_SUCCESS;
}

}  // namespace Corvanta::Engine
