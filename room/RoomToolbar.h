// The controls of a live room: the bar at its bottom, the bar's buttons, the menus that open above it, and
// the thread of its long actions. Everything here but the action thread runs with the room's locks held, on
// the thread of the tick or of a host's command. Buttons call back into the view.
#pragma once

#include <SDL.h>

#include <array>
#include <functional>
#include <memory>
#include <string>

#include "integration/OverlayMenus.h"
#include "integration/StreamMenuController.h"
#include "platform/Connections.h"
#include "platform/HostCallbacks.h"
#include "room/ActionQueue.h"
#include "ui/ButtonBar.h"
#include "ui/Menu.h"

namespace Corvanta::Room {

class VideoRoomView;

class RoomToolbar final {
public:
    // Watches for the programs that can be streamed from here on. Both outlive the toolbar.
    RoomToolbar(VideoRoomView& view, const HostCallbacks& callbacks);
    RoomToolbar(const RoomToolbar&) = delete;
    RoomToolbar& operator=(const RoomToolbar&) = delete;

    // Makes the bar and its menus for the view's renderer. Again: nothing.
    void Build(const std::string& title);
    [[nodiscard]] bool IsBuilt() const { return buttonBar_ != nullptr; }
    // Programs are watched no longer. With no lock held, since it waits for a report in progress.
    void StopListening() { processListener_.Unsubscribe(); }
    // Bar and menus go, and with them all buttons, and no further action starts. Ahead of the renderer's end.
    void Clear();
    // Pictures and texts come back with the next drawing.
    void ReleaseTextures();

    // Input. Each does nothing before Build.
    // A press at the pointer's place: an open menu first, then the bar.
    void OnPress();
    void OnHover(SDL_Point pointer);

    [[nodiscard]] bool HasOpenMenu() const { return overlays_.AnyVisible(); }

    // Drawing, in this order.
    // mainVideoWidth: -1 without a main video.
    void RenderBar(SDL_Renderer* renderer, int barTop, int mainVideoWidth);
    void RenderMenus(SDL_Renderer* renderer);
    void RenderStreamMenus(SDL_Renderer* renderer);

    void SetContentScale(float scale, int toolbarHeight);
    void SetWidth(int width);
    void SetTitle(const std::string& title);
    // The entries of the layout menu follow what the room shows.
    void RefreshLayoutMenu();
    void OnMainVideoChanged();
    // HDR output has an entry of its own among the options.
    void SetHdrOption(bool shown);
    [[nodiscard]] bool HasOptions() const { return optionsMenu_ != nullptr; }

    // How the buttons stand. Off means that the button is toggled; no function runs.
    [[nodiscard]] UI::ToggleButton* GetMicButton() const { return micButton_; }
    [[nodiscard]] UI::ToggleButton* GetVideoButton() const { return videoButton_; }
    void ShowSpeakerOff(bool off);
    void SetSpeakerNone(bool none);
    void SetMicNone(bool none);
    void SetVideoNone(bool none);
    void SetFullscreen(bool on);
    // click: as if the user had closed the panel; else only the button follows. The bar shows itself again.
    void UntoggleOptionsButton(bool click);
    // Only while it is toggled.
    void UntoggleAudioMixer();
    void SetSidebarNotification(bool shown);
    // The bar makes room for the drawing tools.
    void SetDrawTool(bool on);

    // What threads that may outlive the room hand actions to.
    [[nodiscard]] std::weak_ptr<ActionQueue> GetActionThread() const { return actionThread_; }
    [[nodiscard]] UI::ButtonBar* GetButtonBar() const { return buttonBar_.get(); }
    [[nodiscard]] UI::Menu* GetLayoutMenu() const { return layoutMenu_.get(); }
    [[nodiscard]] UI::Menu* GetOptionsMenu() const { return optionsMenu_.get(); }

private:
    // Places of the layout menu's entries, for what is shown and for what is not.
    enum LayoutEntry { HideWall, ShowWall, DetachWall, AttachWall, HideBar, ShowBar, kLayoutEntries };

    void BuildBar(const std::string& title);
    void BuildLayoutMenu();
    void BuildOptionsMenu();
    // The buttons that start and stop every kind of shared stream.
    void BuildStreamControls();
    void BuildStreamMenus();
    // Of a toggle button when it is off and on.
    struct Look {
        const char* offIconName;
        const char* onIconName;
        const char* offLabel;
        const char* onLabel;
    };
    // fixedLabel: shown under the button in both states; null for none.
    UI::ToggleButton* AddToggle(UI::BarGroup group, const Look& look, std::function<void()> onToggledOn,
                                std::function<void()> onToggledOff, const char* fixedLabel = nullptr);
    UI::ToggleButton* AddStreamButton(const char* iconName, const char* label, const char* idleTooltip,
                                      const char* activeTooltip, std::function<void()> onToggledOn,
                                      std::function<void()> onToggledOff);
    UI::ToggleButton* AddNativeStreamButton(const char* iconName, const char* label, const char* idleTooltip,
                                            const char* activeTooltip, StreamType type);
    std::unique_ptr<UI::Menu> MakeMenu(UI::GraphicElementInterface* owner);
    void AddApplicationItem(UI::Menu& menu, const char* iconName, const char* label,
                            HostApplication application, StreamType type);
    void AddOption(const char* iconName, const char* label, void (VideoRoomView::*chosen)());
    void RunOnActionThread(std::function<void()> action) { actionThread_->Run(std::move(action)); }
    void ToggleMenu(UI::Menu& menu);
    void CloseMenus();
    void HideBarNow();
    void ShowBarAlways();
    // A menu has closed: the bar shows its tooltips again, and stays for its usual while.
    void RefreshBar();

    VideoRoomView& view_;
    const HostCallbacks& hostCallbacks_;

    std::unique_ptr<UI::ButtonBar> buttonBar_;
    UI::ToggleButton* layoutButton_ = nullptr;
    UI::ToggleButton* drawToolButton_ = nullptr;
    UI::ToggleButton* micButton_ = nullptr;
    UI::ToggleButton* videoButton_ = nullptr;
    UI::ToggleButton* speakerButton_ = nullptr;
    UI::ToggleButton* audioMixerButton_ = nullptr;
    UI::ToggleButton* optionsButton_ = nullptr;
    UI::ToggleButton* fullscreenButton_ = nullptr;
    // Under the title, since the row is full.
    UI::TextButton* moreButton_ = nullptr;

    std::unique_ptr<UI::Menu> layoutMenu_;
    std::unique_ptr<UI::Menu> optionsMenu_;
    std::unique_ptr<UI::Menu> davinciMenu_;
    std::unique_ptr<UI::Menu> flameMenu_;
    std::array<UI::Button*, kLayoutEntries> layoutEntries_{};
    UI::Button* hdrOptionItem_ = nullptr;

    UI::StreamMenuController processListener_;
    UI::OverlayMenus overlays_;
    // Last, so that it ends first. Shared with what other threads may still hand over.
    const std::shared_ptr<ActionQueue> actionThread_ = std::make_shared<ActionQueue>();
};

}  // namespace Corvanta::Room
