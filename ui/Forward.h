// Names of this floor for headers that only point at them.
#pragma once

namespace Corvanta::UI {

class AbstractView;
class Divider;
class FontManager;
class GraphicElementInterface;
class Icon;
class TextureCache;

}  // namespace Corvanta::UI
