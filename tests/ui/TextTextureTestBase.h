// A text of 14 points in the regular font, and what its tests ask of it.
#pragma once

#include <string>
#include <vector>

#include "tests/fake_platform/CallLog.h"
#include "tests/ui/ToolkitTest.h"
#include "ui/FontManager.h"
#include "ui/TextTexture.h"

namespace Corvanta::Testing {

using Texts = std::vector<std::string>;

inline const std::string kLongText = "A rather long text for its place";

class TextTextureTestBase : public ToolkitTest {
protected:
    TextTextureTestBase() {
        text_.SetFontName(UI::FontRegular);
        text_.SetFontSize(14);
    }

    // Draws it, and forgets the calls.
    void Settle(SDL_Point topLeft = {10, 20}) {
        text_.RenderAt(Renderer(), topLeft);
        Calls().Clear();
    }

    UI::TextTexture text_;
};

}  // namespace Corvanta::Testing
