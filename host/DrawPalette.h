// The drawing tools at the lower edge of the room, where its own bar makes room for them: tools, their
// widths, colours and font, undo, redo and clear. It keeps the tool's record and hands the library each
// change. Main thread only.
#pragma once

#include <QWidget>

#include <array>
#include <functional>
#include <vector>

#include "host/ColorButton.h"
#include "host/DrawToolRecord.h"
#include "host/FontSettings.h"
#include "host/PaletteButton.h"

class QLabel;
class QSlider;
class QStackedWidget;

namespace Corvanta::Host {

class HostWindow;

class DrawPalette final : public QWidget {
public:
    // A child of the window, above its room. onClose: the person closes it by its own button.
    DrawPalette(HostWindow& window, std::function<void()> onClose);

    // A room was entered: takes the settings of the last time and hands them over, since a room knows of
    // none.
    void TellEntered();
    // Drawing goes on and off with the palette.
    void Open();
    void Close();

    // What can be undone and redone on the video that is shown.
    void SetHistory(bool canUndo, bool canRedo);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* AddGroup();
    void BuildTools();
    void BuildSettings();
    void BuildColors();
    void BuildHistory();
    void AddKey(const QKeySequence& key, PaletteButton& button);

    void Choose(DrawTool tool);
    // Hands the record over.
    void Send();
    // Shows what the record says.
    void Refresh();
    void RefreshStroke();
    void Arrange();

    HostWindow& window_;
    const std::function<void()> onClose_;
    DrawToolRecord record_;
    bool isLoaded_ = false;

    // Children of this widget.
    std::vector<QWidget*> groups_;
    std::array<PaletteButton*, 8> buttons_{};  // by DrawTool; those that share a button name the same one
    PaletteButton* complex_ = nullptr;
    QStackedWidget* settings_ = nullptr;
    QWidget* stroke_ = nullptr;
    QSlider* strokeWidth_ = nullptr;
    QLabel* strokeText_ = nullptr;
    FontSettings* font_ = nullptr;
    ColorButton* primary_ = nullptr;
    ColorButton* secondary_ = nullptr;
    PaletteButton* undo_ = nullptr;
    PaletteButton* redo_ = nullptr;
};

}  // namespace Corvanta::Host
