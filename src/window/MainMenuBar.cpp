#include "window/MainMenuBar.h"

namespace {

using enum platform::MenuAction;

constexpr platform::MenuRow kMenu[] = {
    // clang-format off
    // level  name                 text              shortcut  action
    {0, "FileMenu",           "&File",            0,   None},
    {1, "FileQuit",           "&Quit",            'Q', Quit},
    {0, "EditMenu",           "&Edit",            0,   None},
    {1, "EditUndo",           "&Undo",            'Z', Undo},
    {1, "EditSeparator1",     "-",                0,   None},
    {1, "EditCut",            "Cu&t",             'X', Cut},
    {1, "EditCopy",           "&Copy",            'C', Copy},
    {1, "EditPaste",          "&Paste",           'V', Paste},
    {1, "EditClear",          "&Delete",          0,   Clear},
    {1, "EditSeparator2",     "-",                0,   None},
    {1, "EditSelectAll",      "Select &All",      'A', SelectAll},
    {0, "OptioMenu",          "Option",           0,   None},
    {1, "OptionAudioSharp",   "Audio PC-1600",    0,   CheckHandler},
    {1, "UntitledSeparator",  "-",                0,   None},
    {1, "OptionAudioPokEmul", "Audio PokEmul",    0,   CheckHandler},
    {1, "UntitledSeparator0", "-",                0,   None},
    {1, "OptionDefBWindow",   "DEFB Window",      0,   CheckHandler},
    {0, "Info",               "Info",             0,   None},
    {1, "InfoUeber",          "About",            0,   Handler},
    // clang-format on
};

} // namespace

MainMenuBar::MainMenuBar(platform::EventGate& gate) : MenuBar(gate, kMenu)
{}
