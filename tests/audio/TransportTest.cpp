// What a device would be given, on a clock that stands still: ten samples a second, so that a place is easily read.
#include "audio/Transport.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using namespace audio;
using std::chrono::milliseconds;
using testing::DoubleEq;

/// Sample k is `base` + k.
std::shared_ptr<const Sound> Counting(int base, std::int64_t size)
{
    Sound sound{.size = size, .read = [=](auto first, auto into) {
                    EXPECT_LE(first + static_cast<std::int64_t>(into.size()), size);
                    for (auto& sample : into)
                        sample = static_cast<std::int16_t>(base + first++);
                }};
    return std::make_shared<const Sound>(std::move(sound));
}

class TransportTest : public testing::Test {
protected:
    TransportTest()
    {
        transport.Put(0, Counting(100, 20));
        transport.Put(1, Counting(200, 12));
        transport.SetVolume(1);
    }

    /// The next `count` samples, after the time that as many take.
    std::vector<std::int16_t> Next(std::size_t count = 4)
    {
        std::vector<std::int16_t> buffer(count, 99);
        now += milliseconds(400);
        transport.Fill(buffer, now);
        return buffer;
    }

    Transport transport{10};
    Time now;
};

using Buffer = std::vector<std::int16_t>;

TEST_F(TransportTest, PlaysFromAPlaceToTheEndAndTellsWhatIsHeard)
{
    EXPECT_EQ(Next(), Buffer({0, 0, 0, 0})); // nothing is to be played yet
    transport.Play(1.3);
    EXPECT_THAT(transport.Place(now), DoubleEq(1.3));
    EXPECT_EQ(Next(), Buffer({113, 114, 115, 116}));
    EXPECT_THAT(transport.Place(now + milliseconds(300)), DoubleEq(1.3)); // waits behind the buffer before
    EXPECT_EQ(Next(), Buffer({117, 118, 119, 0}));
    EXPECT_THAT(transport.Place(now), DoubleEq(1.3));
    EXPECT_THAT(transport.Place(now + milliseconds(250)), DoubleEq(1.5));
    EXPECT_THAT(transport.Place(now + milliseconds(900)), DoubleEq(1.7)); // the device is late: no further than given
    EXPECT_EQ(Next(), Buffer({0, 0, 0, 0}));
    EXPECT_TRUE(transport.IsPlaying()); // the last three samples are only heard now
    EXPECT_THAT(transport.Place(now + milliseconds(200)), DoubleEq(1.9));
    Next();
    EXPECT_FALSE(transport.IsPlaying());
    EXPECT_THAT(transport.Place(now), DoubleEq(2));
    transport.Play(7); // behind the end
    Next();
    Next();
    EXPECT_FALSE(transport.IsPlaying());
}

TEST_F(TransportTest, StopsWhereItIsHeardAndGoesToAnyPlaceWhileItPlays)
{
    transport.Play(0);
    Next();
    Next();
    transport.Play(1.5);
    EXPECT_THAT(transport.Place(now), DoubleEq(1.5));
    EXPECT_EQ(Next(3), Buffer({115, 116, 117}));
    Next(1);
    transport.Stop(now + milliseconds(100));
    EXPECT_THAT(transport.Place(now + milliseconds(300)), DoubleEq(1.6));
    EXPECT_EQ(Next(), Buffer({0, 0, 0, 0}));
    transport.Play(transport.Place(now));
    EXPECT_EQ(Next(2), Buffer({116, 117}));
}

TEST_F(TransportTest, ChangesTheSoundInTheNextBufferAndKeepsThePlace)
{
    transport.Play(0.2);
    EXPECT_EQ(Next(), Buffer({102, 103, 104, 105}));
    transport.Select(1);
    EXPECT_EQ(Next(), Buffer({206, 207, 208, 209}));
    const auto before = transport.Put(1, Counting(300, 13)); // a better one has been made meanwhile
    EXPECT_EQ(before->size, 12);
    EXPECT_EQ(Next(), Buffer({310, 311, 312, 0}));
    transport.Select(0); // which is longer, before the end has been heard
    EXPECT_EQ(Next(), Buffer({113, 114, 115, 116}));
    transport.Select(2); // there is none
    EXPECT_EQ(Next(), Buffer({0, 0, 0, 0}));
}

