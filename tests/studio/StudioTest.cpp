// The second window's model, driven as its window drives it: actions, and what threads have found by and by.
#include "studio/Studio.h"
#include "studio/Words.h"
#include "support/KnownFile.h"
#include "support/SoundFiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <random>
#include <thread>

namespace {

using namespace studio;
using prepare::Kind;
using Slot = Notice::Slot;

const auto& kSlow = machine::kSampleRates[0];

class StudioTest : public testing::Test {
protected:
    StudioTest() { model->SetKind(Kind::Melody); } // which is prepared soonest

    ~StudioTest() override
    {
        model.reset();
        EXPECT_TRUE(std::filesystem::is_empty(folder / "temporary")); // whatever was dragged out
        std::filesystem::remove_all(folder);
    }

    /// Pumps as a window does until that holds. False where it never does.
    bool Until(const std::function<bool(const State&)>& holds)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(40);
        while (!holds(model->Now())) {
            std::unique_lock lock(mutex);
            if (!woken.wait_until(lock, end, [&] { return isWoken; })) return false;
            isWoken = false;
            lock.unlock();
            model->Pump();
        }
        return true;
    }
    bool UntilReady()
    {
        return Until([](const State& now) { return now.isCurrent && now.file->isRead; });
    }
    bool UntilTold(Slot slot)
    {
        return Until([=](const State& now) { return now.Of(slot).has_value(); });
    }
    /// A command in the folder.
    int Run(const std::string& command) const
    {
        return std::system(("cd " + folder.string() + " && " + command + " >answer 2>&1").c_str());
    }
    [[nodiscard]] std::string Told(Slot slot) const
    {
        const auto& notice = model->Now().Of(slot);
        return notice ? TextOf(*notice, Language::English) : "";
    }
    std::filesystem::path WriteFile(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    std::filesystem::path Wave(const std::string& name, double seconds) const
    {
        return WriteTone(folder / name, SF_FORMAT_WAV | SF_FORMAT_PCM_16, {.rate = 22050, .seconds = seconds});
    }

    const std::filesystem::path folder = NewFolder();
    std::mutex mutex;
    std::condition_variable woken;
    bool isWoken = false;
    std::unique_ptr<Studio> model = [this] {
        std::filesystem::create_directory(folder / "temporary");
        return std::make_unique<Studio>(
            Surroundings{.wake =
                             [this] {
                                 const std::lock_guard lock(mutex);
                                 isWoken = true;
                                 woken.notify_all();
                             },
                         .nameOf = [](const auto& path) { return path.filename().string(); },
                         .temporary = folder / "temporary"});
    }();
};

TEST_F(StudioTest, OpensWhatCanBeReadAndElseTellsWhyAndKeepsWhatWasOpen)
{
    const auto song = Wave("song.wav", 2);
    model->Open(song);
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().part, (Span{.from = 0, .to = 2}));
    EXPECT_TRUE(model->Now().isWhole);
    model->Save(Output::Recording, folder / "song-ready.wav", files::Existing::Refuse);
    ASSERT_TRUE(UntilTold(Slot::Saving));
    ASSERT_EQ(Told(Slot::Saving), "song-ready.wav: Saved.");
    auto bin = kSoundFile;
    bin[20] = '\0'; // amid the player

    for (const auto& [file, message] : std::vector<std::pair<std::filesystem::path, std::string>>{
             {WriteFile("empty", ""), "empty: The file is empty."},
             {WriteFile("bad.bin", bin), "bad.bin: This is no sound file as Tonfloss saves it (no sound file: "},
             {folder / "none.mp3", "none.mp3: The file isn't there any more."},
             {folder, folder.filename().string() + ": This is no ordinary file."},
             {folder / "song-ready.wav", "song-ready.wav: This recording is ready already: "},
             {WriteFile("cut.wav", Read(song).substr(0, 44)), "cut.wav: There is no sound in the file."},
         }) {
        model->Open(file);
        EXPECT_EQ(model->Now().opening, file.filename().string());
        ASSERT_TRUE(UntilTold(Slot::File)) << file;
        EXPECT_TRUE(Told(Slot::File).starts_with(message)) << Told(Slot::File);
        EXPECT_EQ(model->Now().file->path, song);
        EXPECT_EQ(model->Now().opening, "");
        EXPECT_TRUE(model->CanSave(Output::SoundFile));
    }
}

TEST_F(StudioTest, TakesTheNewestOfSeveralFiles)
{
    model->Open(Wave("one.wav", 3));
    model->Open(folder / "none.wav");
    model->Open(Wave("two.wav", 2));
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().file->name, "two.wav");
    EXPECT_EQ(Told(Slot::File), "");
    EXPECT_EQ(model->Now().result->part.to, 2);
}

