// Whatever comes from a room's hub, from its clients or over a data channel: reading it must neither crash
// nor throw, keeps to its bounds, and what was read is written so that it reads the same.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "engine/signalling/LineBuffer.h"
#include "engine/signalling/RoomMessage.h"
#include "engine/signalling/TextPieces.h"

using namespace Corvanta::Engine;

namespace {

constexpr std::size_t kLongestFuzzedLine = 4096;

void Check(bool holds) {
    if (!holds) std::abort();
}

void ReadLine(const std::string& line) {
    const std::optional<RoomMessage> message = ReadRoomMessage(line);
    if (!message) return;
    std::string written = WriteRoomMessage(*message);
    written.pop_back();
    Check(written.find('\n') == std::string::npos);
    const std::optional<RoomMessage> again = ReadRoomMessage(written);
    // Of a hello of another version only the version is there to be written.
    const auto* const hello = std::get_if<RoomMessages::Hello>(&*message);
    if (hello == nullptr || hello->version == kRoomVersion) Check(again == message);
}

// The input is lines; each of them is a line of the hub, and a piece whose own line feed is the first '|'.
void Join(TextJoiner& joiner, std::string piece, TextJoiner::Clock::time_point now) {
    const auto feed = piece.find('|');
    if (feed != std::string::npos) piece[feed] = '\n';
    const std::optional<std::string> text = joiner.Take(piece, now);
    Check(!text || text->size() <= kLongestText);
    Check(joiner.UnfinishedTexts() <= TextJoiner::kMostUnfinished);
    Check(joiner.UnfinishedBytes() <= TextJoiner::kMostBytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    LineBuffer lines(kLongestFuzzedLine);
    TextJoiner joiner("fuzzer");
    TextJoiner::Clock::time_point now;
    // In blocks of sizes that the input gives.
    for (std::size_t place = 0; place < size;) {
        const std::size_t count = std::size_t{1} + data[place] % 64U;
        lines.Add(bytes.substr(place, count));
        place += count;
        while (const auto line = lines.Next()) {
            Check(line->size() < kLongestFuzzedLine);
            ReadLine(*line);
            Join(joiner, *line, now);
            now += std::chrono::seconds(1);
        }
    }
    return 0;
}
