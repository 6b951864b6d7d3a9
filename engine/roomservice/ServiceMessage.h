// What travels between a client and the room service beside the connectivity reports: JSON objects. Plain
// functions of values; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Engine.h"

namespace Corvanta::Engine {

// Bytes of an id, a name, a mail address.
inline constexpr std::size_t kLongestServiceText = 1024;
// No message with notes is larger, even when every byte of them is escaped.
inline constexpr std::size_t kLargestNotesMessage = kLongestNotes * 6 + 1024;

// A room's notes, and how often they were written.
struct NotesText {
    std::int64_t revision = 0;
    std::string text;

    bool operator==(const NotesText&) const = default;
};

struct Profile {
    std::string id;
    std::string email;
    std::string displayName;

    bool operator==(const Profile&) const = default;
};

struct RecordingSession {
    std::string id;
    std::string name;
    // UTC as "2024-03-01T12:34:56Z".
    std::string begun;
    // Absent while it is going on.
    std::optional<std::string> ended;

    bool operator==(const RecordingSession&) const = default;
};

// All texts are UTF-8; bytes that are none are left out where a message is written.
[[nodiscard]] std::string WriteNotes(const NotesText& notes);
[[nodiscard]] std::string WriteProfile(const Profile& profile);
[[nodiscard]] std::string WriteSession(const RecordingSession& session);
[[nodiscard]] std::string WriteSessions(const std::vector<RecordingSession>& sessions);
// When a session ended.
[[nodiscard]] std::string WriteEnd(const std::string& ended);

// Nothing, unless it is an object with every member of the right type and in its bounds: texts of at most
// kLongestServiceText bytes, ids not empty, times as above, notes of at most kLongestNotes bytes, revisions
// not negative.
[[nodiscard]] std::optional<NotesText> ReadNotes(const std::string& json);
[[nodiscard]] std::optional<Profile> ReadProfile(const std::string& json);
[[nodiscard]] std::optional<RecordingSession> ReadSession(const std::string& json);
[[nodiscard]] std::optional<std::string> ReadEnd(const std::string& json);
// Whether nothing but their length is wrong with the notes.
[[nodiscard]] bool AreTooLongNotes(const std::string& json);

// The parameters of a request, as a form has them: "room=a%20b&after=3". Nothing when an escape is none, or
// when there are more than a few. Of two with one name the first counts. The bytes may be any.
[[nodiscard]] std::optional<std::map<std::string, std::string>> ReadQuery(std::string_view query);

// A number that is not negative, in decimal; nothing for any other text.
[[nodiscard]] std::optional<std::int64_t> ReadRevision(std::string_view text);

}  // namespace Corvanta::Engine
