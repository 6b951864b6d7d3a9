#include "engine/connections/TrackSettings.h"

namespace Corvanta::Engine {

TrackSettings& TrackSettings::Get() {
    static TrackSettings settings;
    return settings;
}

}  // namespace Corvanta::Engine
