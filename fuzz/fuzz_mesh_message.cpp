// What a member of a mesh says: over the hub, and over a data channel.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "engine/common/EngineLoop.h"
#include "engine/mesh/MeshMessage.h"
#include "engine/transport/TextLine.h"
#include "engine/webrtc/MainStreamMessage.h"

namespace {

using namespace Corvanta::Engine;

void Check(bool holds) {
    if (!holds) std::abort();
}

void ReadPayload(std::string_view payload) {
    const auto message = ReadMeshMessage(payload);
    if (message) Check(ReadMeshMessage(WriteMeshMessage(*message)) == message);
    const auto shown = ReadMainStream(std::string(payload));
    if (shown) Check(ReadMainStream(WriteMainStream(*shown)) == shown);
}

}  // namespace

// The input is messages with '|' between; each is a payload, and what comes over the channel with a line feed
// for every '~'.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    EngineLoop loop;
    std::size_t heard = 0;
    const auto line =
        std::make_shared<TextLine>(loop, "fuzzer",
                                   TextLine::Events{.send = [](const std::string&) { return true; },
                                                    .text =
                                                        [&heard](const std::string& text) {
                                                            Check(text.size() <= kLongestText);
                                                            ++heard;
                                                        }});
    line->Open();
    line->Send("one");
    line->Send("two");
    while (!rest.empty()) {
        const auto end = rest.find('|');
        const std::string_view part = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        ReadPayload(part);
        std::string message(part);
        for (char& letter : message) {
            if (letter == '~') letter = '\n';
        }
        line->Take(message);
        Check(line->Unconfirmed() <= 2 && heard <= 2 * TextLine::kMostUnconfirmed);
    }
    return 0;
}
