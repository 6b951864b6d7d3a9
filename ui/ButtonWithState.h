// A button that reacts to press and release, may hold an on and an off picture, and can be disabled. Drawn
// around the position as its centre. Render thread only; its functions run on it as well.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/GraphicElementInterface.h"
#include "ui/TextTexture.h"

namespace Corvanta::UI {

class ButtonWithState : public GraphicElementInterface {
public:
    enum class PressState : int { Idle = 0, Hovered = 1, Pressed = 2 };
    // Background and icon: 1 to 3 are fills of the bar's kinds; 0, 4 and 5 have an icon of full height, which
    // grows under the pointer with Grow and becomes the on picture with SwapPicture.
    enum class Style : int {
        FullHeight = 0,
        FillAndOutline = 1,
        Fill = 2,
        FaintFill = 3,
        Grow = 4,
        SwapPicture = 5
    };
    enum class IconPlace : int { Left = 0, Centred = 1 };

    struct Options {
        int width = 0;
        int height = 0;
        std::string offIconName;
        // Empty for a button of one state.
        std::string onIconName;
        std::string offTooltip;
        std::string onTooltip;
        std::function<void()> onClickWhileOff;
        std::function<void()> onClickWhileOn;
        IconPlace iconPlace = IconPlace::Left;
        Style style = Style::FullHeight;
        // A click does not flip the state; the owner does.
        bool latched = false;
    };

    ButtonWithState(SDL_Renderer* renderer, Options options);

    void Render(SDL_Renderer* renderer, SDL_Point centre) override;
    // False unless pressed. An empty function raises std::bad_function_call, after the change of state.
    bool OnClick() override;
    void OnHover(const SDL_Point& mouse) override;
    virtual void RenderContent(SDL_Renderer* renderer, SDL_Point centre);

    void OnMouseDown();
    void OnMouseUp();

    [[nodiscard]] bool IsPressed() const { return pressState_ == PressState::Pressed; }
    [[nodiscard]] PressState GetPressState() const { return pressState_; }
    // Whether there is a second state at all: a function and a picture for it.
    [[nodiscard]] bool HasOnState() const;
    [[nodiscard]] bool IsOn() const { return HasOnState() && on_; }
    [[nodiscard]] bool IsDisabled() const { return disabled_; }

    void SetOn(bool on) { on_ = on; }
    // Multiplies the drawn rectangle and the tooltip, not the icon.
    void SetScale(float scale) { scale_ = scale; }
    void SetDisabled(bool disabled);
    void SetOnIcon(SDL_Renderer* renderer, const std::string& name);
    void SetDisabledIcon(SDL_Renderer* renderer, const std::string& name);
    // Every raster goes, the pictures are forgotten.
    void ReleaseTextures();

private:
    [[nodiscard]] bool Load(SDL_Renderer* renderer);
    [[nodiscard]] SDL_Texture* Picture() const;
    [[nodiscard]] SDL_Rect IconRect(SDL_Texture* picture, SDL_Point centre) const;
    void RenderBackground(SDL_Renderer* renderer) const;
    void RenderTooltipText(SDL_Renderer* renderer);

    bool loaded_ = false;
    Options options_;
    PressState pressState_ = PressState::Idle;
    bool on_ = false;
    bool disabled_ = false;
    float scale_ = 1.0F;
    SDL_Texture* offTexture_ = nullptr;
    SDL_Texture* onTexture_ = nullptr;
    SDL_Texture* disabledTexture_ = nullptr;
    std::string disabledIconName_;
    TextTexture tooltipTexture_;
    // Tells a release whether the click destroyed this button.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

}  // namespace Corvanta::UI
