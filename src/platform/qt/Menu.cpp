#include "platform/qt/MenuImpl.h"

#include "platform/qt/EditMenu.h"

#include <QApplication>
#include <QKeySequence>

#include <cassert>
#include <utility>

namespace platform {
namespace {

QAction* MakeItem(const MenuRow& row, EventGate& gate, const PasteFile& pasteFile, QMenu& menu)
{
    if (row.text == "-") return menu.addSeparator();
    auto* const item = menu.addAction(QString::fromUtf8(row.text));
    if (row.shortcut != 0) item->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(row.shortcut)));
    item->setCheckable(row.action == MenuAction::CheckHandler);
    item->setMenuRole(QAction::NoRole); // a role guessed from the text would move the item elsewhere on a Mac
    switch (row.action) {
    case MenuAction::Handler:
    case MenuAction::CheckHandler: break; // MenuItem connects these
    case MenuAction::Quit: QObject::connect(item, &QAction::triggered, &QApplication::closeAllWindows); break;
    case MenuAction::Paste:
        item->setShortcuts(QKeySequence::Paste); // all that the desktop has
        item->setAutoRepeat(false);
        [[fallthrough]];
    default: ConnectEditItem(*item, row.action, gate, pasteFile, menu);
    }
    return item;
}

} // namespace

MenuBar::MenuBar(EventGate& gate, std::span<const MenuRow> rows)
    : impl_(std::make_unique<Impl>(Impl{.gate = gate, .widget = new QMenuBar}))
{
    QMenu* menu = nullptr;
    for (const auto& row : rows) {
        if (row.level == 0) {
            menu = impl_->widget->addMenu(QString::fromUtf8(row.text));
        } else {
            assert(menu != nullptr);
            MakeItem(row, gate, impl_->pasteFile, *menu)->setObjectName(QString::fromUtf8(row.name));
        }
    }
}

MenuBar::~MenuBar()
{
    delete impl_->widget;
}

struct MenuItem::Impl {
    EventGate& gate;
    QAction& action;
    bool hasCheckMark = false;
};

MenuItem::MenuItem(MenuBar& bar, std::string_view name)
{
    auto* const action = bar.impl_->widget->findChild<QAction*>(QString::fromUtf8(name));
    assert(action != nullptr);
    impl_ = std::make_unique<Impl>(Impl{.gate = bar.impl_->gate, .action = *action});
}

MenuItem::~MenuItem() = default;

bool MenuItem::HasCheckMark() const
{
    return impl_->hasCheckMark;
}

void MenuItem::SetHasCheckMark(bool on)
{
    impl_->hasCheckMark = on;
    impl_->action.setChecked(on);
}

void MenuItem::SetHandler(std::function<bool()> handler)
{
    QObject::connect(&impl_->action, &QAction::triggered, [this, handler = std::move(handler)] {
        impl_->action.setChecked(impl_->hasCheckMark); // the toolkit has toggled it already
        impl_->gate.Run([&] { handler(); });
    });
}

} // namespace platform
