// Targets.h: what a sound file can be made for: a row a target, and all that differs between them.
#pragma once

#include "core/SoundFileHeader.h"
#include "window/MessagePair.h"
#include "window/Window1.h"

#include <string>
#include <string_view>

struct TargetRow {
    const core::HeaderLayout& layout;
    std::string Window1::*header; // the property that holds it
    platform::MenuItem MainMenuBar::*menuItem;
    platform::RadioButton Window1::*radioButton;
    std::string_view savePrompt;
    MessagePair title;     // at the start, and after a choice by radio button
    MessagePair menuTitle; // after a choice in the menu
};

inline constexpr TargetRow kTargetPC1600{.layout = core::kLayoutPC1600,
                                         .header = &Window1::HeaderPC1600,
                                         .menuItem = &MainMenuBar::OptionAudioSharp,
                                         .radioButton = &Window1::RadioButtonPC1600,
                                         .savePrompt = "Save PC-1600 Sound File",
                                         .title = {.ger = "Klangfloss PC-1600", .eng = "Tonfloss PC-1600"},
                                         .menuTitle = {.ger = "Klangfloss PC-1600", .eng = "Tonfloss für PC-1600"}};
inline constexpr TargetRow kTargetPokEmul{.layout = core::kLayoutPokeMul,
                                          .header = &Window1::HeaderPokeMul,
                                          .menuItem = &MainMenuBar::OptionAudioPokEmul,
                                          .radioButton = &Window1::RadioButtonPokEmul,
                                          .savePrompt = "Save PokEmul Sound File",
                                          .title = {.ger = "Klangfloss PokEmul", .eng = "Tonfloss PokEmul"},
                                          .menuTitle = {.ger = "Klangfloss PokEmul", .eng = "Tonfloss für PokEmul"}};

inline constexpr const TargetRow* kTargets[] = {&kTargetPC1600, &kTargetPokEmul};
