// Menu.h: a menu bar made from a table, and its items.
#pragma once

#include "platform/EventGate.h"

#include <functional>
#include <memory>
#include <span>
#include <string_view>

namespace platform {

/// What an item does. Those without a handler are the toolkit's own: they end the program or work on the focused text.
/// Paste also takes a file from the clipboard, wherever the focus is, and gives it to the window as if it were dropped.
enum class MenuAction { None, Handler, CheckHandler, Quit, Undo, Cut, Copy, Paste, Clear, SelectAll };

struct MenuRow {
    int level;             // 0 a menu of the bar, 1 an item of the menu above it
    std::string_view name; // unique in the bar
    std::string_view text; // "&" marks the mnemonic; "-" is a separator
    char shortcut;         // the letter that goes with Ctrl, on a Mac with Cmd; 0 for none
    MenuAction action;     // CheckHandler: an item with a check mark
};

class MenuBar;

/// One item with a handler. The user's choice doesn't touch the check mark: only the handler sets it.
class MenuItem {
public:
    /// Requires: `bar` has an item of that name.
    MenuItem(MenuBar& bar, std::string_view name);
    ~MenuItem();
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;

    [[nodiscard]] bool HasCheckMark() const;
    void SetHasCheckMark(bool on);

    /// Runs `handler` at each choice. Its result, true for a command that is done, is asked for by nobody.
    void SetHandler(std::function<bool()> handler);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// Each choice but Quit takes a turn at the gate; Quit asks the window to close.
class MenuBar {
public:
    MenuBar(EventGate& gate, std::span<const MenuRow> rows);
    ~MenuBar();
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;

private:
    friend class MenuItem;
    friend class Window;
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace platform
