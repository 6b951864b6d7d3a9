#include "engine/logger/Logger.h"

#include <spdlog/async.h>
#include <spdlog/async_logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr std::size_t kQueuedLines = 8192;
constexpr std::size_t kShortLine = 512;

// Lines are queued and written by a thread of their own, since writing to a terminal or a pipe can block;
// when the queue is full the oldest lines are lost. The object is never destroyed, so that a line logged
// while the process ends finds it; from then on lines are written directly.
class LogBackend {
public:
    static LogBackend& Get() {
        static auto* const backend = new LogBackend;
        return *backend;
    }

    void Configure(int lowestLevel, const std::filesystem::path& file) {
        std::string complaint;
        std::vector<spdlog::sink_ptr> newSinks{std::make_shared<spdlog::sinks::stderr_color_sink_mt>()};
        if (!file.empty()) {
            try {
                newSinks.push_back(std::make_shared<spdlog::sinks::basic_file_sink_mt>(file.string()));
            } catch (const spdlog::spdlog_ex& error) {
                complaint = error.what();
            }
        }
        Replace(std::move(newSinks), ToLevel(lowestLevel), true);
        if (!complaint.empty()) LOG(kLogWarning, "The log file is left out: %s", complaint.c_str());
    }

    std::shared_ptr<spdlog::logger> Logger() {
        const std::lock_guard lock(loggerMutex);
        return logger;
    }

    static spdlog::level::level_enum ToLevel(int level) {
        switch (level) {
            case kLogDebug: return spdlog::level::debug;
            case kLogInformation: return spdlog::level::info;
            case kLogError: return spdlog::level::err;
            default: return spdlog::level::warn;
        }
    }

private:
    LogBackend() {
        Replace({std::make_shared<spdlog::sinks::stderr_color_sink_mt>()}, spdlog::level::info, true);
        std::atexit([] { Get().WriteDirectly(); });
    }

    void WriteDirectly() {
        const auto last = Logger();
        Replace(last->sinks(), last->level(), false);
    }

    void Replace(std::vector<spdlog::sink_ptr> sinks, spdlog::level::level_enum level, bool queued) {
        std::shared_ptr<spdlog::details::thread_pool> newQueue;
        std::shared_ptr<spdlog::logger> newLogger;
        if (queued) {
            newQueue = std::make_shared<spdlog::details::thread_pool>(kQueuedLines, 1);
            newLogger =
                std::make_shared<spdlog::async_logger>("corvanta", sinks.begin(), sinks.end(), newQueue,
                                                       spdlog::async_overflow_policy::overrun_oldest);
        } else {
            newLogger = std::make_shared<spdlog::logger>("corvanta", sinks.begin(), sinks.end());
        }
        newLogger->set_pattern("%Y-%m-%d %H:%M:%S.%e %^%-7l%$ %v");
        newLogger->set_level(level);
        newLogger->flush_on(spdlog::level::trace);
        // A logger that cannot log has nobody to tell.
        newLogger->set_error_handler([](const std::string&) {});
        std::shared_ptr<spdlog::details::thread_pool> oldQueue;
        {
            const std::lock_guard lock(loggerMutex);
            logger = std::move(newLogger);
            oldQueue = std::exchange(queue, std::move(newQueue));
        }
        // Writes what is still queued, then ends its thread.
        oldQueue.reset();
    }

    std::mutex loggerMutex;  // guards: everything below
    std::shared_ptr<spdlog::details::thread_pool> queue;
    std::shared_ptr<spdlog::logger> logger;
};

// What is logged may hold texts of anybody's. A line break or a terminal's command in them would look as if
// others had said it: control characters become question marks, the two bytes of those beyond ASCII too.
void MakeOneLine(char* line, std::size_t length) {
    const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(line[at]); };
    for (std::size_t at = 0; at < length; ++at) {
        const bool isLong =
            byteAt(at) == 0xC2 && at + 1 < length && byteAt(at + 1) >= 0x80 && byteAt(at + 1) < 0xA0;
        if (!isLong && byteAt(at) >= 0x20 && byteAt(at) != 0x7F) continue;
        line[at] = '?';
        if (isLong) line[++at] = '?';
    }
}

void Write(int level, const char* format, std::va_list arguments) {
    const auto logger = LogBackend::Get().Logger();
    const auto spdlogLevel = LogBackend::ToLevel(level);
    if (!logger->should_log(spdlogLevel)) return;

    std::va_list again;
    va_copy(again, arguments);
    std::array<char, kShortLine> shortLine;
    const int length = std::vsnprintf(shortLine.data(), shortLine.size(), format, arguments);
    if (length >= 0 && static_cast<std::size_t>(length) < shortLine.size()) {
        MakeOneLine(shortLine.data(), static_cast<std::size_t>(length));
        logger->log(spdlogLevel, spdlog::string_view_t(shortLine.data(), static_cast<std::size_t>(length)));
    } else if (length > 0) {
        std::string line(static_cast<std::size_t>(length) + 1, '\0');
        std::vsnprintf(line.data(), line.size(), format, again);
        line.pop_back();
        MakeOneLine(line.data(), line.size());
        logger->log(spdlogLevel, spdlog::string_view_t(line));
    }
    va_end(again);
}

}  // namespace

void ConfigureLog(int lowestLevel, const std::filesystem::path& file) {
    LogBackend::Get().Configure(lowestLevel, file);
}

}  // namespace Corvanta::Engine

void Logger_Log(int level, const char* format, ...) {
    if (format == nullptr) return;
    std::va_list arguments;
    va_start(arguments, format);
    try {
        Corvanta::Engine::Write(level, format, arguments);
    } catch (...) {  // A line that cannot be built (memory, threads) must not end its caller.
    }
    va_end(arguments);
}
