#include "engine/webrtc/ClipScene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <numbers>
#include <utility>
#include <vector>

#include "engine/webrtc/ClipLabel.h"

namespace Corvanta::Engine {

namespace {

constexpr float kWidth = kClipWidth;
constexpr float kHeight = kClipHeight;
// Measured: 25 clips of full size cost half a core and 210 MB, of half size a quarter and 73 MB; 100 of half
// size at half the rate cost 0.6 of a core.
constexpr std::size_t kFewClips = 9;
constexpr std::size_t kManyClips = 49;

double Seconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double>(time).count();
}

double Wave(double seconds, double periodSeconds, double phase = 0) {
    return std::sin(2 * std::numbers::pi * (seconds / periodSeconds + phase));
}

int Round(double value) {
    return static_cast<int>(std::lround(value));
}

Rgb Mix(const Rgb& from, const Rgb& to, float share) {
    return {std::lerp(from.red, to.red, share), std::lerp(from.green, to.green, share),
            std::lerp(from.blue, to.blue, share)};
}

// A whole picture that is painted once and copied under every frame.
class Ground final {
public:
    explicit Ground(const Canvas& canvas)
        : width(canvas.Width()),
          height(canvas.Height()),
          samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3 / 2) {
        canvas.WriteTo(View());
    }

    void CopyTo(const Planes& target) const {
        const Planes source = const_cast<Ground*>(this)->View();
        CopyPlane(source.y, source.strideY, target.y, target.strideY, width, height);
        CopyPlane(source.u, source.strideUV, target.u, target.strideUV, width / 2, height / 2);
        CopyPlane(source.v, source.strideUV, target.v, target.strideUV, width / 2, height / 2);
    }

    [[nodiscard]] Planes View() {
        const std::ptrdiff_t luma = std::ptrdiff_t{width} * height;
        uint8_t* const first = samples.data();
        return {width, height, first, first + luma, first + luma * 5 / 4, width, width / 2};
    }

private:
    static void CopyPlane(const uint8_t* from, int fromStride, uint8_t* to, int toStride, int width,
                          int height) {
        if (fromStride == toStride && fromStride == width) {
            std::memcpy(to, from, static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
            return;
        }
        for (int row = 0; row < height; ++row) {
            std::memcpy(to + static_cast<std::ptrdiff_t>(row) * toStride,
                        from + static_cast<std::ptrdiff_t>(row) * fromStride,
                        static_cast<std::size_t>(width));
        }
    }

    int width, height;
    std::vector<uint8_t> samples;
};

// Paints in the coordinates of a clip of full size, whatever size the target has.
struct Brush {
    const Planes& target;
    int divisor;

