#include "host/ColorPopup.h"

#include <QColorDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <utility>

#include "host/ColorSwatch.h"

namespace Corvanta::Host {
namespace {

constexpr int kColumns = 6;
constexpr int kSwatchSide = 26;
constexpr int kMargin = 10;
constexpr int kSpace = 6;
constexpr int kOpaque = 255;
constexpr std::uint32_t kAlphaMask = 0xFFU;

struct NamedColor {
    std::uint32_t rgb;  // 0xRRGGBB
    const char* name;
};

constexpr std::array kColors{
    NamedColor{0xE85C41, "Coral"},  NamedColor{0xF44336, "Red"},    NamedColor{0xFF9800, "Orange"},
    NamedColor{0xFFCA28, "Yellow"}, NamedColor{0x66BB6A, "Green"},  NamedColor{0x26A69A, "Teal"},
    NamedColor{0x2196F3, "Blue"},   NamedColor{0x5C6BC0, "Indigo"}, NamedColor{0xAB47BC, "Violet"},
    NamedColor{0xFFFFFF, "White"},  NamedColor{0x8A8E99, "Grey"},   NamedColor{0x000000, "Black"},
};

class Swatch final : public QToolButton {
public:
    Swatch(QWidget* parent, const NamedColor& color)
        : QToolButton(parent), rgba_((color.rgb << 8U) | kAlphaMask) {
        setFixedSize(kSwatchSide, kSwatchSide);
        setAccessibleName(QString::fromLatin1(color.name));
        setToolTip(accessibleName());
    }

    [[nodiscard]] std::uint32_t Rgba() const { return rgba_; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal inset = underMouse() || hasFocus() ? 0.0 : 2.0;
        DrawSwatch(painter, QRectF(rect()).adjusted(inset, inset, -inset, -inset), rgba_);
    }

private:
    const std::uint32_t rgba_;
};

QString PercentOf(int alpha) {
    return QString::number((alpha * 100 + kOpaque / 2) / kOpaque) + QStringLiteral(" %");
}

}  // namespace

ColorPopup::ColorPopup(QWidget* parent, const QString& title, std::uint32_t color,
                       std::function<void(std::uint32_t)> onColor)
    : QFrame(parent, Qt::Popup), title_(title), color_(color), onColor_(std::move(onColor)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    grid->setSpacing(kSpace);
    int place = 0;
    for (const NamedColor& named : kColors) {
        auto* const swatch = new Swatch(this, named);
        grid->addWidget(swatch, place / kColumns, place % kColumns);
        ++place;
        QObject::connect(swatch, &QToolButton::clicked, this, [this, swatch] {
            Choose((swatch->Rgba() & ~kAlphaMask) | (color_ & kAlphaMask));
            close();
        });
    }
    const int below = place / kColumns;
    grid->addWidget(new QLabel(QStringLiteral("Opacity"), this), below, 0, 1, 2);
    opacity_ = new QSlider(Qt::Horizontal, this);
    opacity_->setAccessibleName(QStringLiteral("Opacity"));
    opacity_->setRange(0, kOpaque);
    opacity_->setPageStep(kOpaque / 10);
    opacity_->setValue(static_cast<int>(color_ & kAlphaMask));
    grid->addWidget(opacity_, below, 2, 1, 3);
    percent_ = new QLabel(PercentOf(opacity_->value()), this);
    percent_->setMinimumWidth(percent_->fontMetrics().horizontalAdvance(PercentOf(kOpaque)));
    grid->addWidget(percent_, below, 5);
    QObject::connect(opacity_, &QSlider::valueChanged, this, [this](int alpha) {
        percent_->setText(PercentOf(alpha));
        Choose((color_ & ~kAlphaMask) | static_cast<std::uint32_t>(alpha));
    });
    auto* const more = new QPushButton(QStringLiteral("More colours..."), this);
    grid->addWidget(more, below + 1, 0, 1, kColumns);
    QObject::connect(more, &QPushButton::clicked, this, [this] { OpenDialog(); });
}

void ColorPopup::OpenAbove(const QWidget& button) {
    adjustSize();
    QRect place(QPoint(), size());
    place.moveBottom(button.mapToGlobal(QPoint(0, 0)).y() - kSpace);
    place.moveLeft(button.mapToGlobal(QPoint(button.width() / 2, 0)).x() - width() / 2);
    const QRect screen = button.screen()->availableGeometry();
    place.moveLeft(
        std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() - width())));
    place.moveTop(std::max(place.top(), screen.top()));
    setGeometry(place);
    show();
}

void ColorPopup::Choose(std::uint32_t color) {
    color_ = color;
    onColor_(color);
}

void ColorPopup::OpenDialog() {
    // Of the window: this popup goes as soon as the dialog comes. It is the button that hears the choice.
    auto* const dialog = new QColorDialog(ToQColor(color_), parentWidget()->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::DontUseNativeDialog);
    dialog->setWindowTitle(title_);
    QObject::connect(dialog, &QColorDialog::colorSelected, parentWidget(),
                     [onColor = onColor_](const QColor& color) { onColor(FromQColor(color)); });
    close();
    dialog->open();
}

}  // namespace Corvanta::Host
