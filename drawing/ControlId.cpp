#include "drawing/ControlId.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <random>

#include "ui/LockOrder.h"

namespace Corvanta::Drawing {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
constexpr size_t kIdLength = 15;

[[nodiscard]] std::mt19937 SeededByTime() {
    using std::chrono::duration_cast;
    using std::chrono::seconds;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::mt19937(static_cast<uint32_t>(duration_cast<seconds>(now).count()));
}

}  // namespace

std::string GenerateControlId() {
    static UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> engineMutex;
    // guarded by engineMutex
    static std::mt19937 engine = SeededByTime();

    std::string characters = kAlphabet;
    {
        const std::scoped_lock lock(engineMutex);
        std::shuffle(characters.begin(), characters.end(), engine);
    }
    characters.resize(kIdLength);
    return characters;
}

}  // namespace Corvanta::Drawing
