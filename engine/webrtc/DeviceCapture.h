// A camera of the machine as an element of a pipeline. Engine's thread.
#pragma once

#include <string>

#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/PictureShape.h"

namespace Corvanta::Engine {

// A new element with one source pad, whose pictures may be compressed. The camera is asked for that shape,
// and gives what comes nearest where it has none such. Null when there is no camera of that name.
[[nodiscard]] GstOwned<GstElement> MakeCameraElement(const std::string& name, const PictureShape& shape);

}  // namespace Corvanta::Engine
