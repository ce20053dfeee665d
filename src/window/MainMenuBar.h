// MainMenuBar.h: the program's menu bar. The check marks of the two Audio items are the choice of the target, that of
// OptionDefBWindow is the choice of a listing; nothing else holds them.
#pragma once

#include "platform/Menu.h"

class MainMenuBar : public platform::MenuBar {
public:
    explicit MainMenuBar(platform::EventGate& gate);

    platform::MenuItem OptionAudioSharp{*this, "OptionAudioSharp"};
    platform::MenuItem OptionAudioPokEmul{*this, "OptionAudioPokEmul"};
    platform::MenuItem OptionDefBWindow{*this, "OptionDefBWindow"};
    platform::MenuItem InfoUeber{*this, "InfoUeber"};
};
