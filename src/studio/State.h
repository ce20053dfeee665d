// State.h: all that the window shows, as values. Words.h has the words for it.
// Times are seconds of the file that is open, from its beginning on; names are UTF-8.
#pragma once

#include "files/Files.h"
#include "machine/RunBytes.h"
#include "prepare/Prepare.h"
#include "preview/SoundFile.h"
#include "sound/Refusal.h"
#include "studio/Span.h"
#include "studio/Spectrogram.h"
#include "studio/Waveform.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

namespace studio {

/// For which machine a sound is made.
enum class Target { WithModule, WithoutModule, PokEmul }; // the first two are PC-1600s
inline constexpr std::array kTargets{Target::WithModule, Target::WithoutModule, Target::PokEmul};

struct Settings {
    prepare::Kind kind = prepare::Kind::Speech;
    Target target = Target::WithModule;
    machine::SampleRate rate = machine::kSampleRates.back();
};

/// What can be saved.
enum class Output {
    Recording, // NAME-ready.wav, for the first window
    SoundFile, // NAME.bin, for the machine; of a saved file one that plays at its address
};

/// What may have to be told. None of these is an error of the program.
enum class Event {
    AlreadyPrepared, // the file is a recording that is ready for the first window
    FileChanged,     // by another program, since it was opened
    Stopped,         // by Cancel
    OtherJoined,     // another sound is joined to the one in the file, and isn't read
    ToldLonger,      // the file says that it lasts `seconds`, but there is less
    WrongAddress,    // the saved file's player is laid out for another address than the one in its header
    NoPeriod,        // the saved file plays nothing
    Saved,
    NoMemory,
};

/// What can't be done with a file, as files::IOException has it.
struct FileFailure {
    files::IOException::Kind kind;
    std::error_code error;
};

struct Notice {
    enum class Slot { File, Work, Saving }; // one notice each: what is told of a new one replaces the old one

    std::string file;                                                                                       // its name
    std::variant<Event, FileFailure, sound::Refusal, prepare::Refusal, preview::Refusal, std::string> what; // a string:
        // nobody expected it
    double seconds = 0;
};

/// The file that is open.
struct File {
    std::filesystem::path path;
    std::string name;
    std::shared_ptr<const preview::SoundFile> saved; // null: a sound; else a saved sound file
    std::int64_t rate = 0;                           // Hz; of a saved one, of its recording
    std::int64_t channels = 1;
    double seconds = 0;  // so far read; at the end, its length
    double axis = 0;     // where the ruler ends: the length, or while it is read what the file tells, or more
    bool isRead = false; // to its end, or to where it is damaged
    std::shared_ptr<const Waveform> waveform; // of what is read; null before the first samples have come
};

inline constexpr std::int64_t kListenRate = 44100; // Hz, of all that is played; tonfloss-preview's, too

/// A sound to be played as it is: 16 bits, mono, at kListenRate.
struct Playable {
    double from = 0; // where its first sample stands in the file
    std::vector<std::int16_t> samples;
};

/// What a part has become, or a saved file.
struct Result {
    Span part;         // of which it was made
    Settings settings; // for which
    prepare::Prepared prepared;
    Playable source;  // the part; of a saved file nothing
    Playable machine; // what the machine plays: the samples that tonfloss-preview writes
};

/// Of a result; they come a little later.
struct Pictures {
    Spectrogram source; // empty for a saved file
    Spectrogram machine;
    std::vector<float> pitch; // that is followed, in Hz, 0 where silent; empty but for a melody
    double pitchStep = 0;     // seconds from one to the next, from the part's beginning on
};

/// The present result against the room on the machine.
struct Meter {
    std::int64_t bytes = 0;     // of the sound file; 0 where there is no result
    std::int64_t room = 0;      // the most for the machine that is chosen
    double seconds = 0;         // that it plays
    double moreSeconds = 0;     // about so much more would fit
    std::optional<double> fits; // the part doesn't fit: so many seconds from its beginning on would; 0: not a tenth
};

/// What goes on in a thread.
struct Work {
    bool isGoing = false;
    double done = 0;                             // 0 to 1
    std::chrono::steady_clock::time_point since; // for a bar that comes only where it takes long
};

struct State {
    std::optional<File> file; // what was open stays where a new one can't be read
    std::string opening;      // the name of the file that is about to be opened; empty for none
    Settings settings;
    Span part;            // the chosen one; empty before it is known
    bool isWhole = false; // the part is all of the file, however long
    bool canUndo = false;
    Work reading;   // of the whole file
    Work preparing; // of the part
    Work saving;
    std::shared_ptr<const Result> result;     // the last one of this file; what is heard while another is prepared
    bool isCurrent = false;                   // the result is of this part and these settings, and can be saved
    std::shared_ptr<const Pictures> pictures; // of the result; null until they have come
    Meter meter;
    std::array<std::optional<Notice>, 3> notices; // by Notice::Slot
    std::filesystem::path dragFile; // the recording of the result in a folder of ours; empty until it is there

    [[nodiscard]] const std::optional<Notice>& Of(Notice::Slot slot) const
    {
        return notices[static_cast<std::size_t>(slot)];
    }
};

/// The most bytes that a sound file for `target` may have, as the machines count: for PokEmul without the player.
[[nodiscard]] std::int64_t RoomOf(Target target);

} // namespace studio
