#include "engine/common/Utf8.h"

#include <array>
#include <cstdint>

namespace Corvanta::Engine {

namespace {

struct Lead {
    unsigned char mask, bits;
    std::size_t length;
    // Below it the character has a shorter form.
    std::uint32_t least;
};

constexpr std::array kLeads{
    Lead{0x80, 0x00, 1, 0x0},
    Lead{0xE0, 0xC0, 2, 0x80},
    Lead{0xF0, 0xE0, 3, 0x800},
    Lead{0xF8, 0xF0, 4, 0x10000},
};

struct Character {
    std::uint32_t code = 0;
    std::size_t length = 0;  // 0: it is none
};

Character ReadCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    for (const Lead& lead : kLeads) {
        if ((first & lead.mask) != lead.bits) continue;
        if (text.size() < lead.length) return {};
        std::uint32_t code = first & static_cast<unsigned char>(~lead.mask);
        for (std::size_t i = 1; i < lead.length; ++i) {
            const auto next = static_cast<unsigned char>(text[i]);
            if ((next & 0xC0U) != 0x80U) return {};
            code = code << 6U | (next & 0x3FU);
        }
        const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
        if (code < lead.least || code > 0x10FFFF || isSurrogate) return {};
        return {code, lead.length};
    }
    return {};
}

bool IsControl(std::uint32_t code) {
    constexpr std::uint32_t kLineSeparator = 0x2028, kParagraphSeparator = 0x2029;
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == kLineSeparator ||
           code == kParagraphSeparator;
}

}  // namespace

bool IsOneLine(std::string_view text) {
    while (!text.empty()) {
        const Character character = ReadCharacter(text);
        if (character.length == 0 || IsControl(character.code)) return false;
        text.remove_prefix(character.length);
    }
    return true;
}

std::string_view CutUtf8(std::string_view text, std::size_t mostBytes) {
    if (text.size() <= mostBytes) return text;
    std::size_t end = mostBytes;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return text.substr(0, end);
}

}  // namespace Corvanta::Engine
