// A process of its own that serves the room service in the folder that it is given, until it is killed.
#include <unistd.h>

#include <cstdio>

#include "engine/roomservice/RoomService.h"

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    Corvanta::Engine::RoomService service(Corvanta::Engine::RoomServiceIn(arguments[1]));
    service.Start();
    if (!service.IsServing()) return 1;
    while (true) ::pause();
}
