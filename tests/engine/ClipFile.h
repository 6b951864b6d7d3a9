// Small video files, made when a test needs them.
#pragma once

#include <filesystem>
#include <string>

#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {

// Makes a file with ffmpeg: `input` are its options before the output's (a lavfi source by default: one
// second of 320x180 in the colour 0xC04020 at 30 pictures a second), `output` those of the output. Fails the
// test when ffmpeg does.
std::filesystem::path MakeClip(const TemporaryFolder& folder, const std::string& name,
                               const std::string& output,
                               const std::string& input = "-f lavfi -i color=c=0xC04020:s=320x180:r=30:d=1");

}  // namespace Corvanta::Engine
