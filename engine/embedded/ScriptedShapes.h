// The marks that scripts draw, in the form in which real clients tell each other theirs. Plain functions of
// values.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

namespace Corvanta::Engine {

// A mark with an identity of its own. There are several kinds, and a colour for each of several hands; higher
// numbers begin again. The same numbers and the same state of `random` give the same mark.
[[nodiscard]] nlohmann::json MakeScriptedShape(std::size_t kind, std::size_t hand, std::mt19937& random);

// What becomes of the marks that the sender has on the stream already.
enum class ApplyShapes { Add, Replace };

// The message that tells the others of an array of shapes.
[[nodiscard]] std::string WriteBroadcast(const std::string& streamId, nlohmann::json shapes,
                                         ApplyShapes apply);

}  // namespace Corvanta::Engine
