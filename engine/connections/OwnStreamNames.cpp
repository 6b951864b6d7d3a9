#include "engine/connections/OwnStreamNames.h"

#include <array>
#include <utility>

namespace Corvanta::Engine {

namespace {

constexpr const char* kPrefix = "local-";

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

std::string OwnStreamId(StreamType type) {
    return kPrefix + StreamWord(type);
}

std::optional<StreamType> TypeOfOwnStream(const std::string& streamId) {
    for (const auto& [type, word] : kWords) {
        if (OwnStreamId(type) == streamId) return type;
    }
    return std::nullopt;
}

}  // namespace Corvanta::Engine
