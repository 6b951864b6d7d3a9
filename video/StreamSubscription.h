// Which parts of a stream this client receives. Any thread.
#pragma once

#include <string>

namespace Corvanta::Video {

void ConfigureStream(const std::string& streamId, bool video, bool audio, bool data);

}  // namespace Corvanta::Video