TEST_F(StudioTest, KeepsThePartWithinTheFile)
{
    model->Open(Wave("song.wav", 10));
    ASSERT_TRUE(UntilReady());
    struct Row {
        Span given;
        Span taken;
        bool isWhole;
    };
    for (const auto& [given, taken, isWhole] : {
             Row{{2, 5}, {2, 5}, false},
             Row{{5, 2}, {2, 5}, false}, // crossed
             Row{{-3, 4}, {0, 4}, false},
             Row{{8, 99}, {8, 10}, false},
             Row{{-1, 11}, {0, 10}, true},
             Row{{1.23456, 2.34567}, {1.235, 2.346}, false}, // milliseconds
             Row{{7, 7}, {7, 7.01}, false},                  // never nothing
             Row{{20, 30}, {9.99, 10}, false},
         }) {
        model->SetPart(given);
        EXPECT_EQ(model->Now().part, taken) << given.from;
        EXPECT_EQ(model->Now().isWhole, isWhole) << given.from;
    }

    model->SetPart({2, 5});
    struct Typed {
        const char* time;
        bool isFrom;
        bool isTaken;
        Span part;
    };
    for (const auto& [time, isFrom, isTaken, part] : {
             Typed{"0:03", true, true, {3, 5}},
             Typed{"4,5", true, true, {4.5, 5}},
             Typed{"5", true, false, {4.5, 5}}, // nothing is left
             Typed{"x", true, false, {4.5, 5}},
             Typed{"-1", true, false, {4.5, 5}},
             Typed{"0:06.25", false, true, {4.5, 6.25}},
             Typed{"1:00", false, true, {4.5, 10}},
             Typed{"4", false, false, {4.5, 10}},
         }) {
        EXPECT_EQ(isFrom ? model->TypeFrom(time) : model->TypeTo(time), isTaken) << time;
        EXPECT_EQ(model->Now().part, part) << time;
    }
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().result->part, (Span{4.5, 10})); // of the last of them all
}

TEST_F(StudioTest, TakesBackTheWholeOfADrag)
{
    model->Open(Wave("song.wav", 10));
    EXPECT_FALSE(model->Now().canUndo);
    ASSERT_TRUE(UntilReady());
    model->SetPart({2, 5});
    model->SetPart({2, 5}); // a click that moves nothing
    for (const double to : {6.0, 7.0, 8.0})
        model->SetPart({2, to}, Gesture::GoesOn);
    model->Undo();
    EXPECT_EQ(model->Now().part, (Span{2, 5}));
    model->Undo();
    EXPECT_EQ(model->Now().part, (Span{2, 8}));
    model->TakeWhole();
    EXPECT_TRUE(model->Now().isWhole);
    model->Undo();
    EXPECT_EQ(model->Now().part, (Span{2, 8}));
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().result->part, (Span{2, 8}));
}

TEST_F(StudioTest, TellsHowMuchFitsAndTakesThatByItselfUntilSomebodyChooses)
{
    // 880 Hz are 880 bytes a second, and two fifths of each note are the least: 34 of its 40 seconds in 12090 bytes.
    model->Open(Wave("song.wav", 40));
    ASSERT_TRUE(UntilReady());
    EXPECT_TRUE(model->Now().isWhole);
    EXPECT_LE(model->Now().meter.bytes, 28474);
    EXPECT_EQ(model->Now().meter.room, 28474);

    model->SetTarget(Target::WithoutModule);
    EXPECT_FALSE(model->Now().isCurrent);
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().meter.room, 12090);
    EXPECT_LE(model->Now().meter.bytes, 12090);
    EXPECT_FALSE(model->Now().isWhole);
    EXPECT_EQ(model->Now().part.from, 0);
    EXPECT_GT(model->Now().part.to, 25);
    EXPECT_LT(model->Now().part.to, 35);

    model->SetTarget(Target::PokEmul);
    ASSERT_TRUE(UntilReady());
    EXPECT_TRUE(model->Now().isWhole) << "nobody has chosen yet";
    EXPECT_EQ(model->Now().meter.room, 28343);
    EXPECT_LE(model->Now().meter.bytes, 28343);

    model->SetTarget(Target::WithoutModule);
    model->SetPart({2, 39});
    ASSERT_TRUE(UntilTold(Slot::Work));
    EXPECT_EQ(model->Now().part, (Span{2, 39})) << "somebody has chosen";
    EXPECT_FALSE(model->CanSave(Output::SoundFile));
    const auto fits = model->Now().meter.fits.value();
    EXPECT_GT(fits, 25);
    EXPECT_LT(fits, 35);
    model->TakeWhatFits();
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().part.from, 2);
    EXPECT_NEAR(model->Now().part.to, 2 + fits, 0.001);
    EXPECT_LE(model->Now().meter.bytes, 12090);
    EXPECT_EQ(model->Now().meter.fits, std::nullopt);

    model->SetPart({2, 4});
    ASSERT_TRUE(UntilReady());
    EXPECT_NEAR(static_cast<double>(model->Now().meter.bytes), 132 + 2 * 880, 100);
    EXPECT_NEAR(model->Now().meter.seconds, 2, 0.1);
    EXPECT_NEAR(model->Now().meter.moreSeconds, (12090 - 132) / 880.0 - 2, 1);
}

