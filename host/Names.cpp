#include "host/Names.h"

#include <random>

namespace Corvanta::Host {
namespace {

constexpr std::string_view kOwnRoomPrefix = "own-";
constexpr std::size_t kRandomDigits = 32;

}  // namespace

std::string MakeOwnRoomName() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::random_device device;
    std::uniform_int_distribution<std::size_t> digit(0, kDigits.size() - 1);
    std::string name(kOwnRoomPrefix);
    for (std::size_t i = 0; i < kRandomDigits; ++i) name += kDigits[digit(device)];
    return name;
}

}  // namespace Corvanta::Host
