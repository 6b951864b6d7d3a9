#include "drawing/Color.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

#include "drawing/AsciiSpace.h"

namespace Corvanta::Drawing {

namespace {

constexpr float kOpaque = 255;

// Value of a digit of any base up to 16; beyond that for other characters.
[[nodiscard]] uint32_t DigitValue(char character) {
    if (character >= '0' && character <= '9') return static_cast<uint32_t>(character - '0');
    if (character >= 'a' && character <= 'f') return static_cast<uint32_t>(character - 'a') + 10;
    if (character >= 'A' && character <= 'F') return static_cast<uint32_t>(character - 'A') + 10;
    return std::numeric_limits<uint32_t>::max();
}

// A decimal number too large or too small for a float: whether it is too large.
[[nodiscard]] bool IsHuge(std::string_view number) {
    const size_t exponentMark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view digits = number.substr(0, exponentMark);
    const size_t point = std::min(digits.find('.'), digits.size());
    const size_t significant = std::min(digits.find_first_of("123456789"), digits.size());
    const auto wholeDigits = static_cast<double>(point) - static_cast<double>(significant);

    std::string_view exponentText = number.substr(std::min(exponentMark + 1, number.size()));
    const bool isNegative = exponentText.starts_with('-');
    if (isNegative || exponentText.starts_with('+')) exponentText.remove_prefix(1);
    double exponent = 0;
    for (const char digit : exponentText) exponent = exponent * 10 + DigitValue(digit);
    return wholeDigits + (isNegative ? -exponent : exponent) > 0;
}

// Reads a text from the front as the scanning functions of C do in their own locale, which the host may have
// changed. Each step returns whether the text went on as expected.
class TextScan final {
public:
    explicit TextScan(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool Literal(std::string_view expected) {
        if (!rest_.starts_with(expected)) return false;
        rest_.remove_prefix(expected.size());
        return true;
    }

    // Keeps the low 32 bits of any number; a minus negates them.
    [[nodiscard]] bool Unsigned(uint32_t base, uint32_t& value) {
        SkipSpace();
        const bool isNegative = TakeSign();
        bool any = false;
        if (base == 16 && StartsAsHexadecimal()) {
            rest_.remove_prefix(2);
            any = true;
        }
        uint32_t number = 0;
        for (; !rest_.empty() && DigitValue(rest_.front()) < base; rest_.remove_prefix(1)) {
            number = number * base + DigitValue(rest_.front());
            any = true;
        }
        value = isNegative ? 0U - number : number;
        return any;
    }

    // What is too large becomes infinite, what is too small 0.
    [[nodiscard]] bool Fraction(float& value) {
        SkipSpace();
        const bool isNegative = TakeSign();
        auto format = std::chars_format::general;
        if (StartsAsHexadecimal()) {
            rest_.remove_prefix(2);
            format = std::chars_format::hex;
        }
        // A second sign, which from_chars would take.
        if (rest_.starts_with('-')) return false;
        const char* const end = rest_.data() + rest_.size();
        const auto result = std::from_chars(rest_.data(), end, value, format);
        if (result.ec == std::errc::result_out_of_range) {
            const std::string_view number(rest_.data(), static_cast<size_t>(result.ptr - rest_.data()));
            value = format == std::chars_format::hex || IsHuge(number)
                        ? std::numeric_limits<float>::infinity()
                        : 0;
        } else if (result.ec != std::errc{}) {
            return false;
        }
        if (isNegative) value = -value;
        return true;
    }

    void SkipSpace() {
        while (!rest_.empty() && IsAsciiSpace(rest_.front())) rest_.remove_prefix(1);
    }

private:
    [[nodiscard]] bool StartsAsHexadecimal() const {
        return rest_.starts_with("0x") || rest_.starts_with("0X");
    }

    // Whether it was a minus.
    bool TakeSign() {
        const bool isNegative = rest_.starts_with('-');
        if (isNegative || rest_.starts_with('+')) rest_.remove_prefix(1);
        return isNegative;
    }

    std::string_view rest_;
};

// The low 8 bits of the nearest whole number. Nothing for what has none.
[[nodiscard]] std::optional<uint8_t> AlphaOf(float fraction) {
    constexpr float kBeyond8Bits = 256;
    const float alpha = std::round(fraction * kOpaque);
    if (!std::isfinite(alpha)) return std::nullopt;
    return static_cast<uint8_t>(static_cast<int>(std::fmod(alpha, kBeyond8Bits)));
}

[[nodiscard]] Color ParseRgba(std::string_view text) {
    TextScan scan(text);
    if (!scan.Literal("rgba(")) return {};
    uint32_t channels[3] = {};
    for (uint32_t& channel : channels) {
        if (!scan.Unsigned(10, channel) || !scan.Literal(",")) return {};
    }
    float fraction = 0;
    if (!scan.Fraction(fraction)) return {};
    const std::optional<uint8_t> alpha = AlphaOf(fraction);
    if (!alpha) return {};
    return {static_cast<uint8_t>(channels[0]), static_cast<uint8_t>(channels[1]),
            static_cast<uint8_t>(channels[2]), *alpha};
}

[[nodiscard]] Color ParseHexadecimal(std::string_view text) {
    TextScan scan(text);
    uint32_t rgba = 0;
    if (!scan.Literal("#") || !scan.Unsigned(16, rgba)) return {};
    return Color(rgba);
}

void AppendHexadecimal(std::string& text, uint8_t byte) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
}

}  // namespace

Color::Color(uint32_t rgba)
    : r(static_cast<uint8_t>(rgba >> 24)),
      g(static_cast<uint8_t>(rgba >> 16)),
      b(static_cast<uint8_t>(rgba >> 8)),
      a(static_cast<uint8_t>(rgba)) {}

Color Color::Parse(const std::string& text) {
    if (text.find("rgba") != std::string::npos) return ParseRgba(text);
    if (text.starts_with('#')) return ParseHexadecimal(text);
    return {};
}

std::string Color::ToRgbaString() const {
    std::string text = "rgba(";
    for (const uint8_t channel : {r, g, b}) {
        text += std::to_string(channel);
        text += ", ";
    }
    // Not by printf, which would write the host's decimal comma.
    char fraction[16];
    const auto result =
        std::to_chars(std::begin(fraction), std::end(fraction), a / 255.0, std::chars_format::fixed, 6);
    text.append(std::begin(fraction), result.ptr);
    text += ')';
    return text;
}

std::string Color::ToHexString() const {
    std::string text = "#";
    for (const uint8_t channel : {r, g, b, a}) AppendHexadecimal(text, channel);
    return text;
}

uint32_t Color::InMemoryOrder() const {
    const uint8_t bytes[] = {r, g, b, a};
    uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof(value));
    return value;
}

}  // namespace Corvanta::Drawing
