#include "host/DrawPalette.h"

#include <QAction>
#include <QButtonGroup>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QStackedWidget>

#include <algorithm>
#include <utility>

#include "host/DarkLook.h"
#include "host/FlowRows.h"
#include "host/HostWindow.h"

namespace Corvanta::Host {
namespace {

// What the room keeps free of pictures for the palette, in the desktop's units.
constexpr int kFreeHeight = 100;
constexpr int kMargin = 7;
constexpr int kSpace = 2;
constexpr int kGroupGap = 13;
constexpr qreal kRadius = 12.0;
constexpr QColor kRim(0x34, 0x37, 0x3F);
// In canvas units; a picture has 1280 to 1920 of them across. Settings beyond stay as they are until moved.
constexpr int kThinnest = 1;
constexpr int kThickest = 80;

struct ToolLook {
    DrawTool tool;
    const char* icon;
    const char* name;
};

constexpr std::array kSimpleTools{
    ToolLook{DrawToolPencil, "icons/draw-pencil.png", "Pencil"},
    ToolLook{DrawToolLine, "icons/draw-line.png", "Line"},
};
constexpr std::array kComplexTools{
    ToolLook{DrawToolArrow, "icons/draw-arrow.png", "Arrow"},
    ToolLook{DrawToolDashedLine, "icons/draw-dashed-line.png", "Dashed line"},
    ToolLook{DrawToolEllipse, "icons/draw-ellipse.png", "Ellipse"},
    ToolLook{DrawToolRectangle, "icons/draw-rectangle.png", "Rectangle"},
};
constexpr std::array kLastTools{
    ToolLook{DrawToolText, "icons/draw-text.png", "Text"},
    ToolLook{DrawToolEraser, "icons/draw-eraser.png", "Eraser"},
};

const ToolLook& LookOfComplex(DrawTool tool) {
    const auto* const found = std::ranges::find(kComplexTools, tool, &ToolLook::tool);
    return found == kComplexTools.end() ? kComplexTools.back() : *found;
}

int ShownWidth(double width) {
    // Not a number counts as the thinnest.
    return width > kThinnest ? static_cast<int>(std::min<double>(width, kThickest)) : kThinnest;
}

}  // namespace

DrawPalette::DrawPalette(HostWindow& window, std::function<void()> onClose)
    : QWidget(&window), window_(window), onClose_(std::move(onClose)) {
    setAccessibleName(QStringLiteral("Drawing tools"));
    BuildTools();
    BuildSettings();
    BuildColors();
    BuildHistory();
    auto* const close = new PaletteButton(AddGroup(), "icons/draw-close.png", QStringLiteral("Close"));
    groups_.back()->layout()->addWidget(close);
    QObject::connect(close, &QToolButton::clicked, this, [this] { onClose_(); });
    SetHistory(false, false);
    hide();
    window_.RoomFrame().installEventFilter(this);
}

QWidget* DrawPalette::AddGroup() {
    auto* const group = new QWidget(this);
    auto* const row = new QHBoxLayout(group);
    row->setContentsMargins({});
    row->setSpacing(kSpace);
    groups_.push_back(group);
    return group;
}

void DrawPalette::BuildTools() {
    QWidget* const group = AddGroup();
    auto* const choice = new QButtonGroup(this);
    const auto add = [&](const ToolLook& look) {
        auto* const button = new PaletteButton(group, look.icon, QString::fromLatin1(look.name));
        button->setCheckable(true);
        choice->addButton(button);
        group->layout()->addWidget(button);
        return button;
    };
    const auto addSimple = [&](const ToolLook& look) {
        PaletteButton* const button = add(look);
        buttons_[look.tool] = button;
        QObject::connect(button, &QToolButton::clicked, this, [this, tool = look.tool] { Choose(tool); });
    };
    std::ranges::for_each(kSimpleTools, addSimple);
    complex_ = add(kComplexTools.back());
    complex_->setPopupMode(QToolButton::MenuButtonPopup);
    auto* const menu = new QMenu(complex_);
    for (const ToolLook& look : kComplexTools) {
        buttons_[look.tool] = complex_;
        QAction* const entry =
            menu->addAction(QIcon(QString::fromLatin1(look.icon)), QString::fromLatin1(look.name));
        QObject::connect(entry, &QAction::triggered, this, [this, tool = look.tool] { Choose(tool); });
    }
    complex_->setMenu(menu);
    QObject::connect(complex_, &QToolButton::clicked, this, [this] { Choose(record_.ComplexTool()); });
    std::ranges::for_each(kLastTools, addSimple);
}

void DrawPalette::BuildSettings() {
    // One place for both, so that what stands beside does not move with the tool.
    settings_ = new QStackedWidget(AddGroup());
    groups_.back()->layout()->addWidget(settings_);
    stroke_ = new QWidget(settings_);
    auto* const row = new QHBoxLayout(stroke_);
    row->setContentsMargins({});
    row->setSpacing(3 * kSpace);
    row->addWidget(new QLabel(QStringLiteral("Width"), stroke_));
    strokeWidth_ = new QSlider(Qt::Horizontal, stroke_);
    strokeWidth_->setFocusPolicy(Qt::TabFocus);
    strokeWidth_->setAccessibleName(QStringLiteral("Width"));
    strokeWidth_->setRange(kThinnest, kThickest);
    row->addWidget(strokeWidth_, 1);
    strokeText_ = new QLabel(stroke_);
    strokeText_->setMinimumWidth(strokeText_->fontMetrics().horizontalAdvance(QStringLiteral("0000")));
    strokeText_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(strokeText_);
    settings_->addWidget(stroke_);
    QObject::connect(strokeWidth_, &QSlider::valueChanged, this, [this](int width) {
        record_.SetStrokeWidth(width);
        RefreshStroke();
        Send();
    });
    font_ = new FontSettings(settings_, record_, [this] { Send(); });
    settings_->addWidget(font_);
}

void DrawPalette::BuildColors() {
    QWidget* const group = AddGroup();
    primary_ = new ColorButton(group, QStringLiteral("Colour"), [this](std::uint32_t color) {
        record_.SetPrimaryColor(color);
        Send();
    });
    secondary_ = new ColorButton(group, QStringLiteral("Fill"), [this](std::uint32_t color) {
        record_.SetSecondaryColor(color);
        Send();
    });
    for (ColorButton* const button : {primary_, secondary_}) group->layout()->addWidget(button);
}

void DrawPalette::BuildHistory() {
    QWidget* const group = AddGroup();
    const auto add = [&](const char* icon, const char* name, const char* shortcut, void (*command)()) {
        auto* const button =
            new PaletteButton(group, icon, QString::fromLatin1(name), QString::fromLatin1(shortcut));
        group->layout()->addWidget(button);
        QObject::connect(button, &QToolButton::clicked, this, command);
        return button;
    };
    undo_ = add("icons/draw-undo.png", "Undo", "Ctrl+Z", SDLinterface_UndoCurrentCanvas);
    redo_ = add("icons/draw-redo.png", "Redo", "Ctrl+Shift+Z", SDLinterface_RedoCurrentCanvas);
    add("icons/draw-clear.png", "Clear", "", SDLinterface_ClearCurrentCanvas);
    AddKey(Qt::CTRL | Qt::Key_Z, *undo_);
    AddKey(Qt::CTRL | Qt::SHIFT | Qt::Key_Z, *redo_);
}

void DrawPalette::AddKey(const QKeySequence& key, PaletteButton& button) {
    // Of this widget, so that it works all over the window, but only while this is shown.
    auto* const shortcut = new QShortcut(key, this);
    QObject::connect(shortcut, &QShortcut::activated, &button, &QToolButton::click);
}

void DrawPalette::TellEntered() {
    if (!std::exchange(isLoaded_, true)) record_.Load();
    Refresh();
    Send();
}

void DrawPalette::Open() {
    record_.SetEnabled(true);
    Send();
    Arrange();
    show();
    raise();
    // Drawing takes the keys of its texts there.
    window_.Room().setFocus();
}

void DrawPalette::Close() {
    if (isAncestorOf(window_.focusWidget())) window_.Room().setFocus();
    hide();
    record_.SetEnabled(false);
    Send();
}

void DrawPalette::SetHistory(bool canUndo, bool canRedo) {
    undo_->setEnabled(canUndo);
    redo_->setEnabled(canRedo);
}

void DrawPalette::Choose(DrawTool tool) {
    record_.Choose(tool);
    Refresh();
    Send();
}

void DrawPalette::Send() {
    record_.Send();
}

void DrawPalette::Refresh() {
    const ToolLook& complex = LookOfComplex(record_.ComplexTool());
    complex_->SetLook(complex.icon, QString::fromLatin1(complex.name));
    const DrawTool tool = record_.Tool();
    if (tool < buttons_.size()) buttons_[tool]->setChecked(true);
    settings_->setCurrentWidget(tool == DrawToolText ? static_cast<QWidget*>(font_) : stroke_);
    RefreshStroke();
    font_->Refresh();
    primary_->SetColor(record_.State().primaryColor);
    secondary_->SetColor(record_.State().secondaryColor);
    primary_->setEnabled(tool != DrawToolEraser);
    secondary_->setEnabled(record_.HasFill());
}

void DrawPalette::RefreshStroke() {
    const double width = record_.StrokeWidth();
    const QSignalBlocker quiet(strokeWidth_);
    strokeWidth_->setValue(ShownWidth(width));
    // Of few digits, whatever the settings hold.
    strokeText_->setText(QString::number(width, 'g', 4));
}

bool DrawPalette::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) Arrange();
    return QWidget::eventFilter(watched, event);
}

