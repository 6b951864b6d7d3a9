// Arithmetic of measurements: times of the same work, taken in turns with its reference's so that both meet
// the same noise, are summed up by their medians. Plain values, any thread.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <utility>
#include <vector>

namespace Corvanta::Bench {

using Nanoseconds = double;

[[nodiscard]] inline Nanoseconds MedianOf(std::vector<Nanoseconds> times) {
    if (times.empty()) return 0.0;
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

// Wall time of a call.
template <typename Call>
[[nodiscard]] Nanoseconds TimeOf(Call&& call) {
    const auto start = std::chrono::steady_clock::now();
    std::forward<Call>(call)();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

// The median of the ratios of neighbours: a machine that is busy with something else at one moment makes both
// of them slow, or one of them as often as the other, which disturbs it less than the medians of both.
[[nodiscard]] inline double MedianRatioOf(const std::vector<Nanoseconds>& ours,
                                          const std::vector<Nanoseconds>& references) {
    std::vector<double> ratios;
    for (size_t i = 0; i < ours.size() && i < references.size(); ++i) {
        ratios.push_back(ours[i] / references[i]);
    }
    return MedianOf(std::move(ratios));
}

// What a thread, or the process, has computed so far; sleeping does not count.
[[nodiscard]] inline Nanoseconds CpuTimeOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

// One line of the table of ratios, as tools/run_benchmarks picks it up. goal: the highest ratio that is
// wanted; 0 for none. ratio: given where it is not the two times' own.
inline void PrintRatio(const char* measured, Nanoseconds ours, Nanoseconds reference, double ratio,
                       double goal) {
    std::printf("RATIO | %s | %.3f ms | %.3f ms | %.3f | ", measured, ours / 1e6, reference / 1e6, ratio);
    if (goal > 0.0) std::printf("%.2f", goal);
    std::printf(" |\n");
    // Long measurements show how far they are.
    std::fflush(stdout);
}

inline void PrintRatio(const char* measured, Nanoseconds ours, Nanoseconds reference, double goal) {
    PrintRatio(measured, ours, reference, ours / reference, goal);
}

}  // namespace Corvanta::Bench
