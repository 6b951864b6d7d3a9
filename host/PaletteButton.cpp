#include "host/PaletteButton.h"

#include <QPainter>
#include <QPalette>
#include <QStyleOptionToolButton>

#include "host/PaletteLook.h"

namespace Corvanta::Host {
namespace {

constexpr int kIcon = 20;
constexpr int kMenuPart = 14;

}  // namespace

PaletteButton::PaletteButton(QWidget* parent, const char* icon, const QString& name, const QString& shortcut)
    : QToolButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setIconSize({kIcon, kIcon});
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    SetLook(icon, name);
    if (!shortcut.isEmpty()) setToolTip(name + QStringLiteral(" (") + shortcut + QLatin1Char(')'));
}

void PaletteButton::SetLook(const char* icon, const QString& name) {
    setIcon(QIcon(QString::fromUtf8(icon)));
    setAccessibleName(name);
    setToolTip(name);
}

QSize PaletteButton::sizeHint() const {
    return {popupMode() == MenuButtonPopup ? kPaletteSide + kMenuPart : kPaletteSide, kPaletteSide};
}

void PaletteButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QPalette& colors = palette();
    if (isChecked()) {
        painter.setBrush(colors.color(QPalette::Highlight));
        painter.drawRoundedRect(rect(), kPaletteRadius, kPaletteRadius);
    } else if (isEnabled() && (isDown() || underMouse())) {
        const QColor ground = colors.color(QPalette::Button);
        painter.setBrush(isDown() ? ground : ground.lighter(kPaletteHoverLighter));
        painter.drawRoundedRect(rect(), kPaletteRadius, kPaletteRadius);
    }
    QRect place(0, 0, kIcon, kIcon);
    place.moveCenter({kPaletteSide / 2, height() / 2});
    icon().paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    if (popupMode() == MenuButtonPopup) {
        const QPointF middle(kPaletteSide + kMenuPart / 2.0 - 3.0, height() / 2.0 + 1.0);
        painter.setBrush(
            colors.color(isEnabled() ? QPalette::Normal : QPalette::Disabled, QPalette::ButtonText));
        painter.drawPolygon(
            QPolygonF({middle + QPointF(-4, -2.5), middle + QPointF(4, -2.5), middle + QPointF(0, 2.5)}));
    }
    if (hasFocus()) {
        painter.setPen(QPen(colors.color(QPalette::ButtonText), 1.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), kPaletteRadius - 1.5,
                                kPaletteRadius - 1.5);
    }
}

}  // namespace Corvanta::Host
