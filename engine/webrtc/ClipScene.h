// What a generated clip shows and sounds like at a moment: a drawn person who talks in turns with the others,
// or the test picture. Made once, which takes some 100 ms for the first of a look; afterwards only read, on
// any thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "engine/webrtc/ClipPainter.h"

namespace Corvanta::Engine {

constexpr int kClipWidth = 1280;
constexpr int kClipHeight = 720;
constexpr int kClipFrameRate = 30;

// How finely and how often a clip is drawn. The sides are the full ones over a whole number.
struct ClipFormat {
    int width = kClipWidth;
    int height = kClipHeight;
    int frameRate = kClipFrameRate;

    bool operator==(const ClipFormat&) const = default;
};

// What a machine of two cores can draw beside everything else when there are that many clips.
[[nodiscard]] ClipFormat ClipFormatFor(std::size_t clips);

// How long each generated person of a room speaks before it is the next one's turn.
constexpr std::chrono::seconds kSpeakingTime{4};

// Whose turn it is to speak among them.
struct SpeakingTurn {
    std::size_t index = 0;
    std::size_t count = 1;
};

class ClipScene {
public:
    virtual ~ClipScene() = default;

    [[nodiscard]] const ClipFormat& Format() const { return format; }

    // Draws the picture of that moment over all of `target`, which has the format's size.
    virtual void Draw(std::chrono::nanoseconds time, const Planes& target) const = 0;
    // Loudness of the clip's tone at that moment, 0 to 1 of full scale, and its pitch.
    [[nodiscard]] virtual double Loudness(std::chrono::nanoseconds time) const = 0;
    [[nodiscard]] virtual double PitchHz() const = 0;

    ClipScene(const ClipScene&) = delete;
    ClipScene& operator=(const ClipScene&) = delete;

protected:
    explicit ClipScene(const ClipFormat& clipFormat) : format(clipFormat) {}

private:
    const ClipFormat format;
};

// How many looks have nothing in common. Persons of one look share most of what they cost.
constexpr std::size_t kPlainLooks = 4;

// A look for that name, the same everywhere and none of the first that go by numbers, up to 16.
[[nodiscard]] std::size_t LookOf(const std::string& name);

// A person in front of a soft ground. `look` chooses one of some hundred looks: the first kPlainLooks
// have nothing in common, the others are made of their parts.
[[nodiscard]] std::unique_ptr<ClipScene> MakePersonScene(const std::string& name, std::size_t look,
                                                         const SpeakingTurn& turn,
                                                         const ClipFormat& format = {});
// Colour bars at 75 % (ITU-R BT.1729 order, BT.709 values), with a ball that moves over them and the running
// time.
[[nodiscard]] std::unique_ptr<ClipScene> MakeTestScene(const std::string& name);

}  // namespace Corvanta::Engine
