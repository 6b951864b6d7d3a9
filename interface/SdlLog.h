// The way of SDL's own messages into the product's log. Any thread.
#pragma once

#include <SDL.h>

namespace Corvanta::Interface {

// An SDL log output function: level by SDL's priority, text "SDL message: %s".
void SDLCALL SDLLogOutput(void* userData, int category, SDL_LogPriority priority, const char* message);

}  // namespace Corvanta::Interface
