// A line of text that can be clicked and is underlined under the pointer. Drawn with its top-left corner at
// the position. Render thread only; its function runs on it as well.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/GraphicElementInterface.h"
#include "ui/TextTexture.h"

namespace Corvanta::UI {

class TextButton final : public GraphicElementInterface {
public:
    // onClick may be empty.
    TextButton(const std::string& text, std::function<void()> onClick, int fontSize);

    void Render(SDL_Renderer* renderer, SDL_Point topLeft) override;
    // Always true.
    bool OnClick() override;

    // An empty text shows nothing.
    void SetText(const std::string& text);
    [[nodiscard]] TextTexture& GetText() { return *text_; }
    [[nodiscard]] int GetTextWidth() const { return text_->GetWidth(); }
    void SetFontSize(int size) { text_->SetFontSize(size); }
    void ReleaseTextures() { text_->ReleaseTexture(); }

private:
    std::unique_ptr<TextTexture> text_;
    std::function<void()> onClick_;
};

}  // namespace Corvanta::UI
