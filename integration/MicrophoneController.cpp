#include "integration/MicrophoneController.h"

namespace Corvanta::UI {

void MicrophoneController::SetMicState(bool enabled) {
    isMicEnabled_.store(enabled);
}

bool MicrophoneController::IsMicEnabled() const {
    return isMicEnabled_.load();
}

}  // namespace Corvanta::UI
