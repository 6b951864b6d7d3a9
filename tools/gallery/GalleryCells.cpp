// Which controls stand on the sheet, and in which states.
#include <memory>

#include "tools/gallery/GallerySheet.h"
#include "ui/Button.h"
#include "ui/ButtonBar.h"
#include "ui/ButtonWithState.h"
#include "ui/ControlColors.h"
#include "ui/Divider.h"
#include "ui/FontManager.h"
#include "ui/Icon.h"
#include "ui/InitialsAvatar.h"
#include "ui/Menu.h"
#include "ui/TextButton.h"
#include "ui/ToggleButton.h"
#include "ui/VideoScrollbar.h"

namespace Corvanta::Gallery {
namespace {

constexpr uint32_t kMenuGround = 0xFF424242U;
constexpr int kBarButton = 64;
constexpr int kRowWidth = 220;
constexpr int kRowHeight = 48;

void Nothing() {}

[[nodiscard]] SDL_Point CentreOf(const SDL_Rect& area) {
    return {area.x + area.w / 2, area.y + area.h / 2};
}

// Lower than the middle, so that a tooltip has its place above.
[[nodiscard]] SDL_Point ButtonCentre(const SDL_Rect& area) {
    return {area.x + area.w / 2, area.y + area.h / 2 + 16};
}

}  // namespace

void GallerySheet::AddButtons() {
    struct Kind {
        const char* name;
        const char* label;
        UI::LabelPlace place;
        UI::ButtonStyle style;
        const char* tooltip;
        bool hovered;
        bool highlighted;
    };
    using enum UI::ButtonStyle;
    constexpr auto kBelow = UI::LabelPlace::Below;
    constexpr auto kBeside = UI::LabelPlace::Beside;
    const Kind kinds[] = {
        {"idle", "Options", kBelow, FillAndOutline, "", false, false},
        {"hovered", "Options", kBelow, FillAndOutline, "", true, false},
        {"hovered fill", "Options", kBelow, Fill, "", true, false},
        {"with tooltip", "Options", kBelow, Plain, "Chats and notes", true, false},
        {"other icon", "", kBelow, OtherIcon, "", true, false},
        {"highlighted", "Options", kBelow, FillAndOutline, "Not shown", true, true},
        {"long label", "A very long label", kBelow, FillAndOutline, "", false, false},
        {"row", "Spotlight", kBeside, Row, "", false, false},
        {"row hovered", "Spotlight", kBeside, Row, "", true, false},
    };
    for (const Kind& kind : kinds) {
        const bool row = kind.place == kBeside;
        auto* button = Make<UI::Button>(
            renderer_, UI::Button::Options{.width = row ? kRowWidth : kBarButton,
                                           .height = row ? kRowHeight : kBarButton,
                                           .iconName = row ? "icons/spotlight.png" : "icons/options.png",
                                           .label = kind.label,
                                           .onClick = Nothing,
                                           .labelPlace = kind.place,
                                           .style = kind.style,
                                           .tooltip = kind.tooltip,
                                           .hoverIconName = "icons/options-white.png"});
        button->SetHighlighted(kind.highlighted);
        Cell& cell = Add(std::string("Button ") + kind.name, row ? kRowWidth + 16 : 144, 136);
        cell.draw = [button](SDL_Renderer* renderer, const SDL_Rect& area) {
            button->Render(renderer, ButtonCentre(area));
        };
        cell.pose = [button, hovered = kind.hovered] { button->hovered = hovered; };
        cell.element = button;
        releasers_.emplace_back([button] { button->ReleaseTextures(); });
    }
}

void GallerySheet::AddToggles() {
    struct Kind {
        const char* name;
        bool toggled;
        bool hovered;
        bool third;
        bool badge;
        UI::LabelPlace place;
    };
    constexpr auto kBelow = UI::LabelPlace::Below;
    constexpr auto kBeside = UI::LabelPlace::Beside;
    const Kind kinds[] = {
        {"off", false, false, false, false, kBelow},
        {"off hovered", false, true, false, false, kBelow},
        {"on", true, false, false, false, kBelow},
        {"on hovered", true, true, false, false, kBelow},
        {"third state", false, false, true, false, kBelow},
        {"badge", false, false, false, true, kBelow},
        {"row off", false, false, false, false, kBeside},
        {"row on hovered", true, true, false, false, kBeside},
    };
    for (const Kind& kind : kinds) {
        const bool row = kind.place == kBeside;
        auto* toggle = Make<UI::ToggleButton>(
            renderer_, UI::ToggleButton::Options{.width = row ? kRowWidth : kBarButton,
                                                 .height = row ? kRowHeight : kBarButton,
                                                 .offIconName = "icons/cam.png",
                                                 .onIconName = "icons/nocam.png",
                                                 .offLabel = "Video on",
                                                 .onLabel = "Video off",
                                                 .onToggledOn = Nothing,
                                                 .onToggledOff = Nothing,
                                                 .showLabel = true,
                                                 .labelPlace = kind.place,
                                                 .flat = false,
                                                 .fixedLabelMode = false,
                                                 .fixedLabel = {}});
        toggle->SetShowTooltip(!row);
        toggle->ConfigureThirdState(renderer_, "icons/exclamation.png", "No camera", Nothing, Nothing);
        toggle->SetBadge(renderer_, "icons/equalizer.png");
        toggle->SetShowBadge(kind.badge);
        toggle->SetToggled(kind.toggled);
        if (kind.third) toggle->SetThirdState(true);
        Cell& cell = Add(std::string("Toggle ") + kind.name, row ? kRowWidth + 16 : 144, 136);
        cell.draw = [toggle](SDL_Renderer* renderer, const SDL_Rect& area) {
            toggle->Render(renderer, ButtonCentre(area));
        };
        cell.pose = [toggle, hovered = kind.hovered] { toggle->hovered = hovered; };
        cell.element = toggle;
        releasers_.emplace_back([toggle] { toggle->ReleaseTextures(); });
    }
}

void GallerySheet::AddStateButtons() {
    using Style = UI::ButtonWithState::Style;
    struct Kind {
        const char* name;
        Style style;
        bool hovered;
        bool pressed;
        bool on;
        bool disabled;
    };
    const Kind kinds[] = {
        {"idle", Style::FillAndOutline, false, false, false, false},
        {"hovered", Style::FillAndOutline, true, false, false, false},
        {"pressed", Style::FillAndOutline, true, true, false, false},
        {"on", Style::Fill, false, false, true, false},
        {"disabled", Style::Fill, false, false, false, true},
        {"grown", Style::Grow, true, false, false, false},
    };
    for (const Kind& kind : kinds) {
        auto* button = Make<UI::ButtonWithState>(
            renderer_, UI::ButtonWithState::Options{.width = 56,
                                                    .height = 56,
                                                    .offIconName = "icons/nativeStreamPlay.png",
                                                    .onIconName = "icons/nativeStreamPause.png",
                                                    .offTooltip = "Play",
                                                    .onTooltip = "Pause",
                                                    .onClickWhileOff = Nothing,
                                                    .onClickWhileOn = Nothing,
                                                    .iconPlace = UI::ButtonWithState::IconPlace::Centred,
                                                    .style = kind.style,
                                                    .latched = false});
        button->SetDisabledIcon(renderer_, "icons/nativeStreamFFFrameDisabled.png");
        button->SetOn(kind.on);
        button->SetDisabled(kind.disabled);
        Cell& cell = Add(std::string("State ") + kind.name, 112, 136);
        cell.draw = [button](SDL_Renderer* renderer, const SDL_Rect& area) {
            button->Render(renderer, ButtonCentre(area));
        };
        cell.pose = [button, kind] {
            const SDL_Point inside{button->rect.x, button->rect.y};
            button->OnHover(kind.hovered ? inside : SDL_Point{-1, -1});
            if (kind.pressed) button->OnMouseDown();
        };
        cell.element = button;
        cell.press = [button] { button->OnMouseDown(); };
        cell.release = [button] { button->OnMouseUp(); };
        releasers_.emplace_back([button] { button->ReleaseTextures(); });
    }
}

void GallerySheet::AddTexts() {
    for (const bool hovered : {false, true}) {
        auto* link = Make<UI::TextButton>("Copy invitation", Nothing, 14);
        Cell& cell = Add(hovered ? "Link hovered" : "Link", 144, 136);
        cell.draw = [link](SDL_Renderer* renderer, const SDL_Rect& area) {
            link->Render(renderer, {area.x + 8, area.y + 48});
        };
        cell.pose = [link, hovered] { link->hovered = hovered; };
        cell.element = link;
        releasers_.emplace_back([link] { link->ReleaseTextures(); });
    }
    struct Person {
        const char* caption;
        const char* name;
    };
    for (const Person& person : {Person{"Avatar", "Ada Lovelace"}, Person{"Avatar Cyrillic", "Юлия Борисова"},
                                 Person{"Avatar one name", "Zoë"}, Person{"Avatar nobody", ""}}) {
        const auto avatar = std::make_shared<UI::InitialsAvatar>();
        avatar->SetName(person.name);
        Cell& cell = Add(person.caption, 148, 136);
        cell.draw = [avatar](SDL_Renderer* renderer, const SDL_Rect& area) {
            avatar->Render(renderer, &area, 0.7);
        };
        releasers_.emplace_back([avatar] { avatar->ReleaseTextures(); });
    }
    struct Line {
        const char* caption;
        const char* text;
        int maxWidth;
    };
    for (const Line& line :
         {Line{"Text", "Review with the client", -1}, Line{"Text cut", "Review with the client", 96},
          Line{"Text Greek", "Επισκόπηση έργου", -1}}) {
        texts_.push_back(std::make_unique<UI::TextTexture>());
        UI::TextTexture* text = texts_.back().get();
        text->SetText(line.text);
        text->SetFontName(UI::FontRegular);
        text->SetFontSize(15);
        text->SetMaxWidth(line.maxWidth);
        Add(line.caption, 188, 48).draw = [text](SDL_Renderer* renderer, const SDL_Rect& area) {
            text->RenderAt(renderer, {area.x + 8, area.y + 14});
        };
    }
    auto* divider = Make<UI::Divider>(120, 1);
    Add("Divider", 144, 48).draw = [divider](SDL_Renderer* renderer, const SDL_Rect& area) {
        divider->Render(renderer, CentreOf(area));
    };
    auto* icon = Make<UI::Icon>("icons/drag.png");
    icon->SetWidth(92);
    icon->SetHeight(28);
    Add("Icon", 112, 48).draw = [icon](SDL_Renderer* renderer, const SDL_Rect& area) {
        icon->Render(renderer, {area.x + 10, area.y + 10});
    };
}

void GallerySheet::AddMenus() {
    for (const bool scrolled : {false, true}) {
        auto* menu = Make<UI::Menu>(renderer_, UI::MenuDirection::FromAbove, 260, kMenuGround);
        if (scrolled) {
            menu->SetScrollable(true);
            for (int row = 1; row <= 12; ++row) {
                menu->AddButton("icons/screenshare.png", "Window " + std::to_string(row), Nothing);
            }
        } else {
            menu->AddButton("icons/spotlight.png", "Spotlight", Nothing);
            menu->AddToggleButton(
                {"icons/noaudio.png", "icons/audio-white.png", "Sound off", "Sound on", Nothing, Nothing});
            menu->AddToggleButton(
                {"icons/nocam.png", "icons/cam-white.png", "Video off", "Video On", Nothing, Nothing});
            menu->AddDivider();
            menu->AddButton("icons/pin.png", "Pin to left", Nothing);
        }
        menu->SetVisible(true);
        Cell& cell = Add(scrolled ? "Menu scrolled, 12 rows" : "Menu", 276, 272);
        cell.draw = [menu](SDL_Renderer* renderer, const SDL_Rect& area) {
            menu->Render(renderer, {area.x + 8, area.y + 8});
        };
        cell.element = menu;
        releasers_.emplace_back([menu] { menu->ReleaseTextures(); });
        if (!scrolled) continue;
        cell.pose = [menu] {
            menu->GetScrollbar().ScrollToStart();
            menu->GetScrollbar().Move({0, 60}, true);
        };
        cell.release = [menu] { menu->GetScrollbar().EndDrag(); };
        cell.wheel = [menu](int steps) { menu->GetScrollbar().Move({0, steps}, true); };
    }
}

void GallerySheet::AddScrollbars() {
    struct Kind {
        const char* name;
        bool vertical;
        int width;
        int height;
    };
    for (const Kind& kind :
         {Kind{"Scrollbar", false, 280, 272}, Kind{"Scrollbar vertical", true, 144, 272}}) {
        auto* bar = Make<UI::VideoScrollbar>();
        bar->SetOrientation(kind.vertical);
        bar->SetDrawTrack(true);
        const bool vertical = kind.vertical;
        Cell& cell = Add(kind.name, kind.width, kind.height);
        cell.draw = [bar, vertical](SDL_Renderer* renderer, const SDL_Rect& area) {
            // The bar's track begins at the edge of its own viewport.
            SDL_Rect whole{0, 0, 0, 0};
            SDL_RenderGetViewport(renderer, &whole);
            const SDL_Rect inside{whole.x + area.x, whole.y + area.y, area.w, area.h};
            SDL_RenderSetViewport(renderer, &inside);
            static_cast<void>(bar->UpdateMetrics(vertical ? area.h : area.w, 2 * (vertical ? area.h : area.w),
                                                 32, vertical));
            bar->Render(renderer, {0, 0});
            SDL_RenderSetViewport(renderer, &whole);
        };
        cell.hover = [bar](SDL_Point pointer) {
            if (bar->IsDragging()) {
                bar->Move(pointer, false);
            } else {
                bar->OnHover(pointer);
            }
        };
        cell.press = [bar] { bar->OnClick(); };
        cell.release = [bar] { bar->EndDrag(); };
        cell.wheel = [bar](int steps) { bar->Move({steps, steps}, true); };
        releasers_.emplace_back([bar] { bar->ResetTextures(); });
    }
}

void GallerySheet::AddBars() {
    for (const bool compact : {false, true}) {
        const int width = compact ? 420 : 1248;
        auto* bar = Make<UI::ButtonBar>(renderer_, width, 100, "Dailies, reel 3", true);
        bar->SetAutoHide(false);
        auto* microphone = bar->AddToggleButton({.offIconName = "icons/audio.png",
                                                 .onIconName = "icons/noaudio.png",
                                                 .offLabel = "Mute",
                                                 .onLabel = "Unmute",
                                                 .onToggledOn = Nothing,
                                                 .onToggledOff = Nothing},
                                                UI::BarGroup::Centre);
        auto* camera = bar->AddToggleButton({.offIconName = "icons/cam.png",
                                             .onIconName = "icons/nocam.png",
                                             .offLabel = "Stop video",
                                             .onLabel = "Start video",
                                             .onToggledOn = Nothing,
                                             .onToggledOff = Nothing},
                                            UI::BarGroup::Centre);
        auto* options = bar->AddToggleButton({.offIconName = "icons/options.png",
                                              .onIconName = "icons/options-white.png",
                                              .offLabel = "Chat",
                                              .onLabel = "Chat",
                                              .onToggledOn = Nothing,
                                              .onToggledOff = Nothing},
                                             UI::BarGroup::Left);
        bar->AddToggleButton({.offIconName = "icons/fullscreen.png",
                              .onIconName = "icons/fullscreen-white.png",
                              .offLabel = "Full screen",
                              .onLabel = "Leave full screen",
                              .onToggledOn = Nothing,
                              .onToggledOff = Nothing},
                             UI::BarGroup::Right);
        bar->AddToggleButton({.offIconName = "icons/screenshare.png",
                              .onIconName = "icons/screenshare.png",
                              .offLabel = "Share",
                              .onLabel = "Stop sharing",
                              .onToggledOn = Nothing,
                              .onToggledOff = Nothing,
                              .startToggled = true},
                             UI::BarGroup::Right);
        for (UI::Button* button : std::initializer_list<UI::Button*>{microphone, camera, options}) {
            bar->AddCompactButton(button);
        }
        bar->SetTextButton("Copy invitation", Nothing);
        bar->SetHeight(100);
        Cell& cell = Add(compact ? "Bar compact" : "Bar", width, 132);
        cell.draw = [bar](SDL_Renderer* renderer, const SDL_Rect& area) {
            bar->Render(renderer, {area.x, area.y + 32});
        };
        cell.element = bar;
        releasers_.emplace_back([bar] { bar->ReleaseTextures(); });
    }
}

}  // namespace Corvanta::Gallery
