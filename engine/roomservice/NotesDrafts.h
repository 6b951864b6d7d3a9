// Notes that the room service has not taken yet, kept in the configuration until it does. Any thread, but one
// room at a time.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace Corvanta::Engine {

struct NotesDraft {
    // What the service had when this was written, as far as is known.
    std::string base;
    std::string text;

    bool operator==(const NotesDraft&) const = default;
};

class NotesDrafts final {
public:
    // Of different rooms; the oldest is forgotten beyond this.
    static constexpr std::size_t kMostDrafts = 16;

    // The room of that service; an empty service is the user's own.
    NotesDrafts(std::string serviceUrl, std::string roomName);

    // What is left of the room's notes, and the notes of the setting "Room.Notes", which the user's own room
    // without a name takes over.
    [[nodiscard]] std::optional<NotesDraft> Load() const;
    void Store(const NotesDraft& draft) const;
    // The service has them.
    void Forget() const;

private:
    [[nodiscard]] bool TakesOver() const { return url.empty() && room.empty(); }

    const std::string url;
    const std::string room;
};

}  // namespace Corvanta::Engine
