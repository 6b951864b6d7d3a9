#include "engine/webrtc/ClipLabel.h"

#include <algorithm>
#include <cstdlib>

#include "engine/webrtc/ClipText.h"

namespace Corvanta::Engine {

namespace {

constexpr int kTextSize = 32;
constexpr int kMargin = 32;
constexpr int kPadding = 20;
constexpr int kTimeSymbols = 6;
constexpr Rgb kInk = FromHex(0xFFFFFF);
constexpr Rgb kPlate = FromHex(0x101418);
constexpr float kPlateOpacity = 0.55F;

Sprite MakePlate(int width, int height, int padding, const Mask* text) {
    Canvas canvas(width, height);
    const auto right = static_cast<float>(canvas.Width());
    const auto bottom = static_cast<float>(canvas.Height());
    const float radius = static_cast<float>(padding) * 0.7F;
    canvas.Fill(RoundedBox(0, 0, right, bottom, radius), kPlate, kPlateOpacity);
    if (text != nullptr) canvas.FillMask(*text, padding, 0, kInk);
    return canvas.ToSprite();
}

Sprite MakeGlyph(const Mask& mask, int width) {
    Canvas canvas(width, mask.height);
    canvas.FillMask(mask, (canvas.Width() - mask.width) / 2, 0, kInk);
    return canvas.ToSprite();
}

}  // namespace

ClipLabel::ClipLabel(const std::string& name, int divisor)
    : margin(kMargin / divisor), padding(kPadding / divisor) {
    ClipText text(kTextSize / divisor);
    if (const auto mask = text.Render(name))
        nameSprite = MakePlate(mask->width + 2 * padding, mask->height, padding, &*mask);

    std::array<Mask, 10> masks;
    for (std::size_t digit = 0; digit < masks.size(); ++digit) {
        auto mask = text.Render(std::to_string(digit));
        if (!mask) return;
        masks[digit] = std::move(*mask);
        digitWidth = std::max(digitWidth, (masks[digit].width + 3) & ~1);
    }
    for (std::size_t digit = 0; digit < masks.size(); ++digit)
        digits[digit] = MakeGlyph(masks[digit], digitWidth);
    if (const auto mask = text.Render(":")) colon = MakeGlyph(*mask, digitWidth);
    if (const auto mask = text.Render(".")) point = MakeGlyph(*mask, digitWidth);
    timeGround = MakePlate(kTimeSymbols * digitWidth + 2 * padding, masks[0].height, padding, nullptr);
}

void ClipLabel::Draw(const Planes& target, std::chrono::nanoseconds time) const {
    nameSprite.Draw(target, margin, margin);
    if (timeGround.IsEmpty()) return;
    int left = target.width - margin - timeGround.Width();
    timeGround.Draw(target, left, margin);
    left += padding;
    const auto tenths = std::chrono::duration_cast<std::chrono::milliseconds>(time).count() / 100;
    const auto digit = [&](long long value) -> const Sprite& {
        return digits[static_cast<std::size_t>(value % 10)];
    };
    const long long seconds = tenths / 10;
    for (const Sprite* symbol :
         {&digit(seconds / 60), &colon, &digit(seconds % 60 / 10), &digit(seconds), &point, &digit(tenths)}) {
        symbol->Draw(target, left, margin);
        left += digitWidth;
    }
}

}  // namespace Corvanta::Engine
