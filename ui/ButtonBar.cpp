#include "ui/ButtonBar.h"

#include <algorithm>
#include <utility>

#include "ui/Arithmetic.h"
#include "ui/Clock.h"
#include "ui/ControlColors.h"
#include "ui/FontManager.h"

namespace Corvanta::UI {
namespace {

constexpr int kTitleFontSize = 14;
constexpr size_t kShortTitleBytes = 3;

}  // namespace

ButtonBar::ButtonBar(SDL_Renderer* renderer, int barWidth, int barHeight, const std::string& title,
                     bool titleCentred)
    : titleText_(title), titleCentred_(titleCentred), renderer_(renderer) {
    width = barWidth;
    height = barHeight;
    title_.SetText(titleText_);
    title_.SetFontSize(kTitleFontSize);
    title_.SetColor(kWhite);
    title_.SetFontName(FontBolder);
    if (titleText_.size() > kShortTitleBytes) title_.SetExpandOnHover(true);
}

template <typename Call>
void ButtonBar::ForEachGrouped(Call call) const {
    for (const Group* group : {&leftButtons_, &centreButtons_, &rightButtons_}) {
        for (Button* button : *group) call(*button);
    }
}

BarCounts ButtonBar::Counts() const {
    return {static_cast<int>(leftButtons_.size()), static_cast<int>(centreButtons_.size()),
            static_cast<int>(rightButtons_.size())};
}

ButtonBar::Group* ButtonBar::GroupOf(BarGroup group) {
    switch (group) {
        case BarGroup::Left: return &leftButtons_;
        case BarGroup::Centre: return &centreButtons_;
        case BarGroup::Right: return &rightButtons_;
    }
    return nullptr;
}

Button* ButtonBar::Adopt(std::unique_ptr<Button> button, BarGroup group) {
    button->SetTooltipAllowed(tooltipsAllowed_);
    ownButtons_.push_back(std::move(button));
    if (Group* members = GroupOf(group)) members->push_back(ownButtons_.back().get());
    return ownButtons_.back().get();
}

Button* ButtonBar::AddButton(const std::string& iconName, const std::string& label,
                             std::function<void()> onClick, BarGroup group, ButtonStyle style,
                             const std::string& tooltip) {
    const int side = Truncate(height * 0.8);
    return Adopt(std::make_unique<Button>(renderer_, Button::Options{.width = side,
                                                                     .height = side,
                                                                     .iconName = iconName,
                                                                     .label = label,
                                                                     .onClick = std::move(onClick),
                                                                     .labelPlace = LabelPlace::Below,
                                                                     .style = style,
                                                                     .tooltip = tooltip,
                                                                     .hoverIconName = {}}),
                 group);
}

ToggleButton* ButtonBar::AddToggleButton(ToggleOptions options, BarGroup group) {
    const int side = Truncate(height / 3.0);
    auto button = std::make_unique<ToggleButton>(
        renderer_, ToggleButton::Options{.width = side,
                                         .height = side,
                                         .offIconName = std::move(options.offIconName),
                                         .onIconName = std::move(options.onIconName),
                                         .offLabel = std::move(options.offLabel),
                                         .onLabel = std::move(options.onLabel),
                                         .onToggledOn = std::move(options.onToggledOn),
                                         .onToggledOff = std::move(options.onToggledOff),
                                         .showLabel = options.showLabel,
                                         .labelPlace = LabelPlace::Below,
                                         .flat = false,
                                         .fixedLabelMode = options.fixedLabelMode,
                                         .fixedLabel = std::move(options.fixedLabel)});
    ToggleButton* added = button.get();
    added->SetShowTooltip(true);
    Adopt(std::move(button), group);
    if (options.startToggled) added->OnClick();
    return added;
}

void ButtonBar::AddCompactButton(Button* button) {
    if (button == nullptr) return;
    button->SetTooltipAllowed(tooltipsAllowed_);
    compactButtons_.push_back(button);
}

TextButton* ButtonBar::SetTextButton(const std::string& text, std::function<void()> onClick) {
    textButton_ = std::make_unique<TextButton>(text, std::move(onClick), kTitleFontSize);
    return textButton_.get();
}

void ButtonBar::ClickCentreButton(const std::string& label) {
    const auto found = std::find_if(centreButtons_.begin(), centreButtons_.end(),
                                    [&label](const Button* button) { return button->MatchesLabel(label); });
    if (found != centreButtons_.end()) (*found)->OnClick();
}

void ButtonBar::SetAutoHide(bool on) {
    autoHide_ = on;
    neverHide_ = !on;
}

void ButtonBar::SetAlwaysVisible(bool always, Remember remember) {
    if (remember == Remember::Yes) rememberedAlwaysVisible_ = always;
    SetAutoHide(!always);
    SetVisible(always);
}

void ButtonBar::KeepAlive() {
    if (slide_.IsHiding()) {
        slide_.RestartCountdown(NowNs());
    } else if (!visible && !hidden_) {
        SetVisible(true);
    }
}

void ButtonBar::SetTitle(const std::string& title) {
    titleText_ = title;
    title_.SetText(title);
    if (title.empty()) title_.ReleaseTexture();
}

void ButtonBar::SetVisible(bool value) {
    if (!autoHide_) {
        visible = value || (neverHide_ && !hidden_);
        slide_.Stop();
    } else if (value) {
        visible = true;
        slide_.StartShowing(NowNs());
    } else if (hidden_) {
        visible = false;
        slide_.Stop();
    } else {
        slide_.StartHiding(NowNs());
    }
}

void ButtonBar::SetHeight(int value) {
    height = value;
    buttonSize_ = SDL_Point{Truncate(height / 1.8), Truncate(height / 1.9)};
    ForEachGrouped([this](Button& button) { ApplyButtonSize(button); });
    if (recordButton_ != nullptr) ApplyButtonSize(*recordButton_);
    const int fontSize = Truncate(static_cast<float>(height) * titleSizeRatio_);
    title_.SetFontSize(fontSize);
    if (textButton_ != nullptr) textButton_->SetFontSize(fontSize);
}

void ButtonBar::ApplyButtonSize(GraphicElementInterface& button) const {
    if (!buttonSize_) return;
    button.SetWidth(buttonSize_->x);
    button.SetHeight(buttonSize_->y);
}

void ButtonBar::UpdateRightGroup(const std::map<ToggleButton*, bool>& wanted) {
    // Takes out first, then appends in the order in which the buttons were made: an order by address would
    // change from run to run.
    for (const auto& [button, isWanted] : wanted) {
        if (!isWanted) std::erase(rightButtons_, static_cast<Button*>(button));
    }
    const auto appendIfMissing = [this](Button* button) {
        if (std::find(rightButtons_.begin(), rightButtons_.end(), button) == rightButtons_.end()) {
            button->SetTooltipAllowed(tooltipsAllowed_);
            // The bar may have changed its height while the button was out of it.
            ApplyButtonSize(*button);
            rightButtons_.push_back(button);
        }
    };
    for (const auto& own : ownButtons_) {
        const auto found = wanted.find(dynamic_cast<ToggleButton*>(own.get()));
        if (found != wanted.end() && found->first != nullptr && found->second) appendIfMissing(own.get());
    }
    for (const auto& [button, isWanted] : wanted) {
        if (isWanted && button != nullptr) appendIfMissing(button);
    }
}

void ButtonBar::SetTooltipsAllowed(bool allowed) {
    tooltipsAllowed_ = allowed;
    for (const auto& button : ownButtons_) button->SetTooltipAllowed(allowed);
    for (Button* button : compactButtons_) button->SetTooltipAllowed(allowed);
    ForEachGrouped([allowed](Button& button) { button.SetTooltipAllowed(allowed); });
}

void ButtonBar::ReleaseTextures() {
    for (const auto& button : ownButtons_) button->ReleaseTextures();
    for (Button* button : compactButtons_) button->ReleaseTextures();
    ForEachGrouped([](Button& button) { button.ReleaseTextures(); });
    title_.ReleaseTexture();
    if (textButton_ != nullptr) textButton_->ReleaseTextures();
}

void ButtonBar::UpdateSlide(SDL_Point topLeft) {
    if (!layoutPending_) return;
    rect = {topLeft.x, topLeft.y, width, height};
    layoutPending_ = false;
    if (!visible) return;
    bool gone = false;
    rect.y = slide_.Advance(topLeft.y, offset_, height, NowNs(), gone);
    if (gone) visible = false;
}

void ButtonBar::Render(SDL_Renderer* renderer, SDL_Point topLeft) {
    UpdateSlide(topLeft);
    if (visible) RenderVisible(renderer);
    // Hit testing of the bar itself sees its rest position, so that a hidden bar can be reached.
    rect = {topLeft.x, topLeft.y, width, height};
    layoutPending_ = true;
}

void ButtonBar::RenderVisible(SDL_Renderer* renderer) {
    FillRect(renderer, rect, background_);
    ClearDrawColor(renderer);
    const BarCounts counts = Counts();
    BarMetrics metrics = ComputeBarMetrics(rect, width, height, counts);
    if (metrics.titleSpace > 0) {
        title_.SetMaxWidth(metrics.titleSpace);
        title_.Rebuild(renderer);
    }
    const bool cut = title_.GetWidth() >= metrics.titleSpace && titleText_.size() > kShortTitleBytes;
    const int titleWidth = cut ? metrics.titleSpace : title_.GetWidth();
    const int textWidth = std::max(titleWidth, textButton_ != nullptr ? textButton_->GetTextWidth() : 0);
    const bool fits =
        FullBarFits(metrics, width, counts, textWidth, RecordWidth()) &&
        PartGroups(metrics, counts, RightGroupEnd(metrics), std::max(counts.right - 1, 0), textWidth);
    compact_ = !fits;
    if (compact_) {
        RenderCompact(renderer, metrics);
    } else {
        RenderFull(renderer, metrics, titleWidth);
    }
}

void ButtonBar::RenderFull(SDL_Renderer* renderer, const BarMetrics& metrics, int titleWidth) {
    SDL_Point centre{metrics.centreX, metrics.middleY};
    for (Button* button : centreButtons_) {
        button->Render(renderer, centre);
        centre.x += CentreStep(metrics);
    }
    centre.x = FirstLeftX(metrics);
    for (Button* button : leftButtons_) {
        button->Render(renderer, centre);
        centre.x += LeftStep(metrics);
    }
    RenderTitle(renderer, metrics, titleWidth);
    RenderRight(renderer, metrics);
}

void ButtonBar::RenderTitle(SDL_Renderer* renderer, const BarMetrics& metrics, int titleWidth) {
    const int spaceX = TitleSpaceX(metrics, static_cast<int>(leftButtons_.size()));
    const int titleHeight = title_.GetHeight();
    const int titleY = metrics.middleY - (titleCentred_ ? titleHeight / 2 : titleHeight);
    if (metrics.titleSpace > 0) {
        title_.RenderAt(renderer, {spaceX + (metrics.titleSpace - titleWidth) / 2, titleY});
    }
    if (textButton_ != nullptr) {
        textButton_->Render(renderer,
                            {spaceX + (metrics.titleSpace - textButton_->rect.w) / 2, titleY + titleHeight});
    }
}

void ButtonBar::RenderRight(SDL_Renderer* renderer, const BarMetrics& metrics) {
    const int y = metrics.middleY;
    if (!rightButtons_.empty()) rightButtons_.front()->Render(renderer, {FirstRightX(metrics, width), y});
    if (recordButton_ != nullptr) recordButton_->Render(renderer, {RecordX(metrics, width), y});
    int x = SecondRightX(metrics, width, recordButton_ != nullptr, RecordWidth());
    for (size_t index = 1; index < rightButtons_.size(); ++index) {
        if (index > 1) x -= RightStep(metrics, index);
        rightButtons_[index]->Render(renderer, {x, y});
    }
}

int ButtonBar::RightStep(const BarMetrics& metrics, size_t index) const {
    return rightButtons_[index - 1]->width / 2 + rightButtons_[index]->width / 2 + metrics.rightGap;
}

int ButtonBar::RightGroupEnd(const BarMetrics& metrics) const {
    if (rightButtons_.empty()) return width;
    int x = rightButtons_.size() == 1 ? FirstRightX(metrics, width)
                                      : SecondRightX(metrics, width, recordButton_ != nullptr, RecordWidth());
    for (size_t index = 2; index < rightButtons_.size(); ++index) x -= RightStep(metrics, index);
    return x - rightButtons_.back()->width / 2;
}

void ButtonBar::RenderCompact(SDL_Renderer* renderer, const BarMetrics& metrics) {
    SDL_Point centre{FirstCompactX(metrics, rect, width, static_cast<int>(compactButtons_.size())),
                     metrics.middleY};
    for (Button* button : compactButtons_) {
        button->Render(renderer, centre);
        centre.x += CentreStep(metrics);
    }
}

void ButtonBar::OnHover(const SDL_Point& mouse) {
    hovered = Hits(mouse);
    if (visible && compact_) {
        for (Button* button : compactButtons_) button->OnHover(mouse);
    } else if (visible) {
        ForEachGrouped([&mouse](Button& button) { button.OnHover(mouse); });
        if (textButton_ != nullptr) textButton_->OnHover(mouse);
        title_.OnHover(mouse);
        if (recordButton_ != nullptr) recordButton_->OnHover(mouse);
    }
    if (hovered && !visible && !hidden_) SetVisible(true);
    if (hovered && visible) {
        slide_.CancelHiding();
    } else if (visible && !slide_.IsHiding() && !pinned_) {
        SetVisible(false);
    }
}

GraphicElementInterface* ButtonBar::FindHovered() const {
    GraphicElementInterface* found = nullptr;
    const auto take = [&found](GraphicElementInterface* element) {
        if (found == nullptr && element != nullptr && element->hovered) found = element;
    };
    if (compact_) {
        for (Button* button : compactButtons_) take(button);
        return found;
    }
    ForEachGrouped([&take](Button& button) { take(&button); });
    take(recordButton_.get());
    take(textButton_.get());
    return found;
}

bool ButtonBar::OnClick() {
    if (!hovered) return false;
    GraphicElementInterface* target = FindHovered();
    if (target == nullptr) return false;
    // Nothing of the bar is touched afterwards: the click may have destroyed it.
    target->OnClick();
    return true;
}

}  // namespace Corvanta::UI
