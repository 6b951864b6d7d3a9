// The options that the host gave, for the rest of the engine. Any thread.
#pragma once

#include <string>

#include "engine/Engine.h"

namespace Corvanta::Engine {

[[nodiscard]] EngineOptions CurrentOptions();

// Keeps them as they are, for a program that has checked them and needs nothing else that Configure does.
void SetCurrentOptions(const EngineOptions& options);

// What EntryProblem tells from now on.
void SetEntryProblem(const std::string& problem);

}  // namespace Corvanta::Engine
