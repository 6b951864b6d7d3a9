// Where a still picture is kept: in the person's pictures folder, under the room's name with date and number,
// never over a file that is there. Functions of their arguments and the file system, usable from any thread.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>

#include "host/Failure.h"

namespace Corvanta::Host {

// "Room 2026-11-22 1.png". What a file name may not hold is left out of the room's name, and a long name is
// cut; extension begins with a dot.
[[nodiscard]] std::string StillName(std::string_view roomName, std::chrono::year_month_day date, int number,
                                    std::string_view extension);

// Moves a written still into folder, which is made when it is not there, under the first number that is free.
// Two at the same moment take two numbers. The new path, or why it could not be moved; then the still stays
// where it was written.
[[nodiscard]] std::variant<std::filesystem::path, Failure> KeepStill(const std::filesystem::path& written,
                                                                     const std::filesystem::path& folder,
                                                                     std::string_view roomName,
                                                                     std::chrono::year_month_day date);

// Today's date where the person is.
[[nodiscard]] std::chrono::year_month_day Today();

}  // namespace Corvanta::Host
