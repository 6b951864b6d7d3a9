#include "integration/MicrophoneController.h"

namespace Corvanta::UI {

void MicrophoneController::SetMicState(bool enabled) {
    isMicEnabled_ = enabled;
}

bool MicrophoneController::IsMicEnabled() const {
    return isMicEnabled_;
}

}  // namespace Corvanta::UI
