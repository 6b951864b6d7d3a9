// A process of its own that serves the room service in the folder that it is given, until it is killed. With
// a number it may write no file that is larger, as on a disk that is full.
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "engine/roomservice/RoomService.h"

int main(int count, char** arguments) {
    if (count != 2 && count != 3) {
        std::fprintf(stderr, "usage: %s FOLDER [BYTES]\n", arguments[0]);
        return 2;
    }
    if (count == 3) {
        const rlim_t most = std::strtoul(arguments[2], nullptr, 10);
        const rlimit limit{.rlim_cur = most, .rlim_max = most};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    Corvanta::Engine::RoomService service(Corvanta::Engine::RoomServiceIn(arguments[1]));
    service.Start();
    if (!service.IsServing()) return 1;
    while (true) ::pause();
}
