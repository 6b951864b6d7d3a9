// A button with two icons and two labels, and a third state in which a click does something else. The third
// state is entered and left only from outside. Render thread only; its functions run on it as well.
#pragma once

#include <array>

#include "ui/Button.h"

namespace Corvanta::UI {

class ToggleButton : public Button {
public:
    struct Options {
        int width = 0;
        int height = 0;
        std::string offIconName;
        std::string onIconName;
        std::string offLabel;
        std::string onLabel;
        std::function<void()> onToggledOn;
        std::function<void()> onToggledOff;
        bool showLabel = false;
        LabelPlace labelPlace = LabelPlace::Beside;
        // No fill of its own, and an icon as high as the button.
        bool flat = false;
        // One label for all states.
        bool fixedLabelMode = false;
        std::string fixedLabel;
    };

    ToggleButton(SDL_Renderer* renderer, Options options);

    void Render(SDL_Renderer* renderer, SDL_Point centre) override;
    // Flips and calls the function of the new state, or in the third state that state's own. An empty
    // function raises std::bad_function_call, after the flip. True.
    bool OnClick() override;
    // Compares with the off label, whatever the state.
    [[nodiscard]] bool MatchesLabel(const std::string& text) const override {
        return text == options_.offLabel;
    }
    void RenderContent(SDL_Renderer* renderer, SDL_Point centre) override;
    void SetLoaded(bool loaded) override;
    void ReleaseTextures() override;

    // Neither calls a function.
    void SetToggled(bool toggled) { toggled_ = toggled; }
    void Toggle() { toggled_ = !toggled_; }
    // Entering calls the function given for it; an empty one raises std::bad_function_call, after the change.
    void SetThirdState(bool on);
    void ConfigureThirdState(SDL_Renderer* renderer, const std::string& iconName, const std::string& label,
                             std::function<void()> onEnter, std::function<void()> onClick);
    // An empty name leaves the badge that is there.
    void SetBadge(SDL_Renderer* renderer, const std::string& iconName);
    void SetShowBadge(bool show) { showBadge_ = show; }
    void SetShowTooltip(bool show) { showTooltip_ = show; }
    void SetFillWhenToggled(bool fill) { fillWhenToggled_ = fill; }
    // Frees the rasters of all four labels.
    void ReleaseTextTextures();

    [[nodiscard]] bool IsToggled() const { return toggled_; }
    [[nodiscard]] bool IsInThirdState() const { return thirdState_; }
    [[nodiscard]] const std::string& GetOffIconName() const { return options_.offIconName; }
    [[nodiscard]] SDL_Texture* GetOffTexture() const { return offTexture_; }

protected:
    [[nodiscard]] bool Load(SDL_Renderer* renderer) override;

private:
    enum class State { Off, On, Third };

    [[nodiscard]] State CurrentState() const;
    [[nodiscard]] const std::string& TextOf(State state) const;
    [[nodiscard]] SDL_Texture* Picture() const;
    void RenderBackground(SDL_Renderer* renderer) const;
    void RenderLabels(SDL_Renderer* renderer);

    Options options_;
    SDL_Texture* offTexture_ = nullptr;
    SDL_Texture* onTexture_ = nullptr;
    SDL_Texture* thirdTexture_ = nullptr;
    SDL_Texture* badgeTexture_ = nullptr;
    bool toggled_ = false;
    bool thirdState_ = false;
    bool fillWhenToggled_ = true;
    bool showTooltip_ = false;
    bool showBadge_ = false;
    std::string thirdLabel_;
    std::string thirdIconName_;
    std::string badgeIconName_;
    std::function<void()> onEnterThirdState_;
    std::function<void()> onClickInThirdState_;
    // Of the three states' labels, and of the fixed one.
    std::array<TextTexture, 3> stateLabels_;
    TextTexture fixedLabelTexture_;
};

}  // namespace Corvanta::UI
