// The player, through the driver of its library that writes what it is given to a file.
#include "audio/Player.h"
#include "support/KnownFile.h"

#include <gmock/gmock.h>

#include <optional>
#include <thread>

namespace {

using namespace audio;

constexpr int kRate = 44100;

class PlayerTest : public testing::Test {
protected:
    PlayerTest()
    {
        setenv("SDL_AUDIODRIVER", "disk", 1);
        setenv("SDL_DISKAUDIOFILE", heard.c_str(), 1);
        player->Put(0, Saying(1, 10000));
        player->Put(1, Saying(2, 10000));
        player->SetVolume(1);
    }
    ~PlayerTest() override { std::filesystem::remove_all(folder); }

    /// Sample k is `number` + 4 k modulo 32764: never silence, and no two places are the same.
    static Sound Saying(int number, std::int64_t size)
    {
        return {.size = size, .read = [=](auto first, auto into) {
                    for (auto& sample : into)
                        sample = static_cast<std::int16_t>(number + 4 * first++ % 32764);
                }};
    }
    template <typename Condition>
    void WaitUntil(Condition isMet)
    {
        for (int tries = 0; tries < 1000 && !isMet(player->Now()); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_TRUE(isMet(player->Now()));
    }
    /// All that was heard, without the silence around and in it. The player ends: only then the file is whole.
    [[nodiscard]] std::vector<int> Heard()
    {
        player.reset();
        const auto bytes = Read(heard);
        std::vector<int> samples;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
            if (const int sample = static_cast<std::uint8_t>(bytes[i]) + 256 * static_cast<std::int8_t>(bytes[i + 1]))
                samples.push_back(sample);
        return samples;
    }

    const std::filesystem::path folder = NewFolder();
    const std::filesystem::path heard = folder / "heard.raw";
    std::optional<Player> player{kRate};
};

constexpr auto kIsOver = [](const Status& status) { return !status.isPlaying; };

TEST_F(PlayerTest, PlaysEachSampleOnceAndEndsByItself)
{
    player->Play(1000.0 / kRate);
    EXPECT_TRUE(player->Now().isPlaying);
    WaitUntil(kIsOver);
    const auto status = player->Now();
    EXPECT_EQ(status.failure, "");
    EXPECT_DOUBLE_EQ(status.place, 10000.0 / kRate);
    const auto samples = Heard();
    ASSERT_EQ(samples.size(), 9000U);
    for (std::size_t i = 0; i < samples.size(); ++i)
        ASSERT_EQ(samples[i], 1 + 4 * (1000 + static_cast<int>(i)) % 32764) << i;
}

TEST_F(PlayerTest, ChangesTheSoundWithinTwoBuffersAndStops)
{
    for (const int number : {0, 1})
        player->Put(static_cast<std::size_t>(number), Saying(number + 1, 1'000'000));
    player->Play(0);
    const auto hasComeTo = [](double sample) {
        return [=](const Status& status) { return status.place * kRate > sample; };
    };
    WaitUntil(hasComeTo(1000));
    const auto before = player->Now().place * kRate;
    player->Select(1);
    const auto after = player->Now().place * kRate;
    WaitUntil(hasComeTo(after + 3000));
    player->Stop();
    const auto place = player->Now().place;
    EXPECT_FALSE(player->Now().isPlaying);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(player->Now().place, place);

    const auto samples = Heard();
    double changedAt = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        ASSERT_EQ(samples[i] / 4, static_cast<int>(i % 8191)) << i; // nothing twice, nothing left out
        ASSERT_EQ(samples[i] % 4, changedAt > 0 || samples[i] % 4 == 2 ? 2 : 1) << i;
        if (changedAt == 0 && samples[i] % 4 == 2) changedAt = static_cast<double>(i);
    }
    EXPECT_GE(changedAt, before);
    EXPECT_LE(changedAt, after + 1024); // the buffer that is heard and the one that waits: 23 ms
    EXPECT_LT(place * kRate, static_cast<double>(samples.size()));
}

TEST_F(PlayerTest, TellsWhyNothingIsPlayedAndPlaysTheNextTime)
{
    setenv("SDL_AUDIODRIVER", "none", 1);
    player->Play(0);
    WaitUntil(kIsOver);
    EXPECT_EQ(player->Now().failure, "Audio target 'none' not available");
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", (folder / "none/heard.raw").c_str(), 1);
    player->Play(0);
    WaitUntil(kIsOver);
    EXPECT_THAT(player->Now().failure, testing::HasSubstr("none/heard.raw"));
    setenv("SDL_DISKAUDIOFILE", "/dev/full", 1); // opens, and then takes nothing
    player->Play(0.1);
    WaitUntil(kIsOver);
    EXPECT_EQ(player->Now().failure, "The sound device has gone.");
    EXPECT_LT(player->Now().place, 10000.0 / kRate);
    setenv("SDL_DISKAUDIOFILE", heard.c_str(), 1);
    player->Play(0);
    EXPECT_EQ(player->Now().failure, "");
    WaitUntil(kIsOver);
    EXPECT_EQ(player->Now().failure, "");
    EXPECT_EQ(Heard().size(), 10000U);
}

} // namespace
