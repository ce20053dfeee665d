// WindowLayout.h: the window and its controls as tables.
#pragma once

#include "platform/Controls.h"
#include "platform/Window.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

inline constexpr platform::WindowRow kWindow{.width = 600, .height = 451, .title = "Tonfloss für PC1600"};

inline constexpr std::uint32_t kBlack = 0x000000; // shown as the desktop's own text colour
inline constexpr std::uint32_t kRed = 0xFF0000;   // a file is coming, or was refused

inline constexpr auto kDefault = platform::Align::Default;
inline constexpr auto kCentre = platform::Align::Centre;

// In the order of creation, which is also the tab order.
inline constexpr platform::ControlRow kControls[] = {
    // clang-format off
    // name                     L    T    W    H  font  align     visible  text
    {"LabelDragAndDrop",       20,  48, 560,  29,  24,  kCentre,  true,    "Drag Wave File into the Window"},
    {"TextAreaCodeAusgabe",    20, 153, 560, 246,   0,  kDefault, true,    "",  "DEFB listing"},
    {"Canvas1",               222, 204, 156, 156,   0,  kDefault, true,    "",  "A wave becomes a square wave on a pocket computer"},
    {"TextFieldAudioAdresse", 373,  88, 110,  22,   0,  kDefault, false,   ""},
    {"Label2",                486,  89,  54,  20,   0,  kCentre,  false,   "(Enter)"},
    {"Label1",                 49,  88, 312,  20,   0,  kDefault, false,   "Loading / starting address audiofile (hexadecimal):"},
    {"Label3",                 59,  20, 521,  20,   0,  kCentre,  true,    "Use Sampleformat 6000Hz - 11025Hz / 8 bit Depth / PCM / Mono"},
    {"RadioButtonPC1600",      59, 411, 163,  20,  14,  kDefault, true,    "PC-1600 Soundfiles"},
    {"RadioButtonPokEmul",    329, 411, 211,  20,  14,  kDefault, true,    "PokEmul Emulator Soundfiles"},
    {"Label4",                 49, 104, 312,  52,   0,  kDefault, false,   "With 32KB extension > 80C5\rWithout 32KB extension > C0C5"},
    // clang-format on
};

/// The row of a control. Only for constants: a wrong name doesn't compile.
consteval const platform::ControlRow& RowOf(std::string_view name)
{
    return *std::find_if(std::begin(kControls), std::end(kControls), [=](const auto& row) { return row.name == name; });
}

/// Where a window of `windowSize` starts on a screen of `screenSize`; truncated toward zero.
[[nodiscard]] constexpr int CentredOn(int screenSize, int windowSize)
{
    return static_cast<int>(screenSize / 2.0 - windowSize / 2.0);
}
