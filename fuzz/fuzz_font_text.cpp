// Any text for a font: reading it throws what it promises or gives a font, and what a font writes reads back
// as it was written, unless its family speaks of a size.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

#include "drawing/FontText.h"

using namespace Corvanta::Drawing;

namespace {

[[nodiscard]] std::optional<FontText> Read(const std::string& text) {
    try {
        return ParseFontText(text);
    } catch (const std::invalid_argument&) {
    } catch (const std::out_of_range&) {
    } catch (const std::length_error&) {
    }
    // Each of the three says that the text is no font.
    return std::nullopt;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::optional<FontText> font = Read(std::string(reinterpret_cast<const char*>(data), size));
    if (!font) return 0;
    const std::string written = WriteFontText(*font);
    if (font->size <= 0 || font->family.find("px") != std::string::npos) return 0;
    const std::optional<FontText> again = Read(written);
    if (!again || WriteFontText(*again) != written) std::abort();
    return 0;
}
