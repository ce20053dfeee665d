// What sound files become when they are read: of each kind a whole one, parts, damaged ones and such as are none.
#include "sound/ReadSound.h"
#include "files/Files.h"
#include "prepare/command/Answer.h"
#include "support/KnownFile.h"
#include "support/SoundFiles.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <regex>
#include <tuple>

namespace {

using namespace sound;

class ReadSoundTest : public testing::Test {
protected:
    ReadSoundTest() { setenv("PATH", folder.c_str(), 1); } // where there is an ffmpeg only if the test lays one there
    ~ReadSoundTest() override
    {
        setenv("PATH", path.c_str(), 1);
        std::filesystem::remove_all(folder);
    }

    std::filesystem::path Write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    /// An ffmpeg that does what `script` says.
    void Install(const std::string& script) const
    {
        chmod(Write("ffmpeg", "#!/bin/sh\n" + script + "\n").c_str(), 0700);
    }
    /// What is told of a file that can't be read; empty for one that can.
    static std::string RefusalOf(const std::filesystem::path& file, const Part& part = {})
    {
        try {
            const auto read = Read(file, part);
            const auto* const refusal = std::get_if<Refusal>(&read);
            return refusal == nullptr ? "" : prepare::Reason(*refusal, {});
        } catch (const files::IOException& failure) {
            return failure.Reason();
        }
    }
    static std::variant<Recording, Refusal> Read(const std::filesystem::path& file, const Part& part = {})
    {
        return ReadSound(file, part, 48, core::Progress([](double /*done*/) { return true; }));
    }

