// Lets SDL's renderers give another driver's name than their own, so that what depends on it can be tested on
// the software renderer. One thread.
#pragma once

#include "tests/fake_platform/SdlRecorder.h"

namespace Corvanta::Testing {

// Until the object goes.
class PretendedDriver final {
public:
    // name must outlive the object.
    explicit PretendedDriver(const char* name) { Sdl().NameRenderers(name); }
    ~PretendedDriver() { Sdl().NameRenderers(nullptr); }
    PretendedDriver(const PretendedDriver&) = delete;
    PretendedDriver& operator=(const PretendedDriver&) = delete;
};

}  // namespace Corvanta::Testing
