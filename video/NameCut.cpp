#include "video/NameCut.h"

namespace Corvanta::Video {
namespace {

constexpr char kDots[] = "...";
constexpr int kDotCount = 3;
constexpr int kMostRetries = 3;
constexpr size_t kCutBytes = 4;

}  // namespace

std::string CutName(const std::string& name, int available,
                    const std::function<int(const std::string&)>& measure) {
    const int width = measure(name);
    if (name.empty() || width <= available) return name;
    const int perByte = width / static_cast<int>(name.size());
    if (perByte == 0) return name;
    const int mostBytes = available / perByte - kDotCount;
    if (mostBytes < 1) return name;
    std::string candidate = name.substr(0, static_cast<size_t>(mostBytes)) + kDots;
    for (int i = 0; i < kMostRetries && candidate.size() >= kCutBytes && measure(candidate) > available;
         ++i) {
        candidate.resize(candidate.size() - kCutBytes);
        candidate += kDots;
    }
    return candidate;
}

}  // namespace Corvanta::Video