    void Draw(const Sprite& sprite, int x, int y) const { sprite.Draw(target, x / divisor, y / divisor); }
    void DrawCentred(const Sprite& sprite, int x, int y) const {
        sprite.Draw(target, x / divisor - sprite.Width() / 2, y / divisor - sprite.Height() / 2);
    }
    void Box(int left, int top, int right, int bottom, const Yuv& color) const {
        FillBox(target, left / divisor, top / divisor, right / divisor, bottom / divisor, color);
    }
};

struct Look {
    Rgb top, bottom, glow, shirt, skin, hair, accent;
    double pitchHz;
    bool hasLongHair;
    bool hasGlasses;
};

constexpr std::array<Look, kPlainLooks> kLooks{
    Look{FromHex(0x16243F), FromHex(0x2E6F95), FromHex(0x7FC8DE), FromHex(0xE9A15B), FromHex(0xF0C5A3),
         FromHex(0x5A3825), FromHex(0xFFD166), 220.0, true, false},
    Look{FromHex(0x3A1C3F), FromHex(0xB24A63), FromHex(0xFFB48F), FromHex(0x2B3A55), FromHex(0xC98E66),
         FromHex(0x1F1A1C), FromHex(0xFFD9A0), 147.0, false, true},
    Look{FromHex(0x0F2F2A), FromHex(0x4F8F63), FromHex(0xC4DDA4), FromHex(0xF2E8C4), FromHex(0x8A5A3C),
         FromHex(0x17110E), FromHex(0xBFF0C8), 277.0, true, true},
    Look{FromHex(0x241747), FromHex(0x6A4BB0), FromHex(0xBBA8FF), FromHex(0x37B5A4), FromHex(0xF4D3BC),
         FromHex(0xB98A4E), FromHex(0xCFC2FF), 165.0, false, false},
};

// Ground, face, shirt and glasses may each be of another of them.
constexpr std::size_t kAllLooks = kPlainLooks * kPlainLooks * kPlainLooks * kPlainLooks;

Look LookAt(std::size_t index) {
    const auto part = [&](std::size_t place) -> const Look& {
        return kLooks[(index + index / place) % kPlainLooks];
    };
    const Look& face = part(kPlainLooks);
    Look look = kLooks[index % kPlainLooks];
    look.skin = face.skin;
    look.hair = face.hair;
    look.hasLongHair = face.hasLongHair;
    look.shirt = part(kPlainLooks * kPlainLooks).shirt;
    look.hasGlasses = part(kPlainLooks * kPlainLooks * kPlainLooks).hasGlasses;
    return look;
}

Canvas PaintGround(const Look& look) {
    Canvas canvas(kClipWidth, kClipHeight);
    canvas.Paint([&](float x, float y) {
        const float down = std::clamp(y / kHeight * 0.85F + x / kWidth * 0.15F, 0.0F, 1.0F);
        return Mix(look.top, look.bottom, down * down * (3.0F - 2.0F * down));
    });
    canvas.Fill(Ellipse(kWidth * 0.5F, kHeight * 0.55F, 230, 230), look.glow, 0.38F, 420);
    canvas.Fill(Ellipse(kWidth * 0.14F, kHeight * 0.72F, 60, 60), look.glow, 0.16F, 160);
    canvas.Fill(Ellipse(kWidth * 0.88F, kHeight * 0.30F, 80, 80), look.glow, 0.18F, 200);
    return canvas;
}

Canvas PaintOrb(const Look& look, float radius, float opacity) {
    const float size = radius * 2 + 40;
    Canvas canvas(static_cast<int>(size), static_cast<int>(size));
    canvas.Fill(Ellipse(size / 2, size / 2, radius, radius), look.glow, opacity, 36);
    return canvas;
}

// Coordinates of the person, in the sprite's own pixels.
constexpr float kPersonWidth = 620;
constexpr float kPersonHeight = 640;
constexpr float kFaceX = kPersonWidth / 2;
constexpr float kFaceY = 210;
constexpr float kEyeOffsetX = 42;
constexpr float kEyeY = kFaceY - 4;
constexpr float kMouthY = kFaceY + 68;

Canvas PaintPerson(const Look& look) {
    Canvas canvas(static_cast<int>(kPersonWidth), static_cast<int>(kPersonHeight));
    const Rgb shade = Mix(look.skin, FromHex(0x7A3B22), 0.30F);
    if (look.hasLongHair) {
        canvas.Fill(RoundedBox(kFaceX - 142, kFaceY - 130, kFaceX + 142, kFaceY + 210, 120), look.hair);
    }
    canvas.Fill(Ellipse(kFaceX, 690, 296, 312), look.shirt);
    canvas.Fill(Ellipse(kFaceX, 388, 64, 40), shade);
    canvas.Fill(RoundedBox(kFaceX - 50, kFaceY + 60, kFaceX + 50, kFaceY + 190, 46), shade);
    canvas.Fill(Ellipse(kFaceX - 106, kFaceY + 6, 18, 28), shade);
    canvas.Fill(Ellipse(kFaceX + 106, kFaceY + 6, 18, 28), shade);
    canvas.Fill(Ellipse(kFaceX, kFaceY, 108, 132), look.skin);
    // A cap of hair: what of a larger ellipse lies above the forehead.
    canvas.Fill(Without(Ellipse(kFaceX, kFaceY - 16, 122, 134), Ellipse(kFaceX + 12, kFaceY + 42, 132, 118)),
                look.hair);
    const Rgb cheek = FromHex(0xD8705C);
    canvas.Fill(Ellipse(kFaceX - 58, kFaceY + 42, 10, 8), cheek, 0.35F, 24);
    canvas.Fill(Ellipse(kFaceX + 58, kFaceY + 42, 10, 8), cheek, 0.35F, 24);
    canvas.Fill(RoundedBox(kFaceX - 6, kFaceY + 12, kFaceX + 6, kFaceY + 36, 6), shade, 0.8F);
    for (const float side : {-1.0F, 1.0F}) {
        const float brow = kFaceX + side * kEyeOffsetX;
        canvas.Fill(RoundedBox(brow - 20, kEyeY - 32, brow + 20, kEyeY - 25, 3.5F), look.hair);
        if (look.hasGlasses) {
            canvas.Fill(Outline(RoundedBox(brow - 33, kEyeY - 22, brow + 33, kEyeY + 24, 18), 5),
                        FromHex(0x20242A));
        }
    }
    if (look.hasGlasses) {
        canvas.Fill(RoundedBox(kFaceX - 10, kEyeY - 5, kFaceX + 10, kEyeY, 2), FromHex(0x20242A));
    }
    return canvas;
}

Canvas PaintEllipse(float radiusX, float radiusY, const Rgb& color) {
    Canvas canvas(static_cast<int>(radiusX * 2 + 4), static_cast<int>(radiusY * 2 + 4));
    canvas.Fill(Ellipse(radiusX + 2, radiusY + 2, radiusX, radiusY), color);
    return canvas;
}

// What all persons of a look share: most of the time and the memory that a scene costs.
struct PersonArt {
    static constexpr std::size_t kMouths = 6;

