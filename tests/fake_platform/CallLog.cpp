#include "tests/fake_platform/CallLog.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <utility>

namespace Corvanta::Testing {

namespace {

template <typename T>
std::string NameOrNumber(T value) {
    const std::string_view name = GetName(value);
    return name.empty() ? std::to_string(static_cast<int>(value)) : std::string(name);
}

}  // namespace

bool operator==(const Call& left, const Call& right) {
    return left.name == right.name && left.arguments == right.arguments;
}

std::ostream& operator<<(std::ostream& stream, const Call& call) {
    stream << call.name << '(';
    for (size_t i = 0; i < call.arguments.size(); ++i) {
        stream << (i == 0 ? "" : ", ") << call.arguments[i];
    }
    return stream << ')';
}

std::string ToText(bool value) {
    return value ? "true" : "false";
}

std::string ToText(double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.9g", value);
    return text.data();
}

std::string ToText(const std::string& value) {
    return value;
}

std::string ToText(std::string_view value) {
    return std::string(value);
}

std::string ToText(const char* value) {
    return value != nullptr ? value : "null";
}

std::string ToText(const void* value) {
    if (value == nullptr) {
        return "null";
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%p", value);
    return text.data();
}

std::string ToText(const ColorSpace& value) {
    return NameOrNumber(value.GetMatrix()) + ' ' + NameOrNumber(value.GetRange()) + ' ' +
           NameOrNumber(value.GetPrimaries()) + ' ' + NameOrNumber(value.GetTransfer());
}

std::string ToText(const VideoFrameBuffer* value) {
    if (value == nullptr) {
        return "null";
    }
    return std::to_string(value->GetWidth()) + 'x' + std::to_string(value->GetHeight()) + " type " +
           std::to_string(static_cast<int>(value->GetType()));
}

std::string ToText(const std::shared_ptr<VideoFrameBuffer>& value) {
    return ToText(value.get());
}

void CallLog::Add(const Call& call) {
    const UncountedScope uncounted;
    Hook hook;
    {
        const std::lock_guard lock(mutex_);
        const auto found = hooks_.find(call.name);
        if (found != hooks_.end()) {
            hook = found->second;
        }
        if (recording_) {
            calls_.push_back(call);
            added_.notify_all();
        }
    }
    if (hook) {
        hook(call);
    }
}

std::vector<Call> CallLog::All() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

std::vector<Call> CallLog::OfThisThread() const {
    std::vector<Call> calls = All();
    std::erase_if(calls, [](const Call& call) { return call.thread != std::this_thread::get_id(); });
    return calls;
}

std::vector<std::string> CallLog::Names() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    names.reserve(calls_.size());
    for (const Call& call : calls_) {
        names.push_back(call.name);
    }
    return names;
}

std::vector<Call> CallLog::Of(std::string_view name) const {
    const std::lock_guard lock(mutex_);
    std::vector<Call> found;
    for (const Call& call : calls_) {
        if (call.name == name) {
            found.push_back(call);
        }
    }
    return found;
}

size_t CallLog::Count(std::string_view name) const {
    const std::lock_guard lock(mutex_);
    return static_cast<size_t>(
        std::count_if(calls_.begin(), calls_.end(), [&](const Call& call) { return call.name == name; }));
}

std::vector<std::string> CallLog::NamesAmong(const std::vector<std::string>& names) const {
    std::vector<std::string> found = Names();
    std::erase_if(found, [&](const std::string& name) {
        return std::find(names.begin(), names.end(), name) == names.end();
    });
    return found;
}

bool CallLog::WaitFor(std::string_view name, size_t count, std::chrono::milliseconds timeout) const {
    std::unique_lock lock(mutex_);
    return added_.wait_for(lock, timeout, [&] {
        return static_cast<size_t>(std::count_if(calls_.begin(), calls_.end(), [&](const Call& call) {
                   return call.name == name;
               })) >= count;
    });
}

void CallLog::OnCall(const std::string& name, Hook hook) {
    const std::lock_guard lock(mutex_);
    if (hook) {
        hooks_[name] = std::move(hook);
    } else {
        hooks_.erase(name);
    }
}

void CallLog::ThrowFrom(const std::string& name, int number) {
    OnCall(name, [number](const Call&) { throw number; });
}

void CallLog::SetRecording(bool on) {
    const std::lock_guard lock(mutex_);
    recording_ = on;
}

void CallLog::Clear() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
}

void CallLog::Reset() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
    hooks_.clear();
    recording_ = true;
}

CallLog& Calls() {
    // Never destroyed: threads of a failed test may still record at the end of the process.
    static CallLog* const log = [] {
        const UncountedScope uncounted;
        return new CallLog;
    }();
    return *log;
}

}  // namespace Corvanta::Testing

#if defined(__SANITIZE_ADDRESS__)
// SDL opens the session bus for its screen saver and input method code, and the bus library keeps a string of
// each connection for the rest of the process.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n";
}

// Libraries stay loaded: what an unloaded one keeps in its own variables would be reported as lost, under no
// name that could be left out.
extern "C" __attribute__((visibility("default"))) int dlclose(void*) {
    return 0;
}
#endif