TEST_F(StudioTest, BeginsWhereALongSoundIsFirstHeard)
{
    auto wave = Read(Wave("song.wav", 100)); // at 11025 Hz 72 are the most
    std::fill_n(wave.begin() + 44, 3 * 2 * 22050, '\0');
    model->Open(WriteFile("song.wav", wave));
    ASSERT_TRUE(Until([](const State& now) { return now.part.Length() > 0; }));
    EXPECT_NEAR(model->Now().part.from, 3, 0.05);
    ASSERT_TRUE(UntilReady());
    EXPECT_NEAR(model->Now().part.from, 3, 0.05);
    EXPECT_LE(model->Now().meter.bytes, model->Now().meter.room);
}

TEST_F(StudioTest, ShowsTheResultOfTheLastChangeOnly)
{
    model->Open(Wave("song.wav", 8));
    std::mt19937 random(7); // the same each time
    const auto below = [&](unsigned end) { return static_cast<std::size_t>(random() % end); };
    for (int round = 0; round < 12; ++round) {
        for (int action = 0; action < 6; ++action) {
            switch (below(8)) {
            case 0: model->SetKind(prepare::kKinds[below(prepare::kKinds.size())]); break;
            case 1: model->SetTarget(kTargets[below(kTargets.size())]); break;
            case 2: model->SetRate(machine::kSampleRates[below(3)]); break;
            case 3: model->Cancel(); break;
            case 4: model->Undo(); break;
            case 5: model->WantDragFile(); break;
            case 6: model->LookAt({1, 1.01}, 1000); break;
            default:
                model->SetPart({static_cast<double>(below(4)), 4.0 + static_cast<double>(below(4))},
                               below(2) == 0 ? Gesture::New : Gesture::GoesOn);
            }
            if (below(3) == 0) model->Pump();
        }
        model->PrepareAgain();
        ASSERT_TRUE(UntilReady());
        const auto& now = model->Now();
        EXPECT_EQ(now.result->part, now.part);
        EXPECT_EQ(now.result->settings.kind, now.settings.kind);
        EXPECT_EQ(now.result->settings.target, now.settings.target);
        EXPECT_EQ(now.result->settings.rate.hertz, now.settings.rate.hertz);
        EXPECT_EQ(Told(Slot::Work), "");
    }
}

TEST_F(StudioTest, StopsWhereItIsTold)
{
    model->Open(Wave("song.wav", 20));
    ASSERT_TRUE(Until([](const State& now) { return now.preparing.isGoing; }));
    model->Cancel();
    EXPECT_FALSE(model->Now().preparing.isGoing);
    EXPECT_EQ(Told(Slot::Work), "song.wav: Stopped.");
    ASSERT_TRUE(Until([](const State& now) { return now.file->isRead; }));
    EXPECT_EQ(model->Now().result, nullptr);
    model->PrepareAgain();
    EXPECT_EQ(Told(Slot::Work), "");
    EXPECT_TRUE(UntilReady());
}

TEST_F(StudioTest, ThrowsAwayWhatWasFoundForAChangeOfBefore)
{
    const auto found = [&] { // and waits to be taken
        EXPECT_TRUE(Until([](const State& now) { return now.preparing.isGoing && now.file->isRead; }));
        std::this_thread::sleep_for(
            std::chrono::seconds(1)); // where that is too short, nothing is seen, and all is well
    };
    model->Open(Wave("song.wav", 1));
    found();
    model->Cancel();
    model->Pump();
    EXPECT_EQ(model->Now().result, nullptr);
    EXPECT_EQ(Told(Slot::Work), "song.wav: Stopped.");
    model->PrepareAgain();
    found();
    model->SetPart({0, 0.5});
    model->Pump();
    EXPECT_EQ(model->Now().result, nullptr);
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().result->part.to, 0.5);
}