    PersonArt(const Look& look, int divisor)
        : ground(PaintGround(look).Reduced(divisor)),
          largeOrb(PaintOrb(look, 90, 0.20F).Reduced(divisor).ToSprite()),
          smallOrb(PaintOrb(look, 46, 0.26F).Reduced(divisor).ToSprite()),
          person(PaintPerson(look).Reduced(divisor).ToSprite()),
          openEye(PaintEllipse(8, 10, FromHex(0x2A1E1C)).Reduced(divisor).ToSprite()),
          closedEye(PaintEllipse(9, 2, FromHex(0x2A1E1C)).Reduced(divisor).ToSprite()) {
        for (std::size_t step = 0; step < mouths.size(); ++step) {
            const auto opening = static_cast<float>(step);
            const Canvas mouth = PaintEllipse(26 - opening * 1.5F, 3 + opening * 4, FromHex(0x8E3B3B));
            mouths[step] = mouth.Reduced(divisor).ToSprite();
        }
    }

    const Ground ground;
    const Sprite largeOrb, smallOrb, person, openEye, closedEye;
    std::array<Sprite, kMouths> mouths;
};

// Shared while anybody of that look is there. Any thread.
std::shared_ptr<const PersonArt> ArtOf(std::size_t lookIndex, int divisor) {
    static std::mutex mutex;
    static std::map<std::pair<std::size_t, int>, std::weak_ptr<const PersonArt>> known;
    const std::lock_guard lock(mutex);
    std::weak_ptr<const PersonArt>& entry = known[{lookIndex, divisor}];
    auto art = entry.lock();
    if (!art) {
        art = std::make_shared<const PersonArt>(LookAt(lookIndex), divisor);
        entry = art;
    }
    return art;
}

class PersonScene final : public ClipScene {
public:
    PersonScene(const std::string& name, std::size_t lookIndex, const SpeakingTurn& speakingTurn,
                const ClipFormat& clipFormat)
        : ClipScene(clipFormat),
          look(LookAt(lookIndex % kAllLooks)),
          phase(static_cast<double>(lookIndex) * 0.27),
          turn(speakingTurn),
          divisor(kClipWidth / clipFormat.width),
          label(name, divisor),
          art(ArtOf(lookIndex % kAllLooks, divisor)),
          accent(ToYuv(look.accent)) {}

    void Draw(std::chrono::nanoseconds time, const Planes& target) const override {
        const double seconds = Seconds(time);
        const Brush brush{target, divisor};
        art->ground.CopyTo(target);
        brush.Draw(art->largeOrb, Round(170 + 120 * Wave(seconds, 11, phase)),
                   Round(250 + 150 * Wave(seconds, 7, phase + 0.2)));
        brush.Draw(art->smallOrb, Round(1040 + 110 * Wave(seconds, 8, phase)),
                   Round(220 + 130 * Wave(seconds, 5, phase)));

        const double loudness = Loudness(time);
        const int left = Round((kWidth - kPersonWidth) / 2 + 22 * Wave(seconds, 4.6, phase));
        const int top = Round(96 + 9 * Wave(seconds, 3.1, phase) - 8 * loudness / kFullVoice);
        brush.Draw(art->person, left, top);
        // Everybody blinks now and then, at a rhythm of one's own.
        const bool blinks = std::fmod(seconds + phase * 7, 3.4) < 0.14;
        for (const float side : {-1.0F, 1.0F}) {
            brush.DrawCentred(blinks ? art->closedEye : art->openEye,
                              left + Round(kFaceX + side * kEyeOffsetX), top + Round(kEyeY));
        }
        const auto widest = static_cast<double>(art->mouths.size() - 1);
        const auto mouth = static_cast<std::size_t>(std::clamp(loudness / kFullVoice * widest, 0.0, widest));
        brush.DrawCentred(art->mouths[mouth], left + Round(kFaceX), top + Round(kMouthY));
        if (loudness > 0) DrawVoice(brush, seconds, loudness);
        label.Draw(target, time);
    }

    [[nodiscard]] double Loudness(std::chrono::nanoseconds time) const override {
        const double turnSeconds = std::chrono::duration<double>(kSpeakingTime).count();
        const double seconds = Seconds(time);
        if (static_cast<std::size_t>(seconds / turnSeconds) % turn.count != turn.index) return 0;
        const double within = std::fmod(seconds, turnSeconds);
        const double fade = std::clamp(std::min(within - 0.2, turnSeconds - 0.3 - within) / 0.15, 0.0, 1.0);
        const double syllables = std::sqrt(std::max(0.0, 0.35 + 0.65 * Wave(seconds, 0.31, phase)));
        const double sentence = 0.7 + 0.3 * Wave(seconds, 1.3, phase);
        return kFullVoice * fade * syllables * sentence;
    }

