// A front end of its own, without the command's options and words: reads, prepares, tells progress and can be stopped.
#include "prepare/Prepare.h"
#include "support/KnownFile.h"
#include "support/SoundFiles.h"

#include <gmock/gmock.h>

namespace {

using namespace prepare;

struct FrontEnd {
    std::vector<double> told;
    double stopsAt = 2;

    /// What becomes of a second of the file: the seconds that it plays; -1 where it was stopped, -2 where refused.
    double Run(const std::filesystem::path& file, Kind kind, std::size_t mostRunBytes)
    {
        const core::Progress progress([&](double done) { return told.push_back(done), done < stopsAt; });
        auto read = sound::ReadSound(file, {.from = 0.5, .length = 1}, 48, progress.Stage(0, 0.5));
        if (const auto* const refusal = std::get_if<sound::Refusal>(&read))
            return refusal->kind == sound::Refusal::Kind::Stopped ? -1 : -2;
        const Job job{.recording = std::move(std::get<sound::Recording>(read)),
                      .kind = kind,
                      .limits = {.playback = {machine::kSampleRates.back(), {}}, .runBytes = mostRunBytes}};
        const auto made = Prepare(job, progress.Stage(0.5, 1));
        if (const auto* const refusal = std::get_if<Refusal>(&made))
            return refusal->kind == Refusal::Kind::Stopped ? -1 : -2;
        return std::get<Prepared>(made).seconds;
    }
};

class FrontEndTest : public testing::TestWithParam<Kind> {
protected:
    ~FrontEndTest() override { std::filesystem::remove_all(folder); }
    const std::filesystem::path folder = NewFolder();
    const std::filesystem::path file = WriteTone(folder / "tone.mp3", kMp3, {.seconds = 2});
};
INSTANTIATE_TEST_SUITE_P(Kinds, FrontEndTest, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return std::string(NameOf(kind.param)); });

TEST_P(FrontEndTest, IsToldOfEachStageAndEndsItWhereItSaysSo)
{
    // The tone is one voice, and of music that comes sooner to its end.
    const auto step = GetParam() == Kind::Music ? 0.45 : 0.18;
    for (const std::size_t mostRunBytes : {28000U, 300U}) { // with room, and where the search for a price begins
        FrontEnd whole;
        EXPECT_NEAR(whole.Run(file, GetParam(), mostRunBytes), 1, 0.5);
        EXPECT_TRUE(std::ranges::is_sorted(whole.told));
        EXPECT_EQ(whole.told.back(), 1);
        for (std::size_t i = 1; i < whole.told.size(); ++i)
            EXPECT_LE(whole.told[i] - whole.told[i - 1], step) << "behind " << whole.told[i - 1];
        for (const auto stop : {0.0, 0.25, 0.55, 0.7, 0.9, 1.0}) {
            FrontEnd stopped{.told = {}, .stopsAt = stop};
            EXPECT_EQ(stopped.Run(file, GetParam(), mostRunBytes), -1) << stop;
            EXPECT_THAT(stopped.told.back(), testing::AllOf(testing::Ge(stop), testing::Le(stop + step)));
        }
    }
}

/// "a SEPARATOR b LAST c".
std::string Joined(const std::vector<std::string>& names, const std::string& separator, const std::string& last)
{
    auto all = names.front();
    for (std::size_t i = 1; i < names.size(); ++i)
        all += (i + 1 == names.size() ? last : separator) + names[i];
    return all;
}

TEST(Documents, NameEachKindAndEachRate)
{
    const auto manual = Read(MANUAL_PAGE);
    const auto readme = Read(README);
    std::vector<std::string> kinds;
    for (const auto kind : kKinds) {
        kinds.emplace_back(NameOf(kind));
        EXPECT_NE(readme.find("\n| `" + kinds.back() + '`'), std::string::npos) << kinds.back();
    }
    std::vector<std::string> rates;
    for (const auto& rate : machine::kSampleRates) {
        rates.push_back(std::to_string(rate.hertz));
        EXPECT_NE(readme.find(std::to_string(static_cast<int>(MostSeconds({rate, {}}))) + " at " + rates.back()),
                  std::string::npos)
            << rates.back();
    }
    for (const auto& choice :
         {"\"\\-\\-for " + Joined(kinds, " | ", " | "), "\"\\-\\-rate " + Joined(rates, " | ", " | ")}) {
        auto quoted = choice;
        quoted.insert(quoted.find(" |"), "\"");
        EXPECT_NE(manual.find(quoted + '\n'), std::string::npos) << quoted;
        EXPECT_NE(manual.find(".RB [ " + quoted + " ]"), std::string::npos) << quoted;
    }
}

} // namespace
