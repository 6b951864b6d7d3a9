#include "connectivity/ThumbnailConnectivityPanel.h"

#include <functional>
#include <utility>

#include "connectivity/ConnectionStats.h"
#include "connectivity/ConnectivityExchange.h"
#include "connectivity/ConnectivityText.h"
#include "connectivity/PanelLayout.h"
#include "connectivity/PanelRows.h"
#include "platform/Diagnostics.h"
#include "ui/Button.h"
#include "ui/Clock.h"
#include "ui/Icon.h"

namespace Corvanta::Connectivity {
namespace {

constexpr int64_t kNsPerMs = 1'000'000;
constexpr int64_t kRefreshMs = 3001;
constexpr int64_t kSendMs = 5001;
constexpr int kFirstCloseSize = 10;
constexpr double kBitsPerByte = 8.0;

[[nodiscard]] int64_t ElapsedMs(int64_t sinceNs, int64_t nowNs) {
    return (nowNs - sinceNs) / kNsPerMs;
}

}  // namespace

class ThumbnailConnectivityPanel::Content {
public:
    Content(bool local, ConnectivityExchange::Identity identity, std::function<void()> onClose)
        : isLocal(local),
          stats(std::make_shared<ConnectionStats>()),
          exchange(std::move(identity), stats),
          closeButton(nullptr, {.width = kFirstCloseSize,
                                .height = kFirstCloseSize,
                                .iconName = "icons/thumbnail-panel-close.png",
                                .label = {},
                                .onClick = std::move(onClose),
                                .labelPlace = UI::LabelPlace::Beside,
                                .style = UI::ButtonStyle::FillAndOutline,
                                .tooltip = {},
                                .hoverIconName = {}}),
          lastRefreshNs(UI::NowNs()),
          lastSendNs(lastRefreshNs) {
        scrollbar.SetOrientation(true);
        closeButton.SetFitHeight(true);
        if (!isLocal) return;
        SetText(Fact::ConnectionType, Diagnostics_GetConnectionType());
        SetText(Fact::CpuType, Diagnostics_GetCPUType());
        SetText(Fact::SystemVersion, Diagnostics_GetPlatformVersion());
        SetText(Fact::OperatingSystem, Diagnostics_GetOperatingSystem());
        exchange.Send();
    }

    void SetText(Fact fact, const std::string& text) { rows.Set(fact, BoundText(text)); }

    // The media engine's thread only stores its figures; texts belong to this one.
    void ShowNewStats() {
        const ConnectionFigures figures = stats->Get();
        if (figures.sample == shownSample) return;
        shownSample = figures.sample;
        ShowRates(figures.downloadBytes, figures.uploadBytes);
        ShowTimes(figures.roundTripMs, figures.jitterMs);
    }

    void Refresh() {
        if (isLocal) {
            SetText(Fact::CpuAppUsage, Diagnostics_GetCPUAppUsage());
            SetText(Fact::CpuSystemUsage, Diagnostics_GetCPUSystemUsage());
            SetText(Fact::ConnectionType, Diagnostics_GetConnectionType());
            return;
        }
        Model::API::ConnectivityLogResponse report;
        switch (exchange.Receive(report)) {
            case ConnectivityExchange::Answer::None: break;
            case ConnectivityExchange::Answer::Failed: rows.SetAllUnknown(); break;
            case ConnectivityExchange::Answer::Report: Show(report); break;
        }
    }

    const bool isLocal;
    const std::shared_ptr<ConnectionStats> stats;
    ConnectivityExchange exchange;
    UI::VideoScrollbar scrollbar;
    UI::Icon background{"icons/thumbnail-background.png"};
    UI::Button closeButton;
    PanelRows rows;
    int64_t lastRefreshNs;
    int64_t lastSendNs;

private:
    // Bytes a second.
    void ShowRates(double download, double upload) {
        rows.Set(Fact::DownloadSpeed, FormatRate(download * kBitsPerByte));
        rows.Set(Fact::UploadSpeed, FormatRate(upload * kBitsPerByte));
    }

    void ShowTimes(int32_t roundTripMs, int32_t jitterMs) {
        rows.Set(Fact::RoundTripTime, FormatMilliseconds(roundTripMs));
        rows.Set(Fact::Jitter, FormatMilliseconds(jitterMs));
    }

    void Show(const Model::API::ConnectivityLogResponse& report) {
        ShowRates(report.download, report.upload);
        SetText(Fact::ConnectionType, report.connectionType);
        SetText(Fact::SystemVersion, report.platformVersion);
        SetText(Fact::OperatingSystem, report.operatingSystem);
        SetText(Fact::CpuType, report.cpuType);
        SetText(Fact::CpuAppUsage, report.cpuAppUsage);
        SetText(Fact::CpuSystemUsage, report.cpuSystemUsage);
        ShowTimes(report.roundTrip, report.jitter);
    }

