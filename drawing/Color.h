// A colour of a drawing with its alpha, and its texts on the wire. A small value; any thread.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <string>

namespace Corvanta::Drawing {

class Color {
public:
    // Opaque black.
    Color() = default;
    Color(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha) : r(red), g(green), b(blue), a(alpha) {}
    // 0xRRGGBBAA, the form of the tool's record.
    explicit Color(uint32_t rgba);
    Color(const Color&) = default;
    Color& operator=(const Color&) = default;
    virtual ~Color() = default;

    // "rgba(255, 0, 0, 1.0)" with a fraction for alpha, its numbers cut to 8 bits, or "#RRGGBBAA". Anything
    // else is opaque black, as is a web colour's name or a form without alpha.
    [[nodiscard]] static Color Parse(const std::string& text);
    // "rgba(255, 0, 0, 1.000000)". Every alpha survives the way through the text.
    [[nodiscard]] std::string ToRgbaString() const;
    // "#RRGGBBAA", upper case.
    [[nodiscard]] std::string ToHexString() const;

    // The four bytes as one value, red at the lowest address.
    [[nodiscard]] uint32_t InMemoryOrder() const;
    [[nodiscard]] SDL_Color ToSdl() const { return {r, g, b, a}; }

    bool operator==(const Color& other) const {
        return r == other.r && g == other.g && b == other.b && a == other.a;
    }

    uint8_t r = 0;
    uint8_t g = 0;
    uint8_t b = 0;
    uint8_t a = 255;
};

}  // namespace Corvanta::Drawing
