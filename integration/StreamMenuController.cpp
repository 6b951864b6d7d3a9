#include "integration/StreamMenuController.h"

#include <algorithm>

#include "platform/Common.h"
#include "platform/WebRTC.h"

namespace Corvanta::UI {
namespace {

using Integrations::MonitoredApplication;
using Integrations::ProcessMonitor;

void SetToggled(ToggleButton* button, bool toggled) {
    if (button != nullptr) button->SetToggled(toggled);
}

// Sets an item by what the engine captures, and tells whether it does. A missing item captures nothing.
[[nodiscard]] bool ShowCapture(ToggleButton* item, StreamType type) {
    if (item == nullptr) return false;
    const bool capturing = WebRTC_IsNativeStreamCapturing(type);
    item->SetToggled(capturing);
    return capturing;
}

[[nodiscard]] bool HasItem(const Menu& menu, const Button* button) {
    const auto& items = menu.GetItems();
    return std::find(items.begin(), items.end(), button) != items.end();
}

void AppendTo(Menu& menu, ToggleButton* entry) {
    if (HasItem(menu, entry)) return;
    // The menu may have been scaled while the entry was out of it.
    entry->SetWidth(menu.GetItemWidth());
    entry->SetHeight(menu.GetItemHeight());
    menu.InsertItem(entry, menu.GetItems().size());
}

}  // namespace

StreamMenuController::StreamMenuController()
    : resolve_{static_cast<int32_t>(MonitoredApplication::DaVinciResolve)},
      flame_{static_cast<int32_t>(MonitoredApplication::AutodeskFlame)},
      monitorListener_(std::make_shared<Integrations::ProcessMonitorListenerSDL>()) {
    ProcessMonitor::GetInstance()->Subscribe(monitorListener_);
}

StreamMenuController::~StreamMenuController() {
    Unsubscribe();
}

void StreamMenuController::Unsubscribe() {
    if (!std::exchange(subscribed_, false)) return;
    const Integrations::ProcessMonitorListenerInterface* const listener = monitorListener_.get();
    ProcessMonitor::GetInstance()->Unsubscribe(reinterpret_cast<uintptr_t>(listener));
}

void StreamMenuController::Clear() {
    mainButton_ = nullptr;
    mainMenu_ = nullptr;
    for (Application* application : {&resolve_, &flame_}) {
        application->entry = nullptr;
        application->menu = nullptr;
    }
    for (ToggleButton** item : {&ndiItem_, &deckLinkItem_, &fileItem_, &deviceItem_, &screenShareItem_,
                                &urlItem_, &mediaSiloItem_, &elgatoItem_}) {
        *item = nullptr;
    }
    monitoredEntries_.clear();
    runningEntries_.clear();
    toolbarRefresh_ = nullptr;
}

void StreamMenuController::SetEntry(Application& application, ToggleButton* entry) {
    monitoredEntries_.erase(application.entry);
    runningEntries_.erase(application.entry);
    application.entry = entry;
    if (entry == nullptr) return;
    monitoredEntries_[entry] = application.number;
    runningEntries_[entry] = false;
}

void StreamMenuController::SetMainMenu(ToggleButton* button, Menu* menu) {
    mainButton_ = button;
    mainMenu_ = menu;
}

int StreamMenuController::IsProcessRunning(int application) const {
    return monitorListener_->IsProcessRunning(application);
}

const std::map<ToggleButton*, bool>& StreamMenuController::GetRunningEntries() {
    for (auto& [entry, running] : runningEntries_) {
        running = IsProcessRunning(monitoredEntries_.at(entry)) != -1;
        if (running) continue;
        // Where it stood, something else may stand in the next frame.
        entry->hovered = false;
        entry->rect = {0, 0, 0, 0};
    }
    return runningEntries_;
}

void StreamMenuController::ApplyRunningEntries(const std::map<ToggleButton*, bool>& entries) {
    if (mainMenu_ == nullptr) return;
    for (const auto& [entry, running] : entries) {
        if (!running) mainMenu_->RemoveItem(entry);
    }
    // Not in the map's order, which is by address and would change from run to run.
    for (const Application* application : {&resolve_, &flame_}) {
        const auto found = entries.find(application->entry);
        if (found != entries.end() && found->first != nullptr && found->second) {
            AppendTo(*mainMenu_, found->first);
        }
    }
    for (const auto& [entry, running] : entries) {
        if (running && entry != nullptr) AppendTo(*mainMenu_, entry);
    }
}

void StreamMenuController::UpdateCaptureStates() {
    for (ToggleButton* item : {resolve_.entry, flame_.entry, mediaSiloItem_}) SetToggled(item, false);
    bool any = ShowCapture(elgatoItem_, StreamType::Elgato);
    any |= ShowCapture(ndiItem_, StreamType::NDI);
    any |= ShowCapture(deckLinkItem_, StreamType::DeckLink);
    any |= ShowCapture(deviceItem_, StreamType::Device);
    any |= ShowCapture(fileItem_, StreamType::File);
    any |= ShowCapture(urlItem_, StreamType::URL);
    if (screenShareItem_ != nullptr) {
        screenShareItem_->SetToggled(WebRTC_IsScreenShareCapturing());
        any |= screenShareItem_->IsToggled();
    }
    SetToggled(mainButton_, any);
}

bool StreamMenuController::IsShown(const ToggleButton* entry) const {
    if (entry == nullptr || entry->rect.w == 0) return false;
    const auto found = runningEntries_.find(const_cast<ToggleButton*>(entry));
    if (found == runningEntries_.end() || !found->second) return false;
    return mainMenu_ == nullptr || (mainMenu_->visible && HasItem(*mainMenu_, entry));
}

bool StreamMenuController::PlaceMenu(const Application& application, int toolbarTop,
                                     SDL_Point& topLeft) const {
    if (!IsShown(application.entry)) return false;
    const SDL_Rect& entry = application.entry->rect;
    topLeft = mainMenu_ != nullptr ? SDL_Point{entry.x - application.menu->width, entry.y}
                                   : PlaceMenuAbove(*application.menu, entry, toolbarTop);
    return true;
}

void StreamMenuController::CloseMenu(Menu& menu) {
    menu.hovered = false;
    if (!menu.visible) return;
    menu.SetVisible(false);
    if (toolbarRefresh_) toolbarRefresh_();
}

void StreamMenuController::Render(SDL_Renderer* renderer, int viewHeight, int toolbarHeight) {
    const int toolbarTop = viewHeight - toolbarHeight;
    // A hidden menu draws nothing, but its place is known when it opens.
    if (mainMenu_ != nullptr && mainButton_ != nullptr) {
        mainMenu_->Render(renderer, PlaceMenuAbove(*mainMenu_, mainButton_->rect, toolbarTop));
    }
    for (const Application* application : {&resolve_, &flame_}) {
        if (application->menu == nullptr) continue;
        SDL_Point topLeft{0, 0};
        if (PlaceMenu(*application, toolbarTop, topLeft)) {
            application->menu->Render(renderer, topLeft);
        } else {
            CloseMenu(*application->menu);
        }
    }
}

}  // namespace Corvanta::UI
