// The command line of the room service as a program of its own. Plain functions of values.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "engine/common/CommandLine.h"

namespace Corvanta::Engine {

struct ServiceOptions {
    bool showHelp = false;
    // A number address; this machine's own unless others are to come.
    std::string address = "127.0.0.1";
    // 0 takes any that is free.
    std::uint16_t port = 8189;
    // Empty: in the user's configuration folder.
    std::filesystem::path database;
    // Whose first line is the token; empty: from the environment.
    std::filesystem::path tokenFile;
    // Both or none, in PEM.
    std::filesystem::path certificate;
    std::filesystem::path key;
};

[[nodiscard]] std::variant<ServiceOptions, Failure> ParseServiceOptions(
    const std::vector<std::string_view>& arguments);
[[nodiscard]] std::string_view ServiceHelp();

// The token of that file, or of the variable CORVANTA_TOKEN when there is no file. A file that others can
// read is refused. The problem never tells the token.
[[nodiscard]] std::variant<std::string, Failure> ReadToken(const std::filesystem::path& file);

}  // namespace Corvanta::Engine
