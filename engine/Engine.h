// The engine's public face for the host program: who takes part in the next room, where the configuration
// lies, how much is logged, what there is to see, which devices there are, and what the local user shares.
// Every function may be called on any thread but a callback of the engine itself.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Api.h"
#include "platform/Connections.h"

namespace Corvanta::Engine {

struct Participant {
    // Shown to the others; empty gives "Participant N".
    std::string name;
    // "test": the test picture with a quiet tone. "clip": a generated person who speaks in turns with the
    // other clips. Anything else is the path of a file, which plays in a loop, or a URI.
    std::string source;
};

enum class SoundOutput {
    // The machine's default device, silence where it has none.
    Device,
    Silent,
};

inline constexpr const char* kDefaultCamera = "auto";
// Bytes of a room's name at most, and of a person's.
inline constexpr std::size_t kLongestRoomName = 256;
inline constexpr std::size_t kLongestPersonName = 256;

struct EngineOptions {
    std::vector<Participant> participants;
    // The room in which the local user meets other people, 1 to kLongestRoomName bytes of any kind. Empty:
    // nobody else takes part, and the participants above are of this process.
    std::string room;
    // Nobody but the programs that this one starts is to find the room: its name was made up and means
    // nothing to anybody. Its notes are those of the room without a name, and nothing is left of it after
    // Shutdown.
    bool isPrivate = false;
    // Under which the others see the local user, UTF-8; empty: the name of the user's profile.
    std::string name;
    // The WebSocket address of the server that carries the room ("ws://HOST:PORT", "wss://HOST:PORT"). Empty:
    // the room is one of this user's on this machine, and its members are connected with each other.
    std::string server;
    // A file with certificates (PEM) of those whom the server's certificate may come from. Empty: the
    // system's.
    std::filesystem::path certificateAuthority;
    // What the server, and the service below, ask for before they let anybody in. Never written to a log.
    std::string serverToken;
    // The room service that keeps what is neither media nor signalling ("http://HOST:PORT",
    // "https://HOST:PORT"): notes, connectivity, profiles. Only with a token. Empty: one of this user's on
    // this machine, which comes and goes with the rooms. So has a room that is private or without a name,
    // whatever is said here: at a shared service the notes of all of these would be one.
    std::string service;
    // What stands for the local user's default camera, as a participant's source but never heard. It is used
    // where the setting "Device.Camera" names no other device. kDefaultCamera: the machine's first camera,
    // else the test picture. Empty: only a camera that the setting names.
    std::string camera;
    // Empty: "corvanta" in the user's configuration folder.
    std::filesystem::path configurationFolder;
    // Also written to this file when it is not empty; always to the standard error stream.
    std::filesystem::path logFile;
    // Lowest level that is logged: 1 debug, 2 information, 3 warning, 4 error.
    int logLevel = 2;
    SoundOutput soundOutput = SoundOutput::Device;
};

// Checks the room's name, server and service, and the source of every participant and of the camera (the file
// exists, its decoders are installed), and keeps the options for the next connection. Returns nothing when
// all is well, else one line for the user, and then nothing but the log settings has changed. A file that
// cannot be played for another reason is no error: its participant shows no picture, and the log says why.
// Takes up to some seconds when files are given, since their beginnings are read.
[[nodiscard]] CORVANTA_PLATFORM_API std::optional<std::string> Configure(const EngineOptions& options);

// Why the room that was asked for last could not be entered, as one line for the user; empty where it could,
// or where nothing is known.
[[nodiscard]] CORVANTA_PLATFORM_API std::string EntryProblem();

struct RoomStatus {
    bool connected = false;
    // How many are in the room, the local user left out.
    std::size_t participants = 0;
    // Of these: how many have delivered a picture to the library, and how many are known to have none.
    std::size_t showing = 0;
    std::size_t withoutPicture = 0;
    // Pictures delivered in all.
    std::size_t pictures = 0;
};

// What the open room shows at this moment. All zero without a room.
[[nodiscard]] CORVANTA_PLATFORM_API RoomStatus GetRoomStatus();

// Waits until every participant of the open room has delivered a picture or is known to have none; false when
// the time runs out first or there is no room.
[[nodiscard]] CORVANTA_PLATFORM_API bool WaitForPictures(std::chrono::milliseconds timeout);

enum class DeviceKind { Camera, Microphone, Speaker };

// Names by which the generated devices are chosen. They are there on every machine.
inline constexpr const char* kTestPicture = "Test picture";
inline constexpr const char* kTestTone = "Test tone";

// Names of what there is of a kind: the machine's own devices first, then for Camera kTestPicture, for
// Microphone kTestTone. From memory, but for the first call, which has the machine's devices looked up.
[[nodiscard]] CORVANTA_PLATFORM_API std::vector<std::string> ListDevices(DeviceKind kind);

// The function is called on a thread of the engine when devices came or went. One listener in all: a new one
// replaces the old, an empty function ends it, and on return no call of the old one is in progress on another
// thread.
CORVANTA_PLATFORM_API void SetDevicesChangedListener(std::function<void()> listener);

struct ScreenTarget {
    // The window's number on its display; 0 for the whole screen.
    std::uint64_t window = 0;
    // UTF-8.
    std::string title;
    // Of the window's program; -1 when the window does not say.
    std::int32_t processId = -1;
};

// The whole screen, then the windows that can be shared, as they stand on the display of the process: the
// oldest first, and of the process itself none. Empty without a display. May take some milliseconds.
[[nodiscard]] CORVANTA_PLATFORM_API std::vector<ScreenTarget> ListScreenTargets();

// Starts to share a stream of that kind in the open room. There is one of each kind at a time, and a second
// start replaces the first. What `source` means:
// - Screenshare: the window's number in decimal; "0" or empty for the whole screen.
// - File: a path. It plays in a loop.
// - URL: a URI.
// - Every other kind but Camera: a name of ListDevices(DeviceKind::Camera).
// Returns nothing when it starts, else one line for the user, and then what was shared before goes on. The
// stream appears in the library a moment later. May take some seconds when a file is given, since its
// beginning is read.
[[nodiscard]] CORVANTA_PLATFORM_API std::optional<std::string> ShareStream(StreamType type,
                                                                           const std::string& source);

// Nothing happens when none of that kind is shared. On return no frame of it is on its way; the library is
// told a moment later.
CORVANTA_PLATFORM_API void StopSharing(StreamType type);

// The kinds that are shared now, in the order of their start. From memory.
[[nodiscard]] CORVANTA_PLATFORM_API std::vector<StreamType> SharedStreams();

struct ParticipantInfo {
    std::string streamId;
    std::string name;
    // Slider position.
    double volume = 1.0;
    // 0 to 1, of the last moment, for a meter.
    double loudness = 0.0;
    // Is the active speaker, and not silent.
    bool isSpeaking = false;
};

// Who is in the open room, the local user left out, in the order in which they entered. From memory.
[[nodiscard]] CORVANTA_PLATFORM_API std::vector<ParticipantInfo> ListParticipants();

// The participant leaves the open room for good; the library is told a moment later. Unknown ids are ignored.
CORVANTA_PLATFORM_API void RemoveParticipant(const std::string& streamId);

// Bytes of one line of the chat at most.
inline constexpr std::size_t kLongestChat = 4096;

struct ChatLine {
    // Who wrote it, UTF-8.
    std::string name;
    // UTF-8, 1 to kLongestChat bytes; whatever a participant wrote, so nothing but text to be shown.
    std::string text;
    // By the writer's clock, but never in the future.
    std::chrono::system_clock::time_point time;
};

// Writes a line to all others in the open room, those included whose connection is lost for a moment. False
// when it is not sent: there is no room, the text has nothing but blanks, is longer than kLongestChat or no
// UTF-8, or too many were sent within the last seconds.
[[nodiscard]] CORVANTA_PLATFORM_API bool SendChat(const std::string& text);

// The function is called on a thread of the engine with each line of another participant. One listener in
// all: a new one replaces the old, an empty function ends it, and on return no call of the old one is in
// progress on another thread.
CORVANTA_PLATFORM_API void SetChatListener(std::function<void(const ChatLine&)> listener);

// Bytes of a room's notes at most.
inline constexpr std::size_t kLongestNotes = std::size_t{1024} * 1024;

enum class NotesStatus {
    // No room is open.
    NoRoom,
    // The room service has the notes as they are here.
    Kept,
    // On their way, or not yet heard of; as a rule for some milliseconds.
    Sending,
    // The room service cannot be reached or has trouble. It is tried again, and what is not kept stays on
    // this machine meanwhile, also when the room is closed.
    Unreachable,
    // The room service does not take them: together with what others have written they are too long, or it
    // has no place for more.
    Refused,
};

// The notes of the open room, the own changes among them; empty without a room. From memory.
[[nodiscard]] CORVANTA_PLATFORM_API std::string GetNotes();
[[nodiscard]] CORVANTA_PLATFORM_API NotesStatus GetNotesStatus();

// Gives the open room the notes that the person has written. `writtenOn` is what GetNotes returned when the
// person began to change it: what others have changed since is merged in at once (see MergeNotes), and
// GetNotes has the result on return. False, with everything as before, when there is no room, or the text is
// longer than kLongestNotes or no UTF-8.
[[nodiscard]] CORVANTA_PLATFORM_API bool SetNotes(const std::string& text, const std::string& writtenOn);

// The function is called on a thread of the engine with each text that comes from elsewhere: from others, or
// from the room service when the room opens. By the time that the host takes it up there may be a newer one:
// GetNotes has it. One listener in all: a new one replaces the old, an empty function ends it, and on return
// no call of the old one is in progress on another thread.
CORVANTA_PLATFORM_API void SetNotesListener(std::function<void(const std::string& text)> listener);

// Both changes of a text in one, a plain function of UTF-8 values. Changes in different places both hold.
// Where they meet, the lines of `theirs` come first and those of `mine` below, unless one has all that the
// other has; so nothing that was written is lost, and a text wins over its removal.
[[nodiscard]] CORVANTA_PLATFORM_API std::string MergeNotes(const std::string& base, const std::string& mine,
                                                           const std::string& theirs);

// The product's settings, kept in the configuration. An absent one reads as an empty text, a number or a
// boolean as its text. Known keys:
// - "Device.Camera", "Device.Microphone", "Device.Speaker": a name of ListDevices, or "None". Empty: the
//   machine's first device, else the test picture or tone; for the speaker the machine's default device.
// - "Device.PushToTalkKey": read by the library.
// - "Room.Notes": notes that the first room without a name takes over.
// - "Room.UnsentNotes": what the room service has not taken yet; the engine's own.
// - "ProcessMonitor.DaVinciResolve", "ProcessMonitor.AutodeskFlame": names of the programs' processes.
[[nodiscard]] CORVANTA_PLATFORM_API std::string ReadSetting(const std::string& key);
CORVANTA_PLATFORM_API void WriteSetting(const std::string& key, const std::string& value);

// Closes the connection if one is open, stops every thread of the engine and writes the configuration. The
// engine may be configured and used again afterwards.
CORVANTA_PLATFORM_API void Shutdown();

}  // namespace Corvanta::Engine
