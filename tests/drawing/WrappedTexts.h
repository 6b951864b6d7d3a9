// What the code under test has drawn as wrapped texts: TTF_RenderUTF8_Blended_Wrapped is written into Calls()
// with text and wrap length and passed on. Linking WrappedTexts.cpp puts it in the library's place. Any
// thread.
#pragma once

#include <string>
#include <vector>

namespace Corvanta::Testing {

struct WrappedText {
    std::string text;
    int wrapLength = 0;
};

// In their order.
[[nodiscard]] std::vector<WrappedText> WrappedTexts();

}  // namespace Corvanta::Testing
