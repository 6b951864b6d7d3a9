// Whatever a client asks the room service, or the service answers: reading it must neither crash nor throw,
// keeps to its bounds, and what was read is written so that it reads the same. Merging notes loses no bound
// and cuts no letter in two.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "engine/roomservice/ConnectivityReport.h"
#include "engine/roomservice/FlatJson.h"
#include "engine/roomservice/ServiceMessage.h"

using namespace Corvanta::Engine;

namespace {

void Check(bool holds) {
    if (!holds) std::abort();
}

void ReadMessage(const std::string& json) {
    if (const auto notes = ReadNotes(json)) {
        Check(notes->revision >= 0 && notes->text.size() <= kLongestNotes);
        Check(!AreTooLongNotes(json));
        Check(ReadNotes(WriteNotes(*notes)) == notes);
    }
    if (const auto profile = ReadProfile(json)) Check(ReadProfile(WriteProfile(*profile)) == profile);
    if (const auto session = ReadSession(json)) Check(ReadSession(WriteSession(*session)) == session);
    if (const auto ended = ReadEnd(json)) Check(ReadEnd(WriteEnd(*ended)) == ended);
    if (const auto report = ParseReport(json)) Check(ParseReport(ToJson(*report)).has_value());
}

bool IsText(const std::string& text) {
    nlohmann::json json = text;
    try {
        return !json.dump().empty();
    } catch (const nlohmann::json::exception&) {
        return false;
    }
}

// Three texts, each on from the last '|'.
void Merge(const std::string& input) {
    const auto first = input.find('|');
    const auto second = first != std::string::npos ? input.find('|', first + 1) : std::string::npos;
    if (second == std::string::npos) return;
    const std::string base = input.substr(0, first);
    const std::string mine = input.substr(first + 1, second - first - 1);
    const std::string theirs = input.substr(second + 1);
    const std::string merged = MergeNotes(base, mine, theirs);
    Check(merged.size() <= base.size() + mine.size() + theirs.size() + 1);
    if (IsText(base) && IsText(mine) && IsText(theirs)) Check(IsText(merged));
    Check(MergeNotes(base, merged, merged) == merged);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    ReadMessage(input);
    if (const auto parameters = ReadQuery(input)) {
        for (const auto& [name, value] : *parameters) Check(name.size() + value.size() < input.size());
    }
    static_cast<void>(ReadRevision(input));
    Merge(input);
    return 0;
}
