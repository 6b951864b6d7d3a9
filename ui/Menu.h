// A vertical list of buttons, toggles and dividers on a coloured plate. It opens with a short slide, scrolls
// when it has more rows than it may show, and scales with its window. Drawn with its top-left corner at the
// position. Render thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/Button.h"
#include "ui/Divider.h"
#include "ui/GraphicElementInterface.h"
#include "ui/ToggleButton.h"
#include "ui/VideoScrollbar.h"

namespace Corvanta::UI {

// Where an opening menu comes from; with any other value the plate stands still.
enum class MenuDirection : int { FromAbove = 0, FromBelow = 1 };

class Menu final : public GraphicElementInterface {
public:
    struct ToggleOptions {
        std::string offIconName = {};
        std::string onIconName = {};
        std::string offLabel = {};
        std::string onLabel = {};
        std::function<void()> onToggledOn = {};
        std::function<void()> onToggledOff = {};
    };

    // baseWidth: at scale 1. background: 0xAARRGGBB.
    Menu(SDL_Renderer* renderer, MenuDirection direction, int baseWidth, uint32_t background);

    // Puts rect in place even while hidden.
    void Render(SDL_Renderer* renderer, SDL_Point topLeft) override;
    // The scrollbar or the first hovered item gets the click. False when nothing took it.
    bool OnClick() override;
    // True opens with the slide, from its beginning; false closes at once.
    void SetVisible(bool value) override;
    void OnHover(const SDL_Point& mouse) override;
    void SetWidth(int value) override;

    // Items made here live as long as the menu, also when they are taken out of it: whoever borrowed one lets
    // go of it first.
    Button* AddButton(const std::string& iconName, const std::string& label, std::function<void()> onClick);
    ToggleButton* AddToggleButton(ToggleOptions options);
    Divider* AddDivider();
    // Borrowed; null is ignored. An item that is there already stays where it is; index is at most the number
    // of items.
    void InsertItem(Button* item, size_t index);
    void RemoveItem(Button* item);
    // A second list, kept for the owner.
    void AddTrackedItem(Button* item) { trackedItems_.push_back(item); }
    [[nodiscard]] std::vector<Button*> GetTrackedItems() const { return trackedItems_; }
    [[nodiscard]] const std::vector<Button*>& GetItems() const { return items_; }

    // Of the plate as its next drawing will show it.
    [[nodiscard]] int GetPlateHeight() const;
    // At most five rows and a scrollbar.
    void SetScrollable(bool on) { scrollable_ = on; }
    [[nodiscard]] bool IsScrollable() const { return scrollable_; }
    // Of items that are added from here on.
    void SetRegularLabels(bool on) { regularLabels_ = on; }
    // The control that opens this menu; borrowed.
    void SetAnchorElement(GraphicElementInterface* element) { anchorElement_ = element; }
    [[nodiscard]] GraphicElementInterface* GetAnchorElement() const { return anchorElement_; }
    void SetItemHeight(int value);
    [[nodiscard]] int GetItemHeight() const { return itemHeight_; }
    [[nodiscard]] int GetItemWidth() const { return itemWidth_; }
    void SetScale(float scale);
    [[nodiscard]] VideoScrollbar& GetScrollbar() { return scrollbar_; }
    // Every raster goes, the pictures are forgotten; the next Render brings them back.
    void ReleaseTextures();

private:
    [[nodiscard]] int ContentHeight() const;
    [[nodiscard]] int ItemCount() const { return static_cast<int>(items_.size()); }
    template <typename Item>
    Item* Adopt(std::unique_ptr<Item> item);
    void SetItemWidth(int value);
    void Slide();
    [[nodiscard]] int Scroll(SDL_Point topLeft);
    void RenderItems(SDL_Renderer* renderer, SDL_Point topLeft, int offset);

    VideoScrollbar scrollbar_;
    std::vector<std::unique_ptr<Button>> ownItems_;
    std::vector<Button*> items_;
    GraphicElementInterface* anchorElement_ = nullptr;
    SDL_Renderer* renderer_;
    int64_t openStartNs_ = 0;
    bool opening_ = false;
    int dividerCount_ = 0;
    const int baseWidth_;
    const SDL_Color background_;
    int openMs_ = 125;
    bool regularLabels_ = false;
    int itemWidth_;
    int itemHeight_ = 48;
    const MenuDirection direction_;
    bool scrollable_ = false;
    std::vector<Button*> trackedItems_;
};

// Where a menu stands whose plate ends at bottom and at its opener's right edge; at the opener's left edge
// where that would take it out of the view.
[[nodiscard]] SDL_Point PlaceMenuAbove(const Menu& menu, const SDL_Rect& opener, int bottom);

}  // namespace Corvanta::UI
