#include "connectivity/ConnectivityText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace Corvanta::Connectivity {
namespace {

constexpr double kBitsPerMegabit = 1'000'000.0;
constexpr int kRateDecimals = 3;
// The longest double has 309 digits before its point.
constexpr size_t kLongestNumber = 330;
// Several times the longest name of a processor or a system.
constexpr size_t kMostTextBytes = 1024;

// With leading zeros.
void AppendDigits(std::string& text, int64_t value, size_t digits) {
    const std::string number = std::to_string(value);
    if (number.size() < digits) text.append(digits - number.size(), '0');
    text += number;
}

[[nodiscard]] bool IsContinuationByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

std::string FormatRate(double bitsPerSecond) {
    std::array<char, kLongestNumber> digits{};
    if (!std::isfinite(bitsPerSecond)) return kUnknownText;
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), bitsPerSecond / kBitsPerMegabit,
                      std::chars_format::fixed, kRateDecimals);
    if (error != std::errc{}) return kUnknownText;
    std::string text(digits.data(), end);
    text += "Mbps";
    return text;
}

std::string FormatMilliseconds(int32_t milliseconds) {
    std::string text = std::to_string(milliseconds);
    text += "ms";
    return text;
}

std::string FormatTimestamp(ReportTime time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    std::string text;
    AppendDigits(text, int{date.year()}, 4);
    text += '-';
    AppendDigits(text, unsigned{date.month()}, 2);
    text += '-';
    AppendDigits(text, unsigned{date.day()}, 2);
    text += ' ';
    AppendDigits(text, clock.hours().count(), 2);
    text += ':';
    AppendDigits(text, clock.minutes().count(), 2);
    text += ':';
    AppendDigits(text, clock.seconds().count(), 2);
    text += '.';
    AppendDigits(text, clock.subseconds().count(), 7);
    text += " UTC";
    return text;
}

std::string BoundText(const std::string& text) {
    if (text.size() <= kMostTextBytes) return text;
    size_t end = kMostTextBytes;
    while (end > 0 && IsContinuationByte(text[end])) --end;
    return text.substr(0, end);
}

}  // namespace Corvanta::Connectivity
