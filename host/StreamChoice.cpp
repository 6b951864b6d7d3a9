#include "host/StreamChoice.h"

#include <algorithm>
#include <array>

namespace Corvanta::Host {
namespace {

using Kind = StreamChoice::Kind;

struct Entry {
    StreamChoice choice;
    std::string_view name;
};

constexpr std::array kEntries{
    Entry{{StreamType::Screenshare, Kind::List, "Share a screen or window", "&What to share:"}, "Screen"},
    Entry{{StreamType::Device, Kind::List, "Stream a device", "&Device:"}, "Device"},
    Entry{{StreamType::File, Kind::File, "Stream a file", "&File:"}, "File"},
    Entry{{StreamType::URL, Kind::Address, "Stream from an address", "&Address:"}, "Address"},
    Entry{{StreamType::NDI, Kind::List, "Stream NDI®", "&Source:"}, "NDI®"},
    Entry{{StreamType::DeckLink, Kind::List, "Stream DeckLink", "&Source:"}, "DeckLink"},
    Entry{{StreamType::Elgato, Kind::List, "Stream Elgato", "&Source:"}, "Elgato"},
};

const Entry* EntryOf(StreamType type) {
    const auto* const found =
        std::ranges::find(kEntries, type, [](const Entry& entry) { return entry.choice.type; });
    return found == kEntries.end() ? nullptr : found;
}

struct TypeName {
    std::string_view name;
    StreamType type;
};

constexpr std::array kTypeNames{
    TypeName{"screen", StreamType::Screenshare},
    TypeName{"file", StreamType::File},
    TypeName{"url", StreamType::URL},
    TypeName{"device", StreamType::Device},
};

}  // namespace

std::optional<StreamChoice> StreamChoiceOf(StreamType type) {
    const Entry* const entry = EntryOf(type);
    if (entry == nullptr) return std::nullopt;
    return entry->choice;
}

StreamChoice MediaSiloChoice() {
    return {StreamType::URL, Kind::Address, "Stream a MediaSilo file", "&Address of the file:"};
}

std::string SharedLabel(StreamType type, std::string_view title) {
    const Entry* const entry = EntryOf(type);
    std::string label(entry == nullptr ? std::string_view("Stream") : entry->name);
    if (!title.empty()) {
        label += ": ";
        label += title;
    }
    return label;
}

const Engine::ScreenTarget* WindowOfProcess(std::span<const Engine::ScreenTarget> targets,
                                            std::int32_t processId) {
    const Engine::ScreenTarget* untitled = nullptr;
    for (const Engine::ScreenTarget& target : targets) {
        if (processId < 0 || target.window == 0 || target.processId != processId) continue;
        if (!target.title.empty()) return &target;
        if (untitled == nullptr) untitled = &target;
    }
    return untitled;
}

std::variant<SharedSource, Failure> ParseSharedSource(std::string_view text) {
    const std::size_t equals = text.find('=');
    const auto* const found = std::ranges::find(kTypeNames, text.substr(0, equals), &TypeName::name);
    const std::string_view source =
        equals == std::string_view::npos ? std::string_view() : text.substr(equals + 1);
    const bool isWholeScreen = equals == std::string_view::npos && found != kTypeNames.end() &&
                               found->type == StreamType::Screenshare;
    if (found == kTypeNames.end() || (source.empty() && !isWholeScreen)) {
        std::string line = "--share wants screen, screen=WINDOW, file=FILE, url=URI or device=NAME, not '";
        line += text;
        line += '\'';
        return Failure{line};
    }
    return SharedSource{found->type, std::string(source)};
}

}  // namespace Corvanta::Host
