#include "interface/MessagePeek.h"

namespace Corvanta::Interface {

int PeekThreadMessages() {
    return 0;
}

}  // namespace Corvanta::Interface
