// How a name that is too long for its plate is cut. Plain values; the measuring comes from the caller.
#pragma once

#include <functional>
#include <string>

namespace Corvanta::Video {

// The name itself if it fits into available, else its first bytes with "..." behind them: as many as the
// name's average width allows, and after at most three tries of four bytes less the last one even if it is
// still too wide. The whole name where not even one byte has room beside the dots. measure: width of a text,
// in the unit of available. The cut may fall inside a character.
[[nodiscard]] std::string CutName(const std::string& name, int available,
                                  const std::function<int(const std::string&)>& measure);

}  // namespace Corvanta::Video
