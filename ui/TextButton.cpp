#include "ui/TextButton.h"

#include <utility>

#include "ui/ControlColors.h"
#include "ui/FontManager.h"

namespace Corvanta::UI {

TextButton::TextButton(const std::string& text, std::function<void()> onClick, int fontSize)
    : text_(std::make_unique<TextTexture>()), onClick_(std::move(onClick)) {
    text_->SetFontSize(fontSize);
    text_->SetColor(kWhite);
    text_->SetFontName(FontBolder);
    text_->SetText(text);
}

void TextButton::SetText(const std::string& text) {
    text_->SetText(text);
    if (text.empty()) text_->ReleaseTexture();
}

void TextButton::Render(SDL_Renderer* renderer, SDL_Point topLeft) {
    rect = {topLeft.x, topLeft.y, text_->GetWidth(), text_->GetHeight()};
    text_->SetStyle(hovered ? TTF_STYLE_UNDERLINE : TTF_STYLE_NORMAL);
    text_->RenderAt(renderer, topLeft);
    ClearDrawColor(renderer);
}

bool TextButton::OnClick() {
    // A copy, since the function may destroy this button.
    const std::function<void()> call = onClick_;
    if (call) call();
    return true;
}

}  // namespace Corvanta::UI