TEST_F(TransportTest, RepeatsARange)
{
    struct Row {
        const char* reason;
        Range range;
        double from;
        Buffer first;
        Buffer second;
    };
    for (const auto& [reason, range, from, first, second] : std::vector<Row>{
             {"leads into it", {0.3, 0.6}, 0.1, {101, 102, 103, 104}, {105, 103, 104, 105}},
             {"begins behind it", {0.3, 0.6}, 1.9, {104, 105, 103, 104}, {105, 103, 104, 105}},
             {"shorter than a buffer", {0.5, 0.6}, 0.5, {105, 105, 105, 105}, {105, 105, 105, 105}},
             {"goes beyond the end", {1.8, 5}, 1.7, {117, 118, 119, 118}, {119, 118, 119, 118}},
             {"empty: none", {0.4, 0.4}, 1.8, {118, 119, 0, 0}, {0, 0, 0, 0}},
             {"behind the end: none", {2, 3}, 1.9, {119, 0, 0, 0}, {0, 0, 0, 0}},
         }) {
        transport.Repeat(range);
        transport.Play(from);
        EXPECT_EQ(Next(), first) << reason;
        EXPECT_EQ(Next(), second) << reason;
    }
    transport.Repeat(Range{0.3, 0.6});
    transport.Play(0.4);
    Next();
    Next();
    EXPECT_THAT(transport.Place(now + milliseconds(100)), DoubleEq(0.5));
    EXPECT_THAT(transport.Place(now + milliseconds(200)), DoubleEq(0.3));
    transport.Repeat(std::nullopt);
    EXPECT_EQ(Next(), Buffer({103, 104, 105, 106}));
}

TEST_F(TransportTest, IsAsLoudAsTheVolumeAndTheSoundSay)
{
    const auto played = [&](double volume, double gain, double mostGain) {
        auto sound = *Counting(200, 20);
        sound.gain = gain;
        sound.mostGain = mostGain;
        transport.Put(0, std::make_shared<const Sound>(std::move(sound)));
        if (volume >= 0) transport.SetVolume(volume);
        transport.Play(0.2);
        return Next(1).front();
    };
    EXPECT_EQ(played(1, 1, 1), 202);
    EXPECT_EQ(played(0.5, 3, 2), 303);
    EXPECT_EQ(played(1, 3, 2), 404); // louder, and its peaks would be cut off
    EXPECT_EQ(played(0, 3, 2), 0);
    transport = Transport(10);
    EXPECT_EQ(played(-1, 1, 1), 51); // at first: 50.5
}

TEST(SoundOf, IsAsLoudAsTheLevelInItsLoudestSecond)
{
    struct Row {
        const char* reason;
        std::vector<float> samples; // ten a second
        double gain;
        double mostGain;
    };
    std::vector<float> soft(30, 0.05F);
    std::fill_n(soft.begin() + 12, 10, -0.25F);
    for (const auto& [reason, samples, gain, mostGain] : std::vector<Row>{
             {"steady", std::vector<float>(30, 0.5F), 1, 2},
             {"soft before and after", soft, 2, 4},
             {"less than a second", {0.25F, -0.25F}, 2, 4},
             {"beyond full scale", {-3, 3}, 0.5, 1},
         }) {
        const auto sound = SoundOf(samples, 10, 0.5);
        EXPECT_EQ(sound.size, static_cast<std::int64_t>(samples.size()));
        EXPECT_NEAR(sound.gain, gain, 1e-4) << reason;
        EXPECT_NEAR(sound.mostGain, mostGain, 1e-3) << reason;
    }
    std::vector<std::int16_t> read(2);
    SoundOf(std::vector<float>{0.9F, 2, -1, 0.25F}, 10, 0.5).read(1, read);
    EXPECT_EQ(read, Buffer({32767, -32767}));
    SoundOf(std::vector<float>(5), 10, 0.5).read(3, read); // silence divides by nothing
    EXPECT_EQ(read, Buffer({0, 0}));
}

} // namespace
