// Names that others have given themselves, as labels show them. Plain functions of values.
#pragma once

#include <QString>

#include <string>

namespace Corvanta::Host {

// On one line, and without what would have the text around it read backwards.
[[nodiscard]] QString ShownName(const std::string& name);

}  // namespace Corvanta::Host
