// Keeps the local microphone's state. Held by the room's view. The host's thread writes it; media threads
// read it when they connect again.
#pragma once

#include <atomic>

namespace Corvanta::UI {

class MicrophoneController final {
public:
    // Stores the state only: no device or track is touched.
    void SetMicState(bool enabled);
    [[nodiscard]] bool IsMicEnabled() const;

private:
    std::atomic<bool> isMicEnabled_{false};
};

}  // namespace Corvanta::UI
