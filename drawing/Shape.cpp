#include "drawing/Shape.h"

namespace Corvanta::Drawing {

void Shape::ReleaseTextures(SDL_Renderer* /*renderer*/) {}

void Shape::ForgetTextures(SDL_Renderer* /*renderer*/) {}

}  // namespace Corvanta::Drawing
