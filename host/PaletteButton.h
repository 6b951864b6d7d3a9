// A button of the drawing palette: an icon on a rounded ground. A click leaves the keyboard where it is, so
// that a text over the video stays the one that is typed into. Main thread only.
#pragma once

#include <QToolButton>

namespace Corvanta::Host {

class PaletteButton final : public QToolButton {
public:
    // icon: a file's path. name: what a screen reader says and, with the shortcut if there is one, the
    // tooltip.
    PaletteButton(QWidget* parent, const char* icon, const QString& name, const QString& shortcut = {});

    void SetLook(const char* icon, const QString& name);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace Corvanta::Host
