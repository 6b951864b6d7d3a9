#include "connectivity/ThumbnailConnectivityPanel.h"

#include <utility>

#include "connectivity/ConnectionStats.h"

namespace Corvanta::Connectivity {

class ThumbnailConnectivityPanel::Content {
public:
    std::shared_ptr<ConnectionStats> stats = std::make_shared<ConnectionStats>();
    UI::VideoScrollbar scrollbar;
};

ThumbnailConnectivityPanel::ThumbnailConnectivityPanel(bool, std::string, std::string, std::string)
    : content_(std::make_unique<Content>()) {
    visible = false;
}

ThumbnailConnectivityPanel::~ThumbnailConnectivityPanel() = default;

void ThumbnailConnectivityPanel::Update(SDL_Renderer* renderer, const SDL_Rect* area, int) {
    rect = *area;
    if (visible) Render(renderer, {area->x, area->y});
}

void ThumbnailConnectivityPanel::Render(SDL_Renderer*, SDL_Point) {}

bool ThumbnailConnectivityPanel::OnClick() {
    return false;
}

void ThumbnailConnectivityPanel::OnHover(const SDL_Point& mouse) {
    GraphicElementInterface::OnHover(mouse);
}

bool ThumbnailConnectivityPanel::ScrollbarClick() {
    return content_->scrollbar.visible && content_->scrollbar.OnClick();
}

UI::VideoScrollbar& ThumbnailConnectivityPanel::GetScrollbar() {
    return content_->scrollbar;
}

void ThumbnailConnectivityPanel::ReleaseTextures() {
    content_->scrollbar.ResetTextures();
}

std::shared_ptr<ConnectionStats> ThumbnailConnectivityPanel::GetConnectionStats() const {
    return content_->stats;
}

}  // namespace Corvanta::Connectivity
