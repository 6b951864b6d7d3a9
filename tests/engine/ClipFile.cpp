#include "tests/engine/ClipFile.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace Corvanta::Engine {

std::filesystem::path MakeClip(const TemporaryFolder& folder, const std::string& name,
                               const std::string& output, const std::string& input) {
    const auto path = folder.File(name);
    const std::string command = "ffmpeg -nostdin -hide_banner -loglevel error -y " + input + " " + output +
                                " '" + path.string() + "'";
    if (std::system(command.c_str()) != 0) ADD_FAILURE() << command;
    return path;
}

}  // namespace Corvanta::Engine
