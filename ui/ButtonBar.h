// The room's toolbar: a strip at the bottom of the view with three groups of buttons, a title, a text button
// and a record button. Laid out in every frame from its height alone; narrow windows get a compact set. It
// comes when the pointer reaches it and goes after a delay. Drawn with its top-left corner at the position.
// Render thread only.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ui/BarSlide.h"
#include "ui/Button.h"
#include "ui/ButtonBarLayout.h"
#include "ui/GraphicElementInterface.h"
#include "ui/TextButton.h"
#include "ui/TextTexture.h"
#include "ui/ToggleButton.h"

namespace Corvanta::UI {

// A button made for another value belongs to no group and is not drawn.
enum class BarGroup : int { Left = 700, Centre = 701, Right = 702 };

class ButtonBar final : public GraphicElementInterface {
public:
    struct ToggleOptions {
        std::string offIconName = {};
        std::string onIconName = {};
        std::string offLabel = {};
        std::string onLabel = {};
        std::function<void()> onToggledOn = {};
        std::function<void()> onToggledOff = {};
        // Clicked at once, so that its function runs before AddToggleButton returns.
        bool startToggled = false;
        bool showLabel = false;
        bool fixedLabelMode = false;
        std::string fixedLabel = {};
    };

    // titleCentred: the title stands on the bar's middle line, else it ends on it.
    ButtonBar(SDL_Renderer* renderer, int width, int height, const std::string& title, bool titleCentred);

    // Advances the slide for this frame, ahead of its Render: rect is then where the bar will be drawn.
    void UpdateSlide(SDL_Point topLeft);
    void Render(SDL_Renderer* renderer, SDL_Point topLeft) override;
    // The first hovered button gets the click. False when nothing took it.
    bool OnClick() override;
    void SetVisible(bool value) override;
    void OnHover(const SDL_Point& mouse) override;
    void SetHeight(int value) override;

    // Buttons made here live as long as the bar: whoever borrowed one lets go of it first.
    Button* AddButton(const std::string& iconName, const std::string& label, std::function<void()> onClick,
                      BarGroup group, ButtonStyle style, const std::string& tooltip);
    ToggleButton* AddToggleButton(ToggleOptions options, BarGroup group);
    // Borrowed; it may stand in a group too. Null is ignored.
    void AddCompactButton(Button* button);
    TextButton* SetTextButton(const std::string& text, std::function<void()> onClick);
    // The slot of the record button; its rect tells its width. Null empties it.
    void SetRecordButton(std::unique_ptr<GraphicElementInterface> button) {
        recordButton_ = std::move(button);
    }

    // The first centre button of that label gets a click.
    void ClickCentreButton(const std::string& label);
    void SetAutoHide(bool on);
    [[nodiscard]] bool IsAutoHide() const { return autoHide_; }
    enum class Remember { No, Yes };
    void SetAlwaysVisible(bool always, Remember remember);
    void RestoreAlwaysVisible() { SetAlwaysVisible(rememberedAlwaysVisible_, Remember::Yes); }
    // While pinned, the pointer's leaving starts no hiding.
    void Pin() { pinned_ = true; }
    void Unpin() { pinned_ = false; }
    // While hidden, neither the pointer nor KeepAlive shows the bar, and SetVisible(false) hides it at once.
    void SetHidden(bool hidden) { hidden_ = hidden; }
    [[nodiscard]] bool IsHidden() const { return hidden_; }
    // Something else under the pointer needs the bar.
    void KeepAlive();
    void SetTitle(const std::string& title);
    [[nodiscard]] const std::string& GetTitle() const { return titleText_; }
    // Distance added to the way of the slide.
    void SetOffset(int offset) { offset_ = offset; }
    void SetTag(int tag) { tag_ = tag; }
    [[nodiscard]] int GetTag() const { return tag_; }
    // Puts the wanted optional controls into the right group and takes the others out.
    void UpdateRightGroup(const std::map<ToggleButton*, bool>& wanted);
    // Of every button, those that come later too: an open menu lies where the tooltips would stand.
    void SetTooltipsAllowed(bool allowed);
    // Every raster goes, the pictures are forgotten; the next Render brings them back.
    void ReleaseTextures();

    [[nodiscard]] bool AreTooltipsAllowed() const { return tooltipsAllowed_; }
    [[nodiscard]] bool IsCompact() const { return compact_; }
    [[nodiscard]] bool IsSliding() const { return slide_.IsSliding(); }
    [[nodiscard]] bool IsHiding() const { return slide_.IsHiding(); }

private:
    using Group = std::vector<Button*>;

    [[nodiscard]] BarCounts Counts() const;
    [[nodiscard]] Group* GroupOf(BarGroup group);
    // Calls for each button of the three groups.
    template <typename Call>
    void ForEachGrouped(Call call) const;
    Button* Adopt(std::unique_ptr<Button> button, BarGroup group);
    void RenderVisible(SDL_Renderer* renderer);
    void RenderFull(SDL_Renderer* renderer, const BarMetrics& metrics, int titleWidth);
    void RenderTitle(SDL_Renderer* renderer, const BarMetrics& metrics, int titleWidth);
    void RenderRight(SDL_Renderer* renderer, const BarMetrics& metrics);
    void RenderCompact(SDL_Renderer* renderer, const BarMetrics& metrics);
    // From the right button before it to that of the index.
    [[nodiscard]] int RightStep(const BarMetrics& metrics, size_t index) const;
    // Left edge of the right group.
    [[nodiscard]] int RightGroupEnd(const BarMetrics& metrics) const;
    [[nodiscard]] int RecordWidth() const { return recordButton_ != nullptr ? recordButton_->rect.w : 0; }
    [[nodiscard]] GraphicElementInterface* FindHovered() const;
    void ApplyButtonSize(GraphicElementInterface& button) const;

    std::vector<std::unique_ptr<Button>> ownButtons_;
    Group leftButtons_;
    Group centreButtons_;
    Group rightButtons_;
    Group compactButtons_;
    std::unique_ptr<GraphicElementInterface> recordButton_;
    std::unique_ptr<TextButton> textButton_;
    TextTexture title_;
    std::string titleText_;
    const bool titleCentred_;
    SDL_Renderer* renderer_;
    int offset_ = 0;
    BarSlide slide_;
    bool pinned_ = false;
    bool hidden_ = false;
    bool tooltipsAllowed_ = true;
    float titleSizeRatio_ = 0.12F;
    SDL_Color background_{0, 0, 0, 100};
    int tag_ = -1;
    bool autoHide_ = true;
    // The negation of autoHide_ once that was set.
    bool neverHide_ = false;
    bool compact_ = false;
    // True between frames: the slide advances once in each.
    bool layoutPending_ = true;
    bool rememberedAlwaysVisible_ = false;
    // Of the buttons, as of the last SetHeight; they keep their own before the first.
    std::optional<SDL_Point> buttonSize_;
};

}  // namespace Corvanta::UI
