// Single values of the wire's JSON, read as all shapes read them. The exceptions are the JSON library's own.
// Plain functions; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Corvanta::Drawing {

// The text of a string, which stays where it is. Throws type_error 302 at anything else.
[[nodiscard]] const std::string& ReadText(const nlohmann::json& value);

// The same, moved out of the value.
[[nodiscard]] std::string TakeText(nlohmann::json& value);

// A number without its fraction, and of what remains the low 32 bits; true and false count as 1 and 0. Throws
// type_error 302 at anything else.
[[nodiscard]] uint32_t ReadUnsigned(const nlohmann::json& value);

// Throws type_error 302 at what is no array.
void RequireArray(const nlohmann::json& value);

// An element of an array, null beyond its end. Throws type_error 305 at what is no array.
[[nodiscard]] const nlohmann::json& ElementOf(const nlohmann::json& array, size_t index);

}  // namespace Corvanta::Drawing
