// Why something could not be done, as the one line that the person reads. A plain value.
#pragma once

#include <string>

namespace Corvanta::Host {

struct Failure {
    std::string line;  // no line break, no program name
};

}  // namespace Corvanta::Host
