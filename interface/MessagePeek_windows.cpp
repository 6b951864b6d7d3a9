#include <windows.h>

#include "interface/MessagePeek.h"

namespace Corvanta::Interface {

int PeekThreadMessages() {
    MSG message;
    return PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
}

}  // namespace Corvanta::Interface
