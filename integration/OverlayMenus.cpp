#include "integration/OverlayMenus.h"

#include <algorithm>
#include <utility>

namespace Corvanta::UI {
namespace {

[[nodiscard]] bool HasItem(const Menu& menu, const GraphicElementInterface* element) {
    const auto& items = menu.GetItems();
    return std::any_of(items.begin(), items.end(), [element](const Button* item) { return item == element; });
}

[[nodiscard]] bool IsOwnerHovered(const Menu& menu) {
    return menu.GetAnchorElement() != nullptr && menu.GetAnchorElement()->hovered;
}

void ForgetPointer(Menu& menu) {
    menu.hovered = false;
    menu.GetScrollbar().hovered = false;
    for (Button* item : menu.GetItems()) item->hovered = false;
}

}  // namespace

OverlayMenus::~OverlayMenus() {
    ++*changes_;
}

void OverlayMenus::Add(Menu* menu) {
    if (menu == nullptr || std::find(menus_.begin(), menus_.end(), menu) != menus_.end()) return;
    ++*changes_;
    menus_.push_back(menu);
}

void OverlayMenus::Clear() {
    ++*changes_;
    menus_.clear();
    toolbarRefresh_ = nullptr;
}

bool OverlayMenus::AnyVisible() const {
    return std::any_of(menus_.begin(), menus_.end(), [](const Menu* menu) { return menu->visible; });
}

bool OverlayMenus::AnyOwnerHovered() const {
    return std::any_of(menus_.begin(), menus_.end(), [](const Menu* menu) { return IsOwnerHovered(*menu); });
}

bool OverlayMenus::IsMeant(const Menu& menu) const {
    if (IsOwnerHovered(menu)) return true;
    return std::any_of(menus_.begin(), menus_.end(), [&menu](const Menu* child) {
        return HasItem(menu, child->GetAnchorElement()) &&
               (IsOwnerHovered(*child) || (child->visible && child->hovered));
    });
}

bool OverlayMenus::OnClick() {
    std::vector<Menu*> clicked;
    std::vector<Menu*> closed;
    for (Menu* menu : menus_) {
        if (!menu->visible) continue;
        if (menu->hovered) clicked.push_back(menu);
        if (!IsMeant(*menu)) closed.push_back(menu);
    }
    const bool taken = AnyVisible();
    // Closed before the click is passed on, since an item's function may destroy what it belongs to.
    for (Menu* menu : closed) menu->SetVisible(false);
    const std::shared_ptr<size_t> changes = changes_;
    const size_t before = *changes;
    if (!closed.empty() && toolbarRefresh_) {
        const std::function<void()> refresh = toolbarRefresh_;
        refresh();
    }
    for (Menu* menu : clicked) {
        if (*changes != before) break;
        menu->OnClick();
    }
    return taken;
}

void OverlayMenus::OnHover(const SDL_Point& mouse) {
    for (Menu* menu : menus_) {
        if (menu->visible) {
            menu->OnHover(mouse);
        } else {
            ForgetPointer(*menu);
        }
    }
}

void OverlayMenus::ReleaseTextures() {
    for (Menu* menu : menus_) menu->ReleaseTextures();
}

void OverlayMenus::SetContentScale(float scale) {
    for (Menu* menu : menus_) menu->SetScale(scale);
}

}  // namespace Corvanta::UI
