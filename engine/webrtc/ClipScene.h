// What a generated clip shows and sounds like at a moment: a drawn person who talks in turns with the others,
// or the test picture. Made once, which takes some 100 ms; afterwards only read, on any thread.
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

// Whose turn it is to speak among the generated persons of a room.
struct SpeakingTurn {
    std::size_t index = 0;
    std::size_t count = 1;
};

class ClipScene {
public:
    virtual ~ClipScene() = default;

    // Draws the picture of that moment over all of `target`, which is kClipWidth x kClipHeight.
    virtual void Draw(std::chrono::nanoseconds time, const Planes& target) const = 0;
    // Loudness of the clip's tone at that moment, 0 to 1 of full scale, and its pitch.
    [[nodiscard]] virtual double Loudness(std::chrono::nanoseconds time) const = 0;
    [[nodiscard]] virtual double PitchHz() const = 0;

    ClipScene(const ClipScene&) = delete;
    ClipScene& operator=(const ClipScene&) = delete;

protected:
    ClipScene() = default;
};

// A person in front of a soft ground. `look` chooses one of the looks, which repeat.
[[nodiscard]] std::unique_ptr<ClipScene> MakePersonScene(const std::string& name, std::size_t look,
                                                         const SpeakingTurn& turn);
// Colour bars at 75 % (ITU-R BT.1729 order, BT.709 values), with a ball that moves over them and the running
// time.
[[nodiscard]] std::unique_ptr<ClipScene> MakeTestScene(const std::string& name);

}  // namespace Corvanta::Engine
