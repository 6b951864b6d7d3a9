// The popup menus of the toolbar as one group: it routes the pointer to them and closes them when a press
// goes elsewhere. The menus are borrowed. Render thread only.
#pragma once

#include <SDL.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "ui/Menu.h"

namespace Corvanta::UI {

class OverlayMenus final {
public:
    OverlayMenus() = default;
    ~OverlayMenus();
    OverlayMenus(const OverlayMenus&) = delete;
    OverlayMenus& operator=(const OverlayMenus&) = delete;

    // Null and a menu that is there already are ignored. Whoever destroys a menu clears the group first, but
    // for the function of the menu's own item.
    void Add(Menu* menu);
    // Forgets the menus and what refreshes the toolbar.
    void Clear();
    // Called when a click closes a menu, before anything else of that click.
    void SetToolbarRefresh(std::function<void()> refresh) { toolbarRefresh_ = std::move(refresh); }

    [[nodiscard]] bool AnyVisible() const;
    // Whether the pointer is on a control that opens one of the menus, be that open or not.
    [[nodiscard]] bool AnyOwnerHovered() const;
    // Gives the click to the hovered menus, and closes each menu that the click is not about: the pointer is
    // on neither its owner nor one of its open child menus nor the owner of one. A child menu is one whose
    // owner is an item of the menu. An item's function may clear or destroy the group, and destroy its menu.
    // True when a menu was visible: the press is taken.
    bool OnClick();
    // A menu that is not visible has nothing under the pointer.
    void OnHover(const SDL_Point& mouse);
    void ReleaseTextures();
    void SetContentScale(float scale);

    // The optional entries stand in the bar itself, not in a menu.
    bool barItems = false;

private:
    [[nodiscard]] bool IsMeant(const Menu& menu) const;

    std::vector<Menu*> menus_;
    std::function<void()> toolbarRefresh_;
    // Counts the changes of the list; outlives the group for a click that ends it.
    std::shared_ptr<size_t> changes_ = std::make_shared<size_t>(0);
};

}  // namespace Corvanta::UI