    [[nodiscard]] double PitchHz() const override { return look.pitchHz; }

private:
    static constexpr double kFullVoice = 0.16;

    // Bars that dance with the voice.
    void DrawVoice(const Brush& brush, double seconds, double loudness) const {
        constexpr int kBars = 5;
        constexpr int kBarWidth = 8;
        constexpr int kBarGap = 6;
        constexpr int kLeft = 40;
        constexpr int kMiddle = 136;
        for (int bar = 0; bar < kBars; ++bar) {
            const double share = 0.55 + 0.45 * Wave(seconds, 0.37, bar * 0.31);
            const int half = 3 + Round(24 * share * loudness / kFullVoice);
            const int left = kLeft + bar * (kBarWidth + kBarGap);
            brush.Box(left, kMiddle - half, left + kBarWidth, kMiddle + half, accent);
        }
    }

    const Look look;
    const double phase;
    const SpeakingTurn turn;
    const int divisor;
    const ClipLabel label;
    const std::shared_ptr<const PersonArt> art;
    const Yuv accent;
};

class TestScene final : public ClipScene {
public:
    explicit TestScene(const std::string& name)
        : ClipScene({}),
          label(name, 1),
          ground(Canvas(kClipWidth, kClipHeight)),
          ball(PaintEllipse(46, 46, FromHex(0xF6F6F6)).ToSprite()) {
        const Planes view = ground.View();
        for (std::size_t bar = 0; bar < kBars.size(); ++bar) {
            const auto left = static_cast<int>(bar * kClipWidth / kBars.size());
            const auto right = static_cast<int>((bar + 1) * kClipWidth / kBars.size());
            FillBox(view, left, 0, right, kBarsBottom, kBars[bar]);
        }
        for (int x = 0; x < kClipWidth; x += 2) {
            const auto grey = static_cast<uint8_t>(16 + x * 219 / (kClipWidth - 2));
            FillBox(view, x, kBarsBottom, x + 2, kClipHeight, {grey, 128, 128});
        }
    }

    void Draw(std::chrono::nanoseconds time, const Planes& target) const override {
        const double seconds = Seconds(time);
        ground.CopyTo(target);
        // Thrown up again every 1.6 s, across and back in 8.
        const double across = std::abs(std::fmod(seconds, 8.0) / 4.0 - 1.0);
        const double fall = std::fmod(seconds, 1.6) / 0.8 - 1.0;
        ball.Draw(target, Round(across * (kClipWidth - ball.Width())),
                  Round(kBarsBottom - ball.Height() - (1.0 - fall * fall) * 330));
        // A line that crosses the ramp once in two seconds.
        const int line = Round(std::fmod(seconds, 2.0) / 2.0 * kClipWidth);
        FillBox(target, line, kBarsBottom, line + 6, kClipHeight, {210, 16, 146});
        label.Draw(target, time);
    }

    [[nodiscard]] double Loudness(std::chrono::nanoseconds) const override { return kQuietTone; }
    [[nodiscard]] double PitchHz() const override { return 440.0; }

private:
    // -50 dB: there, but never taken for somebody who speaks.
    static constexpr double kQuietTone = 0.003;
    static constexpr int kBarsBottom = 576;
    static constexpr std::array<Yuv, 7> kBars{Yuv{180, 128, 128}, Yuv{168, 44, 136}, Yuv{145, 147, 44},
                                              Yuv{133, 63, 52},   Yuv{63, 193, 204}, Yuv{51, 109, 212},
                                              Yuv{28, 212, 120}};

    const ClipLabel label;
    Ground ground;
    const Sprite ball;
};

}  // namespace

ClipFormat ClipFormatFor(std::size_t clips) {
    if (clips <= kFewClips) return {};
    return {kClipWidth / 2, kClipHeight / 2, clips <= kManyClips ? kClipFrameRate : kClipFrameRate / 2};
}

std::size_t LookOf(const std::string& name) {
    constexpr std::size_t kSmallNumbers = kPlainLooks * kPlainLooks + 1;
    // FNV-1a, which is the same everywhere.
    std::uint32_t hash = 2166136261U;
    for (const char letter : name) hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
    // Its upper bits differ more from name to name.
    return kSmallNumbers + (hash >> 8U) % (kAllLooks - kSmallNumbers);
}

std::unique_ptr<ClipScene> MakePersonScene(const std::string& name, std::size_t look,
                                           const SpeakingTurn& turn, const ClipFormat& format) {
    return std::make_unique<PersonScene>(name, look, turn, format);
}

std::unique_ptr<ClipScene> MakeTestScene(const std::string& name) {
    return std::make_unique<TestScene>(name);
}

}  // namespace Corvanta::Engine
