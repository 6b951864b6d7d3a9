// A session description (RFC 8866) that is read.
#pragma once

#include <gst/sdp/sdp.h>

#include <memory>
#include <string>

namespace Corvanta::Engine {

using SdpMessage = std::unique_ptr<GstSDPMessage, decltype(&gst_sdp_message_free)>;

// Null where the text is none.
[[nodiscard]] SdpMessage ReadSdp(const std::string& sdp);

}  // namespace Corvanta::Engine
