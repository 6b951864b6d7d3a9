// A system whose one font is Arial, or with none, whatever is installed where the test runs. Test thread.
#pragma once

namespace Corvanta::Testing {

// Fonts are looked for once in a process, so this comes before the first text is drawn. Throws
// std::runtime_error when the font cannot be found afterwards.
void UseTestFont();
// Instead, a system without any font.
void UseNoFonts();

}  // namespace Corvanta::Testing