void DrawPalette::Arrange() {
    const QRect room = window_.RoomFrame().geometry();
    std::vector<GroupSize> sizes;
    for (const QWidget* const group : groups_) {
        sizes.push_back({group->sizeHint().width(), group->sizeHint().height()});
    }
    const FlowRows rows = FlowInto(sizes, room.width() - 4 * kMargin, kGroupGap);
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        const Place& place = rows.places[i];
        groups_[i]->setGeometry(kMargin + place.x, kMargin + place.y, place.width, place.height);
    }
    QRect place(0, 0, rows.width + 2 * kMargin, rows.height + 2 * kMargin);
    place.moveCenter(room.center());
    place.moveBottom(room.bottom() - std::max(0, (kFreeHeight - place.height()) / 2));
    setGeometry(place);
    // The toolkit draws no transparent corners over the room's window.
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()), kRadius, kRadius);
    setMask(QRegion(shape.toFillPolygon().toPolygon()));
    update();
}

void DrawPalette::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), Qt::black);
    painter.setBrush(kWindowColour);
    painter.setPen(QPen(kRim, 1.0));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    for (std::size_t i = 1; i < groups_.size(); ++i) {
        const QRect before = groups_[i - 1]->geometry();
        const QRect after = groups_[i]->geometry();
        if (after.left() < before.right()) continue;
        const int x = (before.right() + after.left()) / 2;
        painter.drawLine(QPointF(x + 0.5, before.top() + kMargin),
                         QPointF(x + 0.5, before.bottom() - kMargin));
    }
}

}  // namespace Corvanta::Host
