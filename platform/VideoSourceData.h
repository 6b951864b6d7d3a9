// Description of a stream's source, as its sender gave it. Plain value type.
#pragma once

#include <string>

namespace Corvanta {

struct VideoSourceData {
    std::string streamId;
    // Frames a second; -1 when nothing is known.
    float frameRate = -1.0F;
    std::string sourceName;

    bool operator==(const VideoSourceData&) const = default;
};

}  // namespace Corvanta
