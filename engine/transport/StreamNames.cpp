#include "engine/transport/StreamNames.h"

#include <array>
#include <utility>

namespace Corvanta::Engine {

namespace {

constexpr std::array kWords{
    std::pair{StreamType::Camera, "camera"},
    std::pair{StreamType::Screenshare, "screen"},
    std::pair{StreamType::ExternalScreen, "external-screen"},
    std::pair{StreamType::Device, "device"},
    std::pair{StreamType::File, "file"},
    std::pair{StreamType::NDI, "ndi"},
    std::pair{StreamType::DeckLink, "decklink"},
    std::pair{StreamType::URL, "url"},
    std::pair{StreamType::Elgato, "elgato"},
};

}  // namespace

std::string StreamWord(StreamType type) {
    for (const auto& [known, word] : kWords) {
        if (known == type) return word;
    }
    return {};
}

std::optional<StreamType> StreamOfWord(std::string_view word) {
    for (const auto& [type, known] : kWords) {
        if (known == word) return type;
    }
    return std::nullopt;
}

std::string StreamIdOf(const std::string& memberId, StreamType type) {
    if (memberId.empty()) return {};
    return memberId + '-' + StreamWord(type);
}

std::optional<StreamType> TypeOfStream(const std::string& memberId, const std::string& streamId) {
    if (memberId.empty()) return std::nullopt;
    for (const auto& [type, word] : kWords) {
        if (StreamIdOf(memberId, type) == streamId) return type;
    }
    return std::nullopt;
}

}  // namespace Corvanta::Engine
