// A click target of an icon, an optional label under or beside it, a hover treatment and a tooltip. Drawn
// around the position as its centre; textures are loaded by the first drawing that can. Render thread only;
// the click's function runs on it as well.
#pragma once

#include <SDL.h>

#include <functional>
#include <optional>
#include <string>

#include "ui/ButtonGeometry.h"
#include "ui/GraphicElementInterface.h"
#include "ui/TextTexture.h"

namespace Corvanta::UI {

// How a button shows that the pointer is over it. Any other value is as Fill.
enum class ButtonStyle : int { Plain = 0, FillAndOutline = 1, Fill = 2, Row = 3, OtherIcon = 4 };

// Where the label stands: beside the icon in menus, under it in bars.
enum class LabelPlace : int { Beside = 0, Below = 1 };

class Button : public GraphicElementInterface {
public:
    struct Options {
        int width = 0;
        int height = 0;
        std::string iconName;
        std::string label;
        std::function<void()> onClick;
        LabelPlace labelPlace = LabelPlace::Beside;
        ButtonStyle style = ButtonStyle::Plain;
        std::string tooltip;
        // Shown while hovered, OtherIcon only.
        std::string hoverIconName;
    };

    // A button without pictures.
    Button(int width, int height, LabelPlace labelPlace, ButtonStyle style);
    // Loads the pictures at once; with a null renderer the first drawing does.
    Button(SDL_Renderer* renderer, Options options);

    void Render(SDL_Renderer* renderer, SDL_Point centre) override;
    // Calls the function, which must not be empty: else std::bad_function_call. True.
    bool OnClick() override;
    // Byte for byte.
    [[nodiscard]] virtual bool MatchesLabel(const std::string& text) const { return text == label_; }
    // Draws icon and label; rect is in place.
    virtual void RenderContent(SDL_Renderer* renderer, SDL_Point centre);

    // Lines at which a scrolled list cuts its items.
    void SetClipTop(int line) { clip_.top = line; }
    void SetClipBottom(int line) { clip_.bottom = line; }
    // A fill that takes the place of hover treatment and tooltip.
    void SetHighlighted(bool on) { highlighted_ = on; }
    // False keeps the tooltip away while something lies over the place where it would stand.
    void SetTooltipAllowed(bool allowed) { tooltipAllowed_ = allowed; }
    // The icon fills the button's height.
    void SetFitHeight(bool on) { fitHeight_ = on; }
    // False makes the next drawing look all pictures up again.
    virtual void SetLoaded(bool loaded);
    // Stores the name alone; SetLoaded(false) makes it count.
    void SetIconName(const std::string& name) { iconName_ = name; }
    // Beside the icon: font size over the button's height, and the font's weight.
    void SetLabelStyle(float ratio, bool bold);

    [[nodiscard]] SDL_Texture* GetTexture() const { return texture_; }
    [[nodiscard]] const std::string& GetIconName() const { return iconName_; }
    [[nodiscard]] const std::string& GetLabel() const { return label_; }
    [[nodiscard]] bool IsHighlighted() const { return highlighted_; }
    [[nodiscard]] bool IsTooltipAllowed() const { return tooltipAllowed_; }
    // The raster of the label goes and comes back at the next draw.
    void ReleaseLabelTexture() { labelTexture_.ReleaseTexture(); }
    // Every raster goes, the pictures are forgotten.
    virtual void ReleaseTextures();

protected:
    // Looks the pictures up. False when one that must be there is missing: the button is then not drawn.
    [[nodiscard]] virtual bool Load(SDL_Renderer* renderer);
    [[nodiscard]] bool EnsureLoaded(SDL_Renderer* renderer);
    void PlaceAround(SDL_Point centre);
    [[nodiscard]] ButtonShape Shape(SDL_Point centre) const;
    [[nodiscard]] bool HasLabelBelow() const { return labelPlace_ == LabelPlace::Below; }
    // The part of rect that shows in a scrolled list.
    [[nodiscard]] SDL_Rect VisiblePart() const;
    // Copies the whole picture, cut at the clip lines, and returns where it was drawn.
    SDL_Rect CopyClipped(SDL_Renderer* renderer, SDL_Texture* texture, SDL_Rect destination) const;
    void RenderLabel(SDL_Renderer* renderer, TextTexture& texture, const std::string& text, SDL_Color color);
    void RenderTooltipText(SDL_Renderer* renderer, const std::string& text);

private:
    void RenderHover(SDL_Renderer* renderer) const;

    bool loaded_ = false;
    const LabelPlace labelPlace_;
    const ButtonStyle style_;
    SDL_Texture* texture_ = nullptr;
    std::string iconName_;
    bool fitHeight_ = false;
    std::string label_;
    std::function<void()> onClick_;
    TextTexture labelTexture_;
    std::string tooltip_;
    TextTexture tooltipTexture_;
    SDL_Texture* hoverTexture_ = nullptr;
    std::string hoverIconName_;
    float labelSizeRatio_ = 0.34F;
    // A float by the boundary's own shape: 0 is the regular font, anything else the bold one.
    float boldLabel_ = 0.0F;
    ClipLines clip_;
    bool highlighted_ = false;
    bool tooltipAllowed_ = true;
};

// Pixels of a texture; (0, 0) for none.
[[nodiscard]] SDL_Point TextureSize(SDL_Texture* texture);

}  // namespace Corvanta::UI
