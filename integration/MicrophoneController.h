// Keeps the local microphone's state. Held by the room's view; host thread.
#pragma once

namespace Corvanta::UI {

class MicrophoneController final {
public:
    // Stores the state only: no device or track is touched.
    void SetMicState(bool enabled);
    [[nodiscard]] bool IsMicEnabled() const;

private:
    bool isMicEnabled_ = false;
};

}  // namespace Corvanta::UI
