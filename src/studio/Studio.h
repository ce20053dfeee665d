// Studio.h: the studio without its window: an open file, the part of it that is chosen, what is made of it.
//     window's thread   calls the members, shows Now()
//     other threads     read, prepare, draw, save; what they have found waits until the window's thread calls Pump()
// No member waits for a file or a calculation. A change cancels the work that it makes useless; what such work has
// found meanwhile is never shown. What goes wrong is a Notice in Now(), and leaves open what was open.
#pragma once

#include "files/Files.h"
#include "studio/State.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace studio {

/// Whether a change goes on with the one before: Undo takes back the whole of a drag.
enum class Gesture { New, GoesOn };

/// What the studio needs of whoever shows it.
struct Surroundings {
    /// Called when there is something for Pump, in any thread, and not again before Pump. It must not call a member.
    std::function<void()> wake;
    /// A file's name without folders, composed (NFC), as UTF-8 whatever bytes it is made of.
    std::function<std::string(const std::filesystem::path& path)> nameOf;
    /// Where folders for files that are dragged out are made; those that a killed run has left there are removed.
    std::filesystem::path temporary = std::filesystem::temp_directory_path();
};

class Studio {
public:
    explicit Studio(Surroundings surroundings);
    /// Cancels all. A thread that a file system keeps for more than a second isn't waited for.
    ~Studio();
    Studio(const Studio&) = delete;
    Studio& operator=(const Studio&) = delete;

    [[nodiscard]] const State& Now() const;
    /// Takes what the threads have found. Whether Now() has changed.
    bool Pump();

    /// A sound, or a saved sound file. Once it is known that it can be read it is the open one.
    void Open(const std::filesystem::path& path);

    // The part. All is done as far as the file goes: ends that lie outside or cross are put right, times are rounded to
    // the millisecond. Nothing happens without a file, or with a saved sound file.
    void SetPart(Span part, Gesture gesture = Gesture::New);
    /// As the command takes times: "65", "1:05", "1:05.5". False where it is no time, or leaves nothing of the part.
    [[nodiscard]] bool TypeFrom(std::string_view time);
    [[nodiscard]] bool TypeTo(std::string_view time);
    void TakeWhole();
    /// Requires: Now().meter.fits is more than 0.
    void TakeWhatFits();
    /// Takes back the last change of the part; a second time, what was taken back.
    void Undo();

    void SetKind(prepare::Kind kind);
    void SetTarget(Target target);
    void SetRate(const machine::SampleRate& rate);

    /// Stops the preparing. The result of before stays, as one that isn't current.
    void Cancel();
    /// After Cancel, and where a file has come back.
    void PrepareAgain();

    /// The waveform as it is known now, for so many columns. Requires: `span` isn't empty.
    [[nodiscard]] std::vector<Peak> Peaks(const Span& span, std::size_t columns) const;
    /// Where columns of the picture are narrower than the waveform is fine, reads the stretch anew: Peaks then has it.
    void LookAt(const Span& span, std::size_t columns);

    /// A good name for it, beside the file that is open.
    [[nodiscard]] std::filesystem::path SuggestedFile(Output output) const;
    /// Whether there is something to save now.
    [[nodiscard]] bool CanSave(Output output) const;
    /// Writes it in a thread, whole or not at all; Now().saving, and then a notice. Nothing where it can't be saved, or
    /// where another save is going on.
    void Save(Output output, const std::filesystem::path& path, files::Existing existing);
    /// What is sent to the machine: of a saved file for a PC-1600 it, laid out for its address, of a part its sound
    /// file. Empty where there is no such thing now.
    struct Parcel {
        std::function<std::string()> bytes; // to be called in any thread
        std::uint16_t loadAddress;
    };
    [[nodiscard]] std::optional<Parcel> ForTheMachine() const;
    /// Writes the recording for a drag, in a thread: Now().dragFile is it. To be asked when the mouse goes down, so
    /// that it is there when the drag begins.
    void WantDragFile();

    /// The notice was read.
    void Dismiss(Notice::Slot slot);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace studio
