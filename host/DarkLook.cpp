#include "host/DarkLook.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace Corvanta::Host {
namespace {

constexpr QColor kField(0x1C, 0x1E, 0x23);
constexpr QColor kButton(0x2A, 0x2D, 0x34);
constexpr QColor kText(0xF0, 0xF1, 0xF4);
constexpr QColor kFaintText(0x8A, 0x8E, 0x99);
constexpr QColor kHighlight(0x21, 0x96, 0xF3);

}  // namespace

void ApplyDarkLook() {
    // The one style that takes every colour from the palette.
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette dark;
    dark.setColor(QPalette::Window, kWindowColour);
    dark.setColor(QPalette::WindowText, kText);
    dark.setColor(QPalette::Base, kField);
    dark.setColor(QPalette::AlternateBase, kWindowColour);
    dark.setColor(QPalette::Text, kText);
    dark.setColor(QPalette::PlaceholderText, kFaintText);
    dark.setColor(QPalette::Button, kButton);
    dark.setColor(QPalette::ButtonText, kText);
    dark.setColor(QPalette::BrightText, Qt::white);
    dark.setColor(QPalette::ToolTipBase, kButton);
    dark.setColor(QPalette::ToolTipText, kText);
    dark.setColor(QPalette::Highlight, kHighlight);
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, kHighlight);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        dark.setColor(QPalette::Disabled, role, kFaintText);
    }
    QApplication::setPalette(dark);
}

}  // namespace Corvanta::Host
