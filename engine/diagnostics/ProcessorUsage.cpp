#include "engine/diagnostics/ProcessorUsage.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <utility>

#include "engine/diagnostics/SystemFacts.h"

namespace Corvanta::Engine {

namespace {

constexpr std::chrono::milliseconds kShortestSpan{1000};

uint64_t Grown(uint64_t before, uint64_t now) {
    return now > before ? now - before : 0;
}

}  // namespace

std::optional<ProcessorTimes> ParseProcessorTimes(const std::string& systemStat,
                                                  const std::string& processStat) {
    // cpu user nice system idle iowait irq softirq steal guest guest_nice; guests are counted in user too.
    std::istringstream system(systemStat);
    std::string name;
    std::array<uint64_t, 8> times{};
    system >> name;
    for (uint64_t& time : times) system >> time;
    if (!system || name != "cpu") return std::nullopt;
    ProcessorTimes result;
    for (const uint64_t time : times) result.total += time;
    result.busy = Grown(times[3] + times[4], result.total);

    // The second field is the program's name in brackets, and may hold brackets and spaces itself.
    const std::size_t end = processStat.rfind(')');
    if (end == std::string::npos) return std::nullopt;
    std::istringstream process(processStat.substr(end + 1));
    std::string skipped;
    for (int field = 3; field < 14; ++field) process >> skipped;
    uint64_t user = 0;
    uint64_t kernel = 0;
    process >> user >> kernel;
    if (!process) return std::nullopt;
    result.own = user + kernel;
    return result;
}

std::string UsageText(uint64_t usedTicks, uint64_t totalTicks) {
    if (totalTicks == 0) return kNoFigure;
    const double share = static_cast<double>(usedTicks) / static_cast<double>(totalTicks);
    std::array<char, 16> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(),
                                            std::min(share, 1.0) * 100.0, std::chars_format::fixed, 1);
    if (error != std::errc{}) return kNoFigure;
    std::string text(digits.data(), end);
    text += '%';
    return text;
}

ProcessorMeter::ProcessorMeter(Reader timesReader, Clock steadyClock)
    : reader(std::move(timesReader)), clock(std::move(steadyClock)), usage{kNoFigure, kNoFigure} {}

ProcessorMeter::Usage ProcessorMeter::Get() {
    const std::lock_guard lock(mutex);
    const auto now = clock();
    if (last && now - lastTime < kShortestSpan) return usage;
    const auto times = reader();
    if (times && last) {
        const uint64_t total = Grown(last->total, times->total);
        usage = {UsageText(Grown(last->busy, times->busy), total),
                 UsageText(Grown(last->own, times->own), total)};
    } else {
        usage = {kNoFigure, kNoFigure};
    }
    last = times;
    lastTime = now;
    return usage;
}

}  // namespace Corvanta::Engine
