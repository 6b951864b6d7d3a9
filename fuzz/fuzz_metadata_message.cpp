// Whatever a peer sends over the data channel, reading it must neither crash nor throw.
#include <cstddef>
#include <cstdint>
#include <string>

#include "room/VideoMetadataMessage.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(Corvanta::Room::ParseVideoMetadataMessage(text));
    return 0;
}
