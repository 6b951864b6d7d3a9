// Settings of the log behind LOG. Any thread.
#pragma once

#include <filesystem>

namespace Corvanta::Engine {

// `lowestLevel` is a LogLevel. Lines go to the standard error stream and, unless `file` is empty, to the end
// of that file. A file that cannot be opened is left out, which is logged.
void ConfigureLog(int lowestLevel, const std::filesystem::path& file);

}  // namespace Corvanta::Engine
