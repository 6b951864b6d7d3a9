#include "host/DetachedWindow.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QMenu>
#include <QString>

#include <array>
#include <cstddef>
#include <utility>

namespace Corvanta::Host {
namespace {

// The library's index of the detached wall's window.
constexpr int kWallWindow = 1;
constexpr std::array<const char*, kWallLayoutCount> kMenuTexts{"&Strip\t1", "&Column\t2", "&Grid\t3"};

}  // namespace

DetachedWindow::DetachedWindow(WallLayout layout, Wishes wishes)
    : SideWindow(WallSizeOf(layout).width, WallSizeOf(layout).height, wishes.attach),
      input_(Surface(), kWallWindow),
      layout_(layout),
      wishes_(std::move(wishes)) {}

void DetachedWindow::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);  // goes when it is closed
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto* const layouts = new QActionGroup(menu);
    for (int number = 0; number < kWallLayoutCount; ++number) {
        const auto layout = static_cast<WallLayout>(number);
        QAction* const action =
            menu->addAction(QString::fromUtf8(kMenuTexts.at(static_cast<size_t>(number))));
        action->setCheckable(true);
        action->setChecked(layout == layout_);
        action->setActionGroup(layouts);
        QObject::connect(action, &QAction::triggered, this, [this, layout] { wishes_.setLayout(layout); });
    }
    menu->addSeparator();
    QAction* const attach = menu->addAction(QStringLiteral("&Back into the room\tF8"));
    QObject::connect(attach, &QAction::triggered, this, [this] { wishes_.attach(); });
    menu->popup(event->globalPos());
}

}  // namespace Corvanta::Host
