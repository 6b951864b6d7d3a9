// The toolkit's keys in the vocabulary in which the library takes them. Plain values.
#pragma once

#include <string>

namespace Corvanta::Host {

// The library's name of a Qt::Key; empty for a key that it does not know.
[[nodiscard]] std::string KeyNameOf(int qtKey);

}  // namespace Corvanta::Host
