#include "drawing/WireValues.h"

#include <cmath>
#include <utility>

#include <nlohmann/json.hpp>

namespace Corvanta::Drawing {

namespace {

// The library's reading copies: only what it refuses goes there, for it to say what is wrong.
void RequireText(const nlohmann::json& value) {
    if (!value.is_string()) static_cast<void>(value.get<std::string>());
}

// Doubles beyond 64 bits have no conversion of their own.
[[nodiscard]] uint32_t LowBits(double value) {
    constexpr double kBeyond32Bits = 4294967296.0;
    if (!std::isfinite(value)) return 0;
    return static_cast<uint32_t>(static_cast<int64_t>(std::fmod(std::trunc(value), kBeyond32Bits)));
}

}  // namespace

const std::string& ReadText(const nlohmann::json& value) {
    RequireText(value);
    return value.get_ref<const std::string&>();
}

std::string TakeText(nlohmann::json& value) {
    RequireText(value);
    return std::move(value.get_ref<std::string&>());
}

uint32_t ReadUnsigned(const nlohmann::json& value) {
    return value.is_number_float() ? LowBits(value.get<double>()) : value.get<uint32_t>();
}

void RequireArray(const nlohmann::json& value) {
    // As in RequireText.
    if (!value.is_array()) static_cast<void>(value.get<nlohmann::json::array_t>());
}

const nlohmann::json& ElementOf(const nlohmann::json& array, size_t index) {
    static const nlohmann::json absent;
    if (array.is_array() && index >= array.size()) return absent;
    return array[index];
}

}  // namespace Corvanta::Drawing
