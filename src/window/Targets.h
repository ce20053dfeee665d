// Targets.h: what a sound file can be made for: a row a target, and all that differs between them.
#pragma once

#include "core/MessagePair.h"
#include "core/SoundFileHeader.h"
#include "window/Window1.h"

#include <string>
#include <string_view>

struct TargetRow {
    const core::HeaderLayout& layout;
    std::string Window1::*header; // the property that holds it
    platform::MenuItem MainMenuBar::*menuItem;
    bool (Window1::*menuAction)();
    platform::RadioButton Window1::*radioButton;
    void (Window1::*radioAction)();
    std::string_view savePrompt;
    MessagePair title;     // at the start, and after a choice by radio button
    MessagePair menuTitle; // after a choice in the menu
};

inline constexpr TargetRow kTargetPC1600{.layout = core::kLayoutPC1600,
                                         .header = &Window1::HeaderPC1600,
                                         .menuItem = &MainMenuBar::OptionAudioSharp,
                                         .menuAction = &Window1::OptionAudioSharp_Action,
                                         .radioButton = &Window1::RadioButtonPC1600,
                                         .radioAction = &Window1::RadioButtonPC1600_Action,
                                         .savePrompt = "Save PC-1600 Sound File",
                                         .title = {.ger = "Klangfloss PC-1600", .eng = "Tonfloss PC-1600"},
                                         .menuTitle = {.ger = "Klangfloss PC-1600", .eng = "Tonfloss für PC-1600"}};
inline constexpr TargetRow kTargetPokEmul{.layout = core::kLayoutPokeMul,
                                          .header = &Window1::HeaderPokeMul,
                                          .menuItem = &MainMenuBar::OptionAudioPokEmul,
                                          .menuAction = &Window1::OptionAudioPokEmul_Action,
                                          .radioButton = &Window1::RadioButtonPokEmul,
                                          .radioAction = &Window1::RadioButtonPokEmul_Action,
                                          .savePrompt = "Save PokEmul Sound File",
                                          .title = {.ger = "Klangfloss PokEmul", .eng = "Tonfloss PokEmul"},
                                          .menuTitle = {.ger = "Klangfloss PokEmul", .eng = "Tonfloss für PokEmul"}};

inline constexpr const TargetRow* kTargets[] = {&kTargetPC1600, &kTargetPokEmul};