    const std::filesystem::path folder = NewFolder();
    const std::string path = std::getenv("PATH");
};

/// The falls through zero from one second to another.
int FallsOf(const Samples& sound, double from, double to)
{
    int falls = 0;
    for (auto k = static_cast<std::size_t>(from * kRate); k < static_cast<std::size_t>(to * kRate); ++k)
        falls += sound[k] >= 0 && sound[k + 1] < 0 ? 1 : 0;
    return falls;
}

TEST_F(ReadSoundTest, TakesEachKindWithItsLengthPitchAndLevel)
{
    for (const auto& [name, format] : kFormats) {
        const auto file = WriteTone(folder / name, format, {.channels = 2, .seconds = 2});
        const auto whole = std::get<Recording>(Read(file));
        EXPECT_EQ(whole.rate, 48000) << name;
        EXPECT_EQ(whole.channels, 2) << name;
        EXPECT_NEAR(whole.seconds.value(), 2, 0.06) << name; // MP3 comes in blocks
        EXPECT_NEAR(static_cast<double>(whole.samples.size()), 2 * kRate, 0.06 * kRate) << name;
        EXPECT_NEAR(FallsOf(whole.samples, 0.2, 0.7), 220, 2) << name; // 440 Hz, and then
        EXPECT_NEAR(FallsOf(whole.samples, 1.2, 1.7), 440, 2) << name; // 880 Hz
        EXPECT_NEAR(*std::ranges::max_element(whole.samples), 0.25, 0.03)
            << name; // 0.5 on the left, nothing on the right

        const auto part = std::get<Recording>(Read(file, {.from = 1, .length = 0.5}));
        EXPECT_NEAR(static_cast<double>(part.samples.size()), 0.5 * kRate, 1) << name;
        EXPECT_NEAR(FallsOf(part.samples, 0.1, 0.4), 264, 2) << name; // 880 Hz
        EXPECT_NE(RefusalOf(file, {.from = 3, .length = {}}), "") << name;
    }
}

TEST_F(ReadSoundTest, TakesEachChannelAndSilenceForWhatIsNoNumber)
{
    for (int channel = 0; channel < 6; ++channel) {
        const auto file = WriteTone(folder / "six", SF_FORMAT_WAV | SF_FORMAT_FLOAT, {.channels = 6, .on = channel});
        auto bytes = ::Read(file);
        bytes.replace(bytes.size() / 48 * 24, 8, "\0\0\xC0\x7F\0\0\x80\x7F", 8); // NaN and infinity, amid it
        const auto samples = std::get<Recording>(Read(Write("six", bytes))).samples;
        EXPECT_EQ(FallsOf(samples, 0.1, 0.9), 352) << channel;
        EXPECT_NEAR(*std::ranges::max_element(samples), 0.5 / 6, 0.01) << channel;
    }
}

TEST_F(ReadSoundTest, RefusesWhatIsNoSoundToPrepare)
{
    const auto tone = [&](const char* name, ToneOfSound that) {
        return WriteTone(folder / name, SF_FORMAT_WAV | SF_FORMAT_PCM_16, that);
    };
    for (const auto& [file, part, message] : std::vector<std::tuple<std::filesystem::path, Part, std::string>>{
             {Write("text", "no sound"), {}, "with the program ffmpeg, which isn't installed"},
             {tone("slow", {.rate = 1}), {}, "It has 1 samples a second. From 1000 to 1000000 can be read."},
             {tone("fast", {.rate = 10'000'000, .seconds = 0.01}), {}, "It has 10000000 samples a second."},
             {tone("long", {.rate = 8000, .seconds = 49}),
              {.from = 50, .length = {}},
              "It ends at 0:49.0, before --from, which is"},
         })
        EXPECT_NE(RefusalOf(file, part).find(message), std::string::npos) << file << " says " << RefusalOf(file, part);
    EXPECT_EQ(RefusalOf(folder / "long", {.from = 1, .length = {}}), "");
}

TEST_F(ReadSoundTest, SurvivesDamageToEachKind)
{
    testing::internal::CaptureStderr();
    for (const auto& [name, format] : kFormats) {
        const auto bytes = ::Read(WriteTone(folder / name, format, {.seconds = 0.3}));
        ASSERT_GT(bytes.size(), 96U) << name;
        const auto half = RefusalOf(Write("cut", bytes.substr(0, bytes.size() / 2)));
        EXPECT_TRUE(half.starts_with("It is damaged")) << name << " says " << half;
        for (std::size_t offset = 0; offset < 96; ++offset)
            for (const char byte : {'\0', '\x7F', '\xFF'}) {
                auto damaged = bytes;
                damaged[offset] = byte;
                EXPECT_LT(RefusalOf(Write("damaged", damaged)).size(), 200U) << name << " at " << offset;
            }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); // that no library may write to
}

TEST_F(ReadSoundTest, TakesAPartAtEachStart)
{
    for (const int rate : {8000, 11025, 22050, 44100, 48000}) {
        const auto file = WriteTone(folder / "tone", SF_FORMAT_WAV | SF_FORMAT_PCM_16, {.rate = rate, .seconds = 2});
        for (int start = 0; start < 20; ++start)
            EXPECT_EQ(RefusalOf(file, {.from = start * 0.1 + 0.05, .length = {}}), "") << rate << " " << start;
    }
}

TEST_F(ReadSoundTest, TellsWhereASoundBreaksAndWhereAnotherIsJoinedToIt)
{
    using Row = std::pair<const char*, int>;
    for (const auto& [name, format] : {Row{"flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
                                       {"vorbis", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
                                       {"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
                                       {"mp3", kMp3}}) {
        const auto bytes = ::Read(WriteTone(folder / name, format, {.seconds = 8, .overtone = 0.1}));
        auto damaged = bytes;
        damaged.replace(bytes.size() / 2, bytes.size() / 9, bytes.size() / 9, '\0');
        const auto refusal = RefusalOf(Write("damaged", damaged));
        EXPECT_TRUE(std::regex_match(refusal, std::regex("It is damaged or cut off at 0:0[1-5].*"))) << name << refusal;
        EXPECT_EQ(RefusalOf(folder / "damaged", {.from = 1, .length = 0.5}), "") << name;

        const auto file = Write("joined", bytes + bytes);
        EXPECT_TRUE(std::get<Recording>(Read(file)).isJoined) << name;
        EXPECT_FALSE(std::get<Recording>(Read(file, {.from = 1, .length = 0.5})).isJoined) << name;
        EXPECT_FALSE(std::get<Recording>(Read(folder / name)).isJoined) << name;
    }
}

TEST_F(ReadSoundTest, HearsAWaveThatWasNeverFinishedAndChannelsOfOppositePhase)
{
    auto wave = ::Read(WriteTone(folder / "tone", SF_FORMAT_WAV | SF_FORMAT_PCM_16, {.channels = 2, .seconds = 2}));
    for (std::size_t frame = 44; frame < wave.size(); frame += 4) { // the right is the left turned round
        wave[frame + 2] = static_cast<char>(~wave[frame]);
        wave[frame + 3] = static_cast<char>(~wave[frame + 1]);
    }
    for (const char filled : {'\0', '\xFF'}) {
        wave.replace(4, 4, 4, filled).replace(40, 4, 4, filled);
        const auto heard = std::get<Recording>(Read(Write("tone", wave)));
        EXPECT_EQ(heard.seconds, 2);
        EXPECT_NEAR(FallsOf(heard.samples, 1.2, 1.7), 440, 2);
    }
}

TEST_F(ReadSoundTest, AsksFfmpegForTheRest)
{
    WriteTone(folder / "tone.au", SF_FORMAT_AU | SF_FORMAT_FLOAT, {.seconds = 2});
    const auto strange = Write("-i $(x) \"ü.m4a", "no sound");
    EXPECT_NE(RefusalOf(strange).find("sudo apt install ffmpeg"), std::string::npos);

    Install("printf '%s\\n' \"$@\" | /bin/grep -v , >arguments; /bin/cat tone.au");
    std::filesystem::current_path(folder);
    const auto recording = std::get<Recording>(Read(strange, {.from = 61.5, .length = {}}));
    EXPECT_EQ(recording.rate, 48000);
    EXPECT_NEAR(recording.seconds.value(), 63.5, 0.001);
    EXPECT_NEAR(FallsOf(recording.samples, 0.2, 0.7), 220, 2);
    EXPECT_EQ(::Read("arguments"), "-nostdin\n-hide_banner\n-nostats\n-v\ninfo\n-xerror\n-protocol_whitelist\nfile\n-"
                                   "format_whitelist\n-ss\n61.500000\n-i\nfile:" +
                                       strange.string() +
                                       "\n-map\n0:a:0\n-t\n49.000000\n-c:a\npcm_f32be\n-f\nau\npipe:1\n");

    Install("exit 1");
    EXPECT_NE(RefusalOf(strange).find("libsndfile or ffmpeg can read"), std::string::npos);
    Install("/bin/cat tone.au; exec /bin/sleep 100"); // hangs: it is not waited for
    EXPECT_EQ(RefusalOf(strange, {.from = 0, .length = 1}), "");
    const auto damaged = "It is damaged or cut off at 0:02.0. What is before can be taken: --from 0 --length 0:02.0.";
    for (const auto& [said, refusal] : std::vector<std::pair<std::string, std::string>>{
             {"exit 1", damaged},
             {"kill -9 $$", damaged},
             {"echo '  Duration: 00:00:20.02, start: 0' >&2", damaged},
             {"echo '  Duration: 00:00:02.20, start: 0' >&2", ""}, // what the decoder needs
             {"printf '  Duration: 00:00:20.02\\n  Stream #0:0: Video: h264\\n' >&2", ""},
             {"printf '  Duration: 00:00:20.02\\n  Stream #0:0: Video: png (attached pic)\\n' >&2", damaged},
             {"printf 'Estimating duration from bitrate\\n  Duration: 00:00:20.02\\n' >&2", ""},
         }) {
        Install("/bin/cat tone.au; " + said);
        EXPECT_EQ(RefusalOf(strange), refusal) << said;
    }
    std::filesystem::permissions("ffmpeg", std::filesystem::perms::none);
    EXPECT_NE(RefusalOf(strange).find("which can't be started: Permission denied."), std::string::npos);
    Install("exit 0");
    setenv("PATH", ":", 1); // both elements would mean the current folder
    EXPECT_NE(RefusalOf(strange).find("which isn't installed"), std::string::npos);
}

} // namespace
