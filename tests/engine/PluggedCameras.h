// Cameras that a test plugs into the machine and pulls out again, in the eyes of GStreamer. Each shows one
// grey. To be made before the engine looks at the machine's devices. The object ends the engine's look at
// them.
#pragma once

#include <gst/gst.h>

#include <map>
#include <string>
#include <vector>

namespace Corvanta::Engine {

class PluggedCameras final {
public:
    struct Camera {
        std::string name;
        // 0xRRGGBB.
        unsigned color = 0;
    };

    explicit PluggedCameras(const std::vector<Camera>& cameras);
    ~PluggedCameras();
    PluggedCameras(const PluggedCameras&) = delete;
    PluggedCameras& operator=(const PluggedCameras&) = delete;

    // While the engine watches.
    void Plug(const Camera& camera);
    void Pull(const std::string& name);

private:
    std::map<std::string, GstDevice*> plugged;
};

}  // namespace Corvanta::Engine