TEST_F(StudioTest, TellsOfAFileThatHasGoneOrChanged)
{
    const auto song = Wave("song.wav", 2);
    model->Open(song);
    ASSERT_TRUE(UntilReady());
    const auto before = model->Now().result;
    std::filesystem::rename(song, folder / "elsewhere.wav");
    model->SetPart({0, 1});
    ASSERT_TRUE(UntilTold(Slot::Work));
    EXPECT_EQ(Told(Slot::Work), "song.wav: The file isn't there any more.");
    EXPECT_EQ(model->Now().result, before);
    EXPECT_FALSE(model->Now().isCurrent);
    EXPECT_FALSE(model->CanSave(Output::Recording));

    std::filesystem::rename(folder / "elsewhere.wav", song);
    model->PrepareAgain();
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->Now().result->part, (Span{0, 1}));

    Wave("song.wav", 3);
    model->SetPart({0, 1.5});
    ASSERT_TRUE(UntilTold(Slot::Work));
    EXPECT_EQ(Told(Slot::Work), "song.wav: The file has been changed by another program meanwhile. Open it again.");
}

TEST_F(StudioTest, TakesWhatIsBeforeADamage)
{
    const auto bytes = Read(WriteTone(folder / "song.mp3", kMp3, {.seconds = 8, .overtone = 0.1}));
    auto damaged = bytes;
    damaged.replace(bytes.size() / 2, bytes.size() / 9, bytes.size() / 9, '\0');
    model->Open(WriteFile("song.mp3", damaged));
    ASSERT_TRUE(UntilReady());
    EXPECT_NE(Told(Slot::File).find("damaged or cut off at 0:03."), std::string::npos) << Told(Slot::File);
    EXPECT_NEAR(model->Now().file->axis, 3.9, 0.2);
    EXPECT_EQ(model->Now().part, (Span{0, model->Now().file->axis}));
    EXPECT_EQ(Told(Slot::Work), "");
}

TEST_F(StudioTest, SavesWhatTheCommandsMakeAndPlaysWhatTheyPlay)
{
    const auto song = Wave("song.wav", 6);
    model->Open(song);
    model->SetKind(Kind::Music);
    model->SetRate(kSlow);
    ASSERT_TRUE(Until([](const State& now) { return now.part.Length() > 0; }));
    model->SetPart({0.25, 3.125});
    const std::string prepare = PREPARE_PROGRAM " song.wav --for music --rate 6000 --from 0.25 --to 3.125 ";
    for (const auto& [target, output, command] : std::vector<std::tuple<Target, Output, std::string>>{
             {Target::WithModule, Output::Recording, "A.wav"},
             {Target::WithModule, Output::SoundFile, "A.bin"},
             {Target::WithoutModule, Output::SoundFile, "A.bin --force --address C0C5"},
             {Target::PokEmul, Output::SoundFile, "A.bin --force --target pokemul"},
         }) {
        model->SetTarget(target);
        ASSERT_TRUE(UntilReady());
        model->Save(output, folder / "B", files::Existing::Replace);
        ASSERT_TRUE(Until([](const State& now) { return !now.saving.isGoing; }));
        EXPECT_EQ(Told(Slot::Saving), "B: Saved.");
        ASSERT_EQ(Run(prepare + "-o " + command), 0);
        EXPECT_EQ(Read(folder / "B"), Read(folder / command.substr(0, 5))) << command;
    }
    ASSERT_EQ(Run(PREVIEW_PROGRAM " A.bin -o C.wav"), 0);
    const auto played = Read(folder / "C.wav").substr(44);
    const auto& samples = model->Now().result->machine.samples;
    ASSERT_EQ(played.size(), 2 * samples.size());
    EXPECT_EQ(played, std::string(reinterpret_cast<const char*>(samples.data()), played.size()));
    EXPECT_NEAR(static_cast<double>(model->Now().result->source.samples.size()), 2.875 * 44100, 2);
    ASSERT_TRUE(Until([](const State& now) { return now.pictures != nullptr; }));
    EXPECT_NEAR(model->Now().pictures->pitch.at(40), 440, 3);  // at 0.65 s
    EXPECT_NEAR(model->Now().pictures->pitch.at(200), 880, 6); // at 2.25 s
    EXPECT_EQ(WorkText(model->Now(), Language::English), "Ready: plays for 2.9 s; one voice, which is followed");
}

