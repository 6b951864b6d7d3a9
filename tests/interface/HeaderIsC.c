/* The library's face reads as C where its types allow; a host may be written in it. */
#include "interface/SDLinterface.h"

typedef int (*EnterRoomFunction)(void*, void*, const char*, const char*, bool, bool, bool, void*, bool);

EnterRoomFunction CorvantaHostInC(void);

EnterRoomFunction CorvantaHostInC(void) {
    return &EnterRoom;
}
