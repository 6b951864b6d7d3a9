#include "video/StreamSubscription.h"

#include "platform/Connections.h"

namespace Corvanta::Video {

void ConfigureStream(const std::string& streamId, bool video, bool audio, bool data) {
    Connections_ConfigureStream(streamId, {{ConfigureStreamType::Audio, audio},
                                           {ConfigureStreamType::Video, video},
                                           {ConfigureStreamType::Data, data}});
}

}  // namespace Corvanta::Video
