// A line of text over the room. It takes no input: what is under it stays in reach. Main thread only.
#pragma once

#include <QLabel>
#include <QTimer>

#include <chrono>

namespace Corvanta::Host {

class HostWindow;

class Notice final : public QLabel {
public:
    enum class Height { Middle, Low };

    // Hidden at first. A child of the window.
    Notice(HostWindow& window, Height height);

    // Until Hide, or the next text.
    void ShowText(const QString& text);
    // For a moment.
    void ShowFor(const QString& text, std::chrono::milliseconds time);
    void Hide();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Arrange();

    QWidget& room_;
    const Height height_;
    QTimer end_;
};

}  // namespace Corvanta::Host
