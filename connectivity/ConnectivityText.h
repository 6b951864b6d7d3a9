// How the panel and the reports write figures down: the same in every locale. Plain values; any thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace Corvanta::Connectivity {

// What stands for a figure that nobody has.
inline constexpr const char* kUnknownText = "--";

// Bits a second as "1.234Mbps"; kUnknownText for what is no finite number.
[[nodiscard]] std::string FormatRate(double bitsPerSecond);

// "17ms".
[[nodiscard]] std::string FormatMilliseconds(int32_t milliseconds);

// A report's time, in steps of 100 nanoseconds whatever the machine's clock: "2024-03-01 12:34:56.1234567
// UTC".
using ReportTime = std::chrono::time_point<std::chrono::system_clock,
                                           std::chrono::duration<int64_t, std::ratio<1, 10'000'000>>>;
[[nodiscard]] std::string FormatTimestamp(ReportTime time);

// The text, or as many whole characters of it as fit into a sane number of bytes: what a service answers is
// rasterised, whatever it is.
[[nodiscard]] std::string BoundText(const std::string& text);

}  // namespace Corvanta::Connectivity