TEST_F(StudioTest, NeverWritesOverTheOpenFile)
{
    const auto song = Wave("song.wav", 1);
    const auto bytes = Read(song);
    model->Open(song);
    ASSERT_TRUE(UntilReady());
    model->Save(Output::Recording, song, files::Existing::Replace);
    ASSERT_TRUE(UntilTold(Slot::Saving));
    EXPECT_EQ(Told(Slot::Saving), "song.wav: This is the open file itself. Take another name.");
    EXPECT_EQ(Read(song), bytes);
}

TEST_F(StudioTest, HasTheRecordingInAFolderWhileItRuns)
{
    model->Open(Wave("song.wav", 2));
    ASSERT_TRUE(UntilReady());
    EXPECT_EQ(model->SuggestedFile(Output::Recording), folder / "song-ready.wav");
    model->Save(Output::Recording, folder / "song-ready.wav", files::Existing::Refuse);
    ASSERT_TRUE(UntilTold(Slot::Saving));
    model->WantDragFile();
    ASSERT_TRUE(Until([](const State& now) { return !now.dragFile.empty(); }));
    const auto dragged = model->Now().dragFile;
    EXPECT_EQ(dragged.filename(), "song-ready.wav");
    EXPECT_EQ(Read(dragged), Read(folder / "song-ready.wav"));
    model->SetPart({1, 2});
    EXPECT_TRUE(model->Now().dragFile.empty());
    EXPECT_TRUE(std::filesystem::exists(dragged)) << "somebody may be fetching it";
}

TEST_F(StudioTest, ShowsASavedFile)
{
    model->Open(WriteFile("SOUND.bin", kSoundFile));
    ASSERT_TRUE(Until([](const State& now) { return now.pictures != nullptr; }));
    const auto& now = model->Now();
    EXPECT_EQ(now.result->prepared.runBytes.size(), 20U);
    EXPECT_EQ(now.meter.bytes, 152);
    EXPECT_EQ(now.part, (Span{0, now.result->prepared.seconds}));
    EXPECT_TRUE(now.result->source.samples.empty());
    EXPECT_EQ(ReportOf(now, Language::German),
              (std::vector<std::pair<std::string, std::string>>{{"Rechner", "PC-1600"},
                                                                {"Titel", "tone.wav"},
                                                                {"Ladeadresse", "80C5"},
                                                                {"Abtastrate", "11025 Hz"},
                                                                {"Schwingungen", "20"},
                                                                {"Dauer", "0,0 s"}}));
    for (const auto output : {Output::Recording, Output::SoundFile})
        EXPECT_FALSE(model->CanSave(output));
    model->SetKind(Kind::Speech); // for the next sound
    model->SetPart({0, 0.01});
    EXPECT_TRUE(now.isCurrent);

    auto elsewhere = kSoundFile;
    elsewhere.replace(8, 2, "\xC5\xC0").replace(11, 2, "\xC5\xC0");
    model->Open(WriteFile("C0C5.bin", elsewhere));
    ASSERT_TRUE(UntilTold(Slot::File));
    EXPECT_EQ(Told(Slot::File), "C0C5.bin: The program in this file doesn't run at the address where it is loaded.");
    EXPECT_TRUE(model->CanSave(Output::SoundFile));
    EXPECT_EQ(model->SuggestedFile(Output::SoundFile), folder / "C0C5-C0C5.bin");
    model->Save(Output::SoundFile, folder / "A.bin", files::Existing::Refuse);
    ASSERT_TRUE(UntilTold(Slot::Saving));
    ASSERT_EQ(Run(RELOCATE_PROGRAM " C0C5.bin"), 0);
    EXPECT_EQ(Read(folder / "A.bin"), Read(folder / "C0C5-C0C5.bin"));
}

TEST_F(StudioTest, LooksCloserThanTheOverview)
{
    model->Open(Wave("song.wav", 60));
    ASSERT_TRUE(Until([](const State& now) { return now.file && now.file->isRead; }));
    const Span period{40, 40 + 1 / 880.0};
    const auto coarse = model->Peaks(period, 26);
    model->LookAt(period, 26); // a sample each
    std::vector<Peak> fine;
    ASSERT_TRUE(Until([&](const State& /*now*/) { return (fine = model->Peaks(period, 26)) != coarse; }));
    int above = 0;
    for (const auto& peak : fine)
        above += peak.low > 0 ? 1 : 0;
    EXPECT_NEAR(above, 12, 2); // half a sine
    EXPECT_FALSE(model->Peaks({61, 62}, 1).front().IsThere());
}

} // namespace
