#include "room/RoomToolbar.h"

#include <utility>

#include "room/VideoRoomView.h"
#include "ui/Arithmetic.h"

namespace Corvanta::Room {
namespace {

constexpr int kMenuWidth = 322;
constexpr uint32_t kMenuColor = 0xFF424242;
// The options stand that far from the right edge.
constexpr double kOptionsMargin = 25.0;
// So that a margin that comes out whole is not cut to the pixel before.
constexpr double kRoundingRoom = 1e-6;

}  // namespace

RoomToolbar::RoomToolbar(VideoRoomView& view, const HostCallbacks& callbacks)
    : view_(view), hostCallbacks_(callbacks) {}

void RoomToolbar::Build(const std::string& title) {
    if (IsBuilt()) return;
    BuildBar(title);
    BuildLayoutMenu();
    BuildOptionsMenu();
    // Running programs have their buttons in the bar itself, there is no menu of all streams.
    overlays_.barItems = true;
    overlays_.SetToolbarRefresh([this] { RefreshBar(); });
    processListener_.SetToolbarRefresh([this] { RefreshBar(); });
    BuildStreamControls();
}

void RoomToolbar::BuildBar(const std::string& title) {
    buttonBar_ = std::make_unique<UI::ButtonBar>(view_.GetRenderer(), view_.GetWidth(),
                                                 view_.GetToolbarHeight(), title, true);
    const auto tell = [this](void (*HostCallbacks::*function)(bool), bool value) {
        return [this, function, value] {
            if (hostCallbacks_.*function != nullptr) (hostCallbacks_.*function)(value);
        };
    };
    using enum UI::BarGroup;
    const auto toggleLayout = [this] { ToggleMenu(*layoutMenu_); };
    layoutButton_ = AddToggle(
        Left, {"icons/layout.png", "icons/layout-white.png", "Show layout menu", "Hide layout menu"},
        toggleLayout, toggleLayout);
    drawToolButton_ = AddToggle(
        Left, {"icons/draw.png", "icons/draw-white.png", "Show drawing tools", "Hide drawing tools"},
        tell(&HostCallbacks::ShowDrawTool, true), tell(&HostCallbacks::ShowDrawTool, false));
    micButton_ = AddToggle(
        Centre, {"icons/mic.png", "icons/nomic.png", "Turn off microphone", "Turn on microphone"},
        [this] { view_.SwitchMicrophone(false); }, [this] { view_.SwitchMicrophone(true); });
    videoButton_ = AddToggle(
        Centre, {"icons/cam.png", "icons/nocam.png", "Turn off camera", "Turn on camera"},
        [this] { view_.SwitchCamera(false); }, [this] { view_.SwitchCamera(true); });
    speakerButton_ = AddToggle(
        Centre, {"icons/audio.png", "icons/noaudio.png", "Turn off audio", "Turn on audio"},
        [this] { view_.SwitchSpeaker(false); }, [this] { view_.SwitchSpeaker(true); });
    audioMixerButton_ = AddToggle(
        Centre,
        {"icons/audiomixer.png", "icons/audiomixer-white.png", "Show audio mixer", "Hide audio mixer"},
        tell(&HostCallbacks::ShowAudioMixer, true), tell(&HostCallbacks::ShowAudioMixer, false));
    optionsButton_ = AddToggle(
        Right,
        {"icons/options.png", "icons/options-white.png", "Show Chats and Notes", "Hide Chats and Notes"},
        tell(&HostCallbacks::ShowOptions, true), tell(&HostCallbacks::ShowOptions, false));
    optionsButton_->SetBadge(view_.GetRenderer(), "icons/notification.png");
    fullscreenButton_ = AddToggle(
        Right,
        {"icons/fullscreen.png", "icons/fullscreen-white.png", "Enter full screen", "Exit full screen"},
        tell(&HostCallbacks::SetFullscreen, true), tell(&HostCallbacks::SetFullscreen, false));
    moreButton_ = buttonBar_->SetTextButton("More", [this] { ToggleMenu(*optionsMenu_); });
    for (UI::ToggleButton* button : {micButton_, videoButton_, speakerButton_, optionsButton_}) {
        buttonBar_->AddCompactButton(button);
    }
    const auto nothing = [] {};
    micButton_->ConfigureThirdState(view_.GetRenderer(), "icons/nomic.png", "No microphone", nothing,
                                    nothing);
    videoButton_->ConfigureThirdState(view_.GetRenderer(), "icons/nocam.png", "No camera", nothing, nothing);
    speakerButton_->ConfigureThirdState(view_.GetRenderer(), "icons/noaudio.png", "No speaker", nothing,
                                        nothing);
    micButton_->SetToggled(!view_.IsMicEnabled());
    videoButton_->SetToggled(!view_.IsVideoEnabled());
    speakerButton_->SetToggled(!view_.IsSpeakerEnabled());
    fullscreenButton_->SetToggled(view_.IsFullscreenEnabled());
}

UI::ToggleButton* RoomToolbar::AddToggle(UI::BarGroup group, const Look& look,
                                         std::function<void()> onToggledOn,
                                         std::function<void()> onToggledOff, const char* fixedLabel) {
    UI::ButtonBar::ToggleOptions options;
    options.offIconName = look.offIconName;
    options.onIconName = look.onIconName;
    options.offLabel = look.offLabel;
    options.onLabel = look.onLabel;
    options.onToggledOn = std::move(onToggledOn);
    options.onToggledOff = std::move(onToggledOff);
    if (fixedLabel != nullptr) {
        options.showLabel = true;
        options.fixedLabelMode = true;
        options.fixedLabel = fixedLabel;
    }
    return buttonBar_->AddToggleButton(std::move(options), group);
}

std::unique_ptr<UI::Menu> RoomToolbar::MakeMenu(UI::GraphicElementInterface* owner) {
    auto menu =
        std::make_unique<UI::Menu>(view_.GetRenderer(), UI::MenuDirection::FromBelow, kMenuWidth, kMenuColor);
    menu->SetVisible(false);
    menu->SetAnchorElement(owner);
    overlays_.Add(menu.get());
    return menu;
}

void RoomToolbar::BuildLayoutMenu() {
    layoutMenu_ = MakeMenu(layoutButton_);
    const auto add = [this](const char* iconName, const char* label, std::function<void()> chosen) {
        return layoutMenu_->AddButton(iconName, label, std::move(chosen));
    };
    const auto slide = [this](bool show) {
        return [this, show] {
            view_.SlideThumbnails(show, true);
            RefreshLayoutMenu();
        };
    };
    const auto tell = [this](void (*HostCallbacks::*function)()) {
        return [this, function] {
            if (hostCallbacks_.*function != nullptr) (hostCallbacks_.*function)();
        };
    };
    layoutEntries_[HideWall] = add("icons/wall-hide.png", "Hide thumbnails", slide(false));
    layoutEntries_[ShowWall] = add("icons/wall-show.png", "Show thumbnails", slide(true));
    layoutEntries_[DetachWall] =
        add("icons/wall-detach.png", "Detach thumbnails", tell(&HostCallbacks::DetachWall));
    layoutEntries_[AttachWall] =
        add("icons/wall-attach.png", "Attach thumbnails", tell(&HostCallbacks::AttachWall));
    layoutEntries_[HideBar] = add("icons/toolbar-hide.png", "Hide toolbar", [this] { HideBarNow(); });
    layoutEntries_[ShowBar] = add("icons/toolbar-show.png", "Show toolbar", [this] { ShowBarAlways(); });
}

void RoomToolbar::AddOption(const char* iconName, const char* label, void (VideoRoomView::*chosen)()) {
    optionsMenu_->AddButton(iconName, label, [this, chosen] { (view_.*chosen)(); });
}

void RoomToolbar::BuildOptionsMenu() {
    optionsMenu_ = MakeMenu(moreButton_);
    AddOption("icons/still.png", "Save still image", &VideoRoomView::SaveStill);
    AddOption("icons/brighter.png", "Brighter", &VideoRoomView::RaiseSdrBrightness);
    AddOption("icons/darker.png", "Darker", &VideoRoomView::LowerSdrBrightness);
    AddOption("icons/connection-strength.png", "Connection details", &VideoRoomView::ShowOwnConnection);
    AddOption("icons/leave.png", "Leave room", &VideoRoomView::LeaveRoom);
    hdrOptionItem_ = optionsMenu_->AddButton("icons/hdr.png", "Reset SDR brightness",
                                             [this] { view_.ResetSdrBrightness(); });
    optionsMenu_->RemoveItem(hdrOptionItem_);
}

void RoomToolbar::Clear() {
    actionThread_->Close();
    processListener_.Clear();
    overlays_.Clear();
    for (std::unique_ptr<UI::Menu>* menu : {&layoutMenu_, &optionsMenu_, &davinciMenu_, &flameMenu_}) {
        menu->reset();
    }
    for (UI::ToggleButton** button :
         {&layoutButton_, &drawToolButton_, &micButton_, &videoButton_, &speakerButton_, &audioMixerButton_,
          &optionsButton_, &fullscreenButton_}) {
        *button = nullptr;
    }
    moreButton_ = nullptr;
    layoutEntries_ = {};
    hdrOptionItem_ = nullptr;
    buttonBar_.reset();
}

void RoomToolbar::ReleaseTextures() {
    if (!IsBuilt()) return;
    buttonBar_->ReleaseTextures();
    overlays_.ReleaseTextures();
}

void RoomToolbar::OnPress() {
    if (!IsBuilt()) return;
    // Asked first: the click may close the menu.
    const bool ownerHovered = overlays_.AnyOwnerHovered();
    const bool taken = overlays_.OnClick();
    // A menu's item may have ended the room.
    if (!IsBuilt() || (taken && !ownerHovered)) return;
    if (buttonBar_->visible && buttonBar_->hovered) buttonBar_->OnClick();
}

void RoomToolbar::OnHover(SDL_Point pointer) {
    if (!IsBuilt()) return;
    buttonBar_->OnHover(pointer);
    overlays_.OnHover(pointer);
}

void RoomToolbar::ToggleMenu(UI::Menu& menu) {
    if (menu.visible) {
        menu.SetVisible(false);
        RefreshBar();
        return;
    }
    if (&menu == layoutMenu_.get()) RefreshLayoutMenu();
    menu.SetVisible(true);
    // Tooltips would lie over the menu, and the bar is not to slide away under it.
    buttonBar_->SetTooltipsAllowed(false);
    buttonBar_->Pin();
}

void RoomToolbar::RefreshBar() {
    buttonBar_->SetTooltipsAllowed(true);
    buttonBar_->Unpin();
    buttonBar_->KeepAlive();
}

void RoomToolbar::HideBarNow() {
    buttonBar_->SetAlwaysVisible(false, UI::ButtonBar::Remember::Yes);
    // Without the usual delay, but the pointer brings it back.
    buttonBar_->SetHidden(true);
    buttonBar_->SetVisible(false);
    buttonBar_->SetHidden(false);
}

void RoomToolbar::ShowBarAlways() {
    buttonBar_->SetHidden(false);
    buttonBar_->SetAlwaysVisible(true, UI::ButtonBar::Remember::Yes);
    RefreshLayoutMenu();
}

void RoomToolbar::RenderBar(SDL_Renderer* renderer, int barTop, int mainVideoWidth) {
    if (!IsBuilt()) return;
    const auto& running = processListener_.GetRunningEntries();
    if (overlays_.barItems) {
        buttonBar_->UpdateRightGroup(running);
    } else {
        processListener_.ApplyRunningEntries(running);
    }
    layoutButton_->SetToggled(layoutMenu_->visible);
    buttonBar_->SetTag(mainVideoWidth);
    // Also after a resize that found the room held.
    buttonBar_->SetWidth(view_.GetWidth());
    buttonBar_->Render(renderer, {0, barTop});
    // The compact set has no button that opens a menu.
    if (buttonBar_->IsCompact() && overlays_.AnyVisible()) CloseMenus();
}

void RoomToolbar::CloseMenus() {
    for (UI::Menu* menu : {layoutMenu_.get(), optionsMenu_.get(), davinciMenu_.get(), flameMenu_.get()}) {
        menu->SetVisible(false);
    }
    RefreshBar();
}

void RoomToolbar::RenderMenus(SDL_Renderer* renderer) {
    if (!IsBuilt()) return;
    const int bottom = view_.GetHeight() - view_.GetToolbarHeight();
    if (optionsMenu_->visible && optionsMenu_->width > 0) {
        // Kept from the first menu of the process, so that the margin grows with the menu's width.
        static const double kMarginShare = kOptionsMargin / optionsMenu_->width;
        const int reach = UI::Truncate(optionsMenu_->width * (kMarginShare + 1.0) + kRoundingRoom);
        optionsMenu_->Render(renderer, {view_.GetWidth() - reach, bottom - optionsMenu_->GetPlateHeight()});
    }
    if (layoutMenu_->visible) {
        layoutMenu_->Render(renderer, PlaceMenuAbove(*layoutMenu_, layoutButton_->rect, bottom));
    }
}

void RoomToolbar::RenderStreamMenus(SDL_Renderer* renderer) {
    if (!IsBuilt()) return;
    processListener_.UpdateCaptureStates();
    processListener_.Render(renderer, view_.GetHeight(), view_.GetToolbarHeight());
}

void RoomToolbar::SetContentScale(float scale, int toolbarHeight) {
    if (!IsBuilt()) return;
    buttonBar_->SetHeight(toolbarHeight);
    overlays_.SetContentScale(scale);
}

void RoomToolbar::SetWidth(int width) {
    if (IsBuilt()) buttonBar_->SetWidth(width);
}

void RoomToolbar::SetTitle(const std::string& title) {
    if (IsBuilt()) buttonBar_->SetTitle(title);
}

void RoomToolbar::RefreshLayoutMenu() {
    if (layoutMenu_ == nullptr) return;
    for (UI::Button* entry : layoutEntries_) layoutMenu_->RemoveItem(entry);
    const Video::VideoThumbnails& wall = view_.GetThumbnails();
    const bool wallShown = wall.IsShown() && !wall.IsSlidingOut();
    layoutMenu_->InsertItem(layoutEntries_[wallShown ? HideWall : ShowWall], 0);
    layoutMenu_->InsertItem(layoutEntries_[view_.IsDetached() ? AttachWall : DetachWall], 1);
    const bool barShown = !buttonBar_->IsHidden() && buttonBar_->visible;
    layoutMenu_->InsertItem(layoutEntries_[barShown ? HideBar : ShowBar], 2);
    view_.SetContentScale(view_.GetScale());
}

void RoomToolbar::OnMainVideoChanged() {
    if (!IsBuilt()) return;
    // One that is away stays away: people who only watch are not to see it at every change of speakers.
    // Under an open menu it stays.
    if (buttonBar_->visible && !overlays_.AnyVisible()) buttonBar_->RestoreAlwaysVisible();
    RefreshLayoutMenu();
}

void RoomToolbar::SetHdrOption(bool shown) {
    if (optionsMenu_ == nullptr) return;
    if (shown) {
        optionsMenu_->InsertItem(hdrOptionItem_, optionsMenu_->GetItems().size());
    } else {
        optionsMenu_->RemoveItem(hdrOptionItem_);
    }
}

void RoomToolbar::ShowSpeakerOff(bool off) {
    if (IsBuilt()) speakerButton_->SetToggled(off);
}

void RoomToolbar::SetSpeakerNone(bool none) {
    if (IsBuilt()) speakerButton_->SetThirdState(none);
}

void RoomToolbar::SetMicNone(bool none) {
    if (IsBuilt()) micButton_->SetThirdState(none);
}

void RoomToolbar::SetVideoNone(bool none) {
    if (IsBuilt()) videoButton_->SetThirdState(none);
}

void RoomToolbar::SetFullscreen(bool on) {
    if (IsBuilt()) fullscreenButton_->SetToggled(on);
}

void RoomToolbar::UntoggleOptionsButton(bool click) {
    if (!IsBuilt()) return;
    if (click) {
        optionsButton_->OnClick();
    } else {
        optionsButton_->SetToggled(false);
    }
    // The host may have left the room from inside the click.
    if (!IsBuilt()) return;
    buttonBar_->SetHidden(false);
    buttonBar_->SetVisible(true);
}

void RoomToolbar::UntoggleAudioMixer() {
    if (IsBuilt() && audioMixerButton_->IsToggled()) audioMixerButton_->OnClick();
}

void RoomToolbar::SetSidebarNotification(bool shown) {
    if (IsBuilt()) optionsButton_->SetShowBadge(shown);
}

void RoomToolbar::SetDrawTool(bool on) {
    if (!IsBuilt()) return;
    drawToolButton_->SetToggled(on);
    buttonBar_->SetHidden(on);
    buttonBar_->SetVisible(!on);
}

}  // namespace Corvanta::Room
