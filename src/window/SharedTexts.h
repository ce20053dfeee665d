// SharedTexts.h: a text that more than one place shows. All others stand beside the code that shows them.
#pragma once

#include "core/MessagePair.h"

inline constexpr MessagePair kSampleFormat{
    .ger = "Benutze das Sampleformat 6000 Hz - 11025 Hz / 8 bit Encodierung / PCM / Mono",
    .eng = "Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono"};
