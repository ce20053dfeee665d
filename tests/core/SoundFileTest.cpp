// Whole files as bytes.
#include "core/PeriodEncoder.h"
#include "core/SoundFileImage.h"
#include "support/KnownFile.h"
#include "support/WaveBytes.h"

#include <gtest/gtest.h>

namespace {

TEST(SoundFile, IsKnownByteForByte)
{
    core::BackgroundTask yield([] {});
    core::SoundFile sound{.loadAddress = {},
                          .sampleRate = *machine::RateOfHertz(11025),
                          .title = U"tone.wav",
                          .runBytes = core::EncodePeriods(ToneOf160(), yield).runBytes};
    EXPECT_EQ(core::SoundFileImage(sound), kPlayer + kRunBytes);
    sound.loadAddress = 0xC0FE;
    EXPECT_EQ(core::SoundFileImage(sound),
              Bytes("ff 10 00 00 10 88 00 00 fe c0 00 fe c0 00 00 0f") + kPlayer + kRunBytes);
    sound.runBytes.resize(0x1234 - 116);
    EXPECT_EQ(core::SoundFileImage(sound).substr(5, 2), Bytes("34 12"));
    EXPECT_EQ(core::SoundFileImage("&Hfe", "&H0a&HfF", yield), Bytes("fe 0a ff 00 00")); // digits of either case
}

} // namespace
