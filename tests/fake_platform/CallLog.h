// The one ordered list into which every recorder of the harness writes: the fake platform, the fake SDL
// additions and the SDL recorder. So an order of steps across all of them can be tested. Every operation may
// be called on any thread; hooks run on the thread of the recorded call, with no lock held.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <vector>

#include "platform/ColorSpace.h"
#include "platform/VideoFrameBuffer.h"
#include "tests/fake_platform/UncountedScope.h"

namespace Corvanta::Testing {

// One recorded call. Arguments are texts: "true" and "false", decimal numbers, strings as they are, "null" or
// an address for pointers, "set" or "empty" for functions; an enumeration is its number, a frame "1280x720
// type 1", a colour space "matrix range primaries transfer" by name.
struct Call {
    std::string name;
    std::vector<std::string> arguments;
    std::thread::id thread = std::this_thread::get_id();
};

// The thread takes no part.
bool operator==(const Call& left, const Call& right);
std::ostream& operator<<(std::ostream& stream, const Call& call);

std::string ToText(bool value);
std::string ToText(double value);
std::string ToText(const std::string& value);
std::string ToText(std::string_view value);
std::string ToText(const char* value);
std::string ToText(const void* value);
std::string ToText(const ColorSpace& value);
std::string ToText(const VideoFrameBuffer* value);
std::string ToText(const std::shared_ptr<VideoFrameBuffer>& value);

template <typename Signature>
std::string ToText(const std::function<Signature>& value) {
    return value ? "set" : "empty";
}

template <typename T>
requires(std::is_integral_v<T> && !std::is_same_v<T, bool>) std::string ToText(T value) {
    return std::to_string(value);
}

template <typename T>
requires std::is_enum_v<T> std::string ToText(T value) {
    return std::to_string(static_cast<std::underlying_type_t<T>>(value));
}

class CallLog final {
public:
    using Hook = std::function<void(const Call&)>;

    // Writes a call down, then runs the hook for its name. What the hook throws leaves through the call.
    template <typename... Arguments>
    void Record(std::string_view name, const Arguments&... arguments) {
        const UncountedScope uncounted;
        Add(Call{std::string(name), {ToText(arguments)...}});
    }
    void Add(const Call& call);

    [[nodiscard]] std::vector<Call> All() const;
    // What the calling thread itself has called: a local tile's panel asks its questions on one of its own.
    [[nodiscard]] std::vector<Call> OfThisThread() const;
    [[nodiscard]] std::vector<std::string> Names() const;
    [[nodiscard]] std::vector<Call> Of(std::string_view name) const;
    [[nodiscard]] size_t Count(std::string_view name) const;
    // Names of those calls that are among `names`, in the order in which they came.
    [[nodiscard]] std::vector<std::string> NamesAmong(const std::vector<std::string>& names) const;

    // Waits until that many calls of the name are written down. False when the time is over first.
    [[nodiscard]] bool WaitFor(std::string_view name, size_t count,
                               std::chrono::milliseconds timeout = std::chrono::seconds{10}) const;

    // One hook for each name; an empty one takes it away.
    void OnCall(const std::string& name, Hook hook);
    // The calls of that name throw this number, after they are written down.
    void ThrowFrom(const std::string& name, int number);

    // Off: calls run their hooks but are not written down, so that a long run does not fill the memory.
    void SetRecording(bool on);

    // Forgets the calls; Reset also forgets the hooks and switches recording on.
    void Clear();
    void Reset();

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable added_;
    std::vector<Call> calls_;
    std::map<std::string, Hook, std::less<>> hooks_;
    bool recording_ = true;
};

// The process's one list.
CallLog& Calls();

}  // namespace Corvanta::Testing