    uint64_t shownSample = 0;
};

ThumbnailConnectivityPanel::ThumbnailConnectivityPanel(bool isLocal, std::string streamId,
                                                       std::string sessionName, std::string profileId) {
    content_ = std::make_unique<Content>(isLocal,
                                         ConnectivityExchange::Identity{.sessionName = std::move(sessionName),
                                                                        .profileId = std::move(profileId),
                                                                        .streamId = std::move(streamId)},
                                         [this] { SetVisible(false); });
    visible = false;
}

ThumbnailConnectivityPanel::~ThumbnailConnectivityPanel() = default;

void ThumbnailConnectivityPanel::Update(SDL_Renderer* renderer, const SDL_Rect* area, int fontSize) {
    if (area == nullptr) return;
    rect.w = area->w;
    rect.h = area->h;
    content_->rows.SetFontSize(fontSize);
    if (!visible && !content_->isLocal) return;
    const int64_t nowNs = UI::NowNs();
    if (visible) {
        content_->ShowNewStats();
        if (ElapsedMs(content_->lastRefreshNs, nowNs) >= kRefreshMs) {
            content_->Refresh();
            content_->lastRefreshNs = nowNs;
        }
        Render(renderer, {area->x, area->y});
    }
    if (content_->isLocal && ElapsedMs(content_->lastSendNs, nowNs) >= kSendMs) {
        content_->exchange.Send();
        content_->lastSendNs = nowNs;
    }
}

void ThumbnailConnectivityPanel::Render(SDL_Renderer* renderer, SDL_Point topLeft) {
    rect.x = topLeft.x;
    rect.y = topLeft.y;
    if (rect.w <= 0 || rect.h <= 0) return;
    Content& content = *content_;
    const PanelLayout layout = LayOutPanel(rect);
    content.background.SetWidth(rect.w);
    content.background.SetHeight(rect.h);
    content.background.Render(renderer, topLeft);
    content.closeButton.SetWidth(layout.closeSize);
    content.closeButton.SetHeight(layout.closeSize);
    content.closeButton.Render(renderer, layout.closeCentre);

    const int rowCount = content.rows.Count();
    if (rowCount == 0) {
        content.scrollbar.SetVisible(false);
        return;
    }
    UI::VideoScrollbar& scrollbar = content.scrollbar;
    scrollbar.SetTrackStart(layout.listTop);
    const int offset = scrollbar.UpdateMetrics(layout.listBottom - layout.listTop,
                                               ContentHeight(layout, content.rows.LabelHeight(), rowCount),
                                               rect.w - scrollbar.width + rect.x, true);
    content.rows.Render(renderer, rect, layout, offset, scrollbar.visible ? scrollbar.width : 0);
    scrollbar.Render(renderer, topLeft);
}

bool ThumbnailConnectivityPanel::OnClick() {
    return visible && hovered && content_->closeButton.hovered && content_->closeButton.OnClick();
}

void ThumbnailConnectivityPanel::OnHover(const SDL_Point& mouse) {
    content_->closeButton.OnHover(mouse);
    content_->rows.OnHover(mouse);
    if (content_->scrollbar.IsDragging()) {
        content_->scrollbar.Move(mouse, false);
    } else {
        content_->scrollbar.OnHover(mouse);
    }
    hovered = Hits(mouse) || content_->closeButton.hovered;
}

bool ThumbnailConnectivityPanel::ScrollbarClick() {
    UI::VideoScrollbar& scrollbar = content_->scrollbar;
    return visible && scrollbar.visible && scrollbar.hovered && scrollbar.OnClick();
}

UI::VideoScrollbar& ThumbnailConnectivityPanel::GetScrollbar() {
    return content_->scrollbar;
}

void ThumbnailConnectivityPanel::ReleaseTextures() {
    content_->background.SetTexture(nullptr);
    content_->closeButton.SetLoaded(false);
    content_->closeButton.ReleaseLabelTexture();
    content_->rows.ReleaseTextures();
    content_->scrollbar.ResetTextures();
}

std::shared_ptr<ConnectionStats> ThumbnailConnectivityPanel::GetConnectionStats() const {
    return content_->stats;
}

bool ThumbnailConnectivityPanel::IsBusy() const {
    return content_->exchange.IsBusy();
}

}  // namespace Corvanta::Connectivity
