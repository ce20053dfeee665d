#include "studio/Studio.h"

#include "core/SoundFileHeader.h"
#include "core/TimeText.h"
#include "files/TemporaryFolder.h"
#include "studio/Jobs.h"
#include "studio/Tasks.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <new>
#include <utility>

namespace studio {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Slot = Notice::Slot;

constexpr double kShortestPart = 0.01; // seconds: a few periods of the lowest tone
constexpr float kAudible = 0.01F;      // of full scale, -40 dB: where a song is taken to begin

double Milliseconds(double seconds)
{
    return std::round(seconds * 1000) / 1000;
}

double Floored(double seconds)
{
    return std::floor(seconds * 1000) / 1000;
}

/// What threads write: one file at a time, since `files` looks after one half file only.
struct Writing {
    explicit Writing(fs::path temporary) : parent(std::move(temporary)) {}

    /// Made at the first call. Requires: the caller has the mutex.
    files::TemporaryFolder& Folder()
    {
        if (!folder) folder.emplace(parent, "tonfloss-studio-");
        return *folder;
    }

    std::mutex mutex;
    fs::path parent;
    std::optional<files::TemporaryFolder> folder;
};

} // namespace

struct Studio::Impl {
    explicit Impl(Surroundings given)
        : mailbox(std::make_shared<Mailbox>(std::move(given.wake))),
          writing(std::make_shared<Writing>(std::move(given.temporary))),
          nameOf(std::move(given.nameOf))
    {}

    // What is told.
    void Tell(Slot slot, Notice notice) { state.notices[static_cast<std::size_t>(slot)] = std::move(notice); }
    void Forget(Slot slot) { state.notices[static_cast<std::size_t>(slot)].reset(); }
    void TellFailure(Slot slot, const std::string& file, const Failure& failure);

    // The file.
    struct Opening { // for the owner's thread
        fs::path path;
        bool isOpen = false;
    };
    void Open(const fs::path& path);
    void HasOpened(Opening& newest, const files::FileState& found);
    void TakeSaved(const preview::SoundFile& saved, std::shared_ptr<const Result> result);
    void Grow(const Overview& overview);
    void EndReading(const std::variant<sound::Stretch, sound::Refusal>& read);
    void EndOpening(const Opening& newest);
    [[nodiscard]] bool HasSound() const { return state.file && !state.file->saved; }

    // The part.
    struct Chosen {
        Span part;
        bool isWhole = false;
        bool isByUs = true; // nobody has chosen one yet: it follows what fits
    };
    [[nodiscard]] Chosen Now() const { return {state.part, state.isWhole, isByUs}; }
    [[nodiscard]] double FirstSound() const;
    [[nodiscard]] Chosen Within(Chosen chosen) const;
    /// Takes it as far as the file goes, and prepares it.
    void Choose(const Chosen& chosen);
    void ChooseByUs();
    void ChangeSettings();

    // The work.
    void Prepare();
    void StopPreparing();
    void TakeMade(const std::variant<Made, sound::Refusal, prepare::Refusal, Event>& made);
    void TakeResult(std::shared_ptr<const Result> result);
    void TakeTooLong(double fits, const Notice& notice);
    void Measure();

    /// What gives the bytes, in any thread; none where there is nothing to save.
    [[nodiscard]] std::function<std::string()> BytesOf(Output output) const;

    std::shared_ptr<Mailbox> mailbox;
    std::shared_ptr<Writing> writing;
    std::function<std::string(const fs::path&)> nameOf;
    State state;
    files::FileState fileState;             // when it was opened
    bool tellsLength = false;               // the axis is as long as the file says
    bool isDamaged = false;                 // where the axis ends
    bool isTurned = false;                  // as the overview
    bool isByUs = true;                     // as Chosen has it
    std::optional<Chosen> gestureBegan;     // with this part
    std::optional<Chosen> before;           // of the last change of the part
    std::shared_ptr<const Waveform> closer; // a stretch of the file
    Span lookedAt;                          // which one, or which is being read

    // The newest file is read beside the one that is open, until it is known to be a sound. New ones for a new file: no
    // file system that doesn't answer holds it up.
    std::unique_ptr<Task> opening = std::make_unique<Task>(mailbox);
    std::unique_ptr<Task> reading = std::make_unique<Task>(mailbox);
    std::unique_ptr<Task> preparing = std::make_unique<Task>(mailbox);
    std::unique_ptr<Task> looking = std::make_unique<Task>(mailbox);
    Task saving{mailbox};
    Task dragging{mailbox};
    Task cleaning{mailbox};
};

void Studio::Impl::TellFailure(Slot slot, const std::string& file, const Failure& failure)
{
    Notice notice{.file = failure.file.empty() ? file : nameOf(failure.file), .what = {}};
    std::visit([&](const auto& what) { notice.what = what; }, failure.what);
    Tell(slot, std::move(notice));
}

void Studio::Impl::Open(const fs::path& path)
{
    auto newest = std::make_shared<Opening>(Opening{.path = path});
    state.opening = nameOf(path);
    Forget(Slot::File);
    const auto refuse = [this, newest](Notice notice) {
        state.opening.clear();
        notice.file = nameOf(newest->path);
        Tell(Slot::File, std::move(notice));
    };
    const auto job = [this, newest, path, refuse](const Task::Post& post) {
        const auto found = files::StateOf(path);
        const auto opened = OpenSaved(path);
        if (const auto* const event = std::get_if<Event>(&opened))
            return post.Tell([refuse, event = *event] { refuse({.file = {}, .what = event}); });
        if (const auto* const saved = std::get_if<preview::SoundFile>(&opened)) {
            const auto result = ResultOf(*saved, post.Silent());
            post.Tell([this, newest, found, saved = *saved, result] {
                HasOpened(*newest, found);
                TakeSaved(saved, result);
            });
            const auto pictures = Draw(*result, {}, post.Silent());
            return post.Tell([this, pictures] { state.pictures = pictures; });
        }
        const auto grown = [&](const Overview& overview) {
            post.TellProgress([this, newest, found, overview] {
                HasOpened(*newest, found);
                Grow(overview);
            });
        };
        const auto read = ReadOverview(path, grown, post.Silent());
        post.Tell([this, newest, opened, read, refuse] {
            const auto* const refusal = std::get_if<preview::Refusal>(&opened);
            if (newest->isOpen)
                EndReading(read);
            else if (refusal != nullptr)
                refuse({.file = {}, .what = *refusal});
            else
                refuse({.file = {}, .what = std::get<sound::Refusal>(read)});
        });
    };
    opening = std::make_unique<Task>(mailbox);
    opening->Start(job, [this, newest](const Failure& failure) {
        TellFailure(Slot::File, nameOf(newest->path), failure);
        EndOpening(*newest);
    });
}

/// At the first news of it. From here on the file before is closed.
void Studio::Impl::HasOpened(Opening& newest, const files::FileState& found)
{
    if (std::exchange(newest.isOpen, true)) return;
    state.opening.clear();
    reading = std::exchange(opening, std::make_unique<Task>(mailbox));
    preparing = std::make_unique<Task>(mailbox);
    looking = std::make_unique<Task>(mailbox);
    dragging.Cancel();
    auto kept = std::exchange(state, {});
    state.settings = kept.settings;
    state.saving = kept.saving;
    state.notices[static_cast<std::size_t>(Slot::Saving)] =
        std::move(kept.notices[static_cast<std::size_t>(Slot::Saving)]);
    state.file.emplace();
    state.file->path = newest.path;
    state.file->name = nameOf(newest.path);
    state.reading = {.isGoing = true, .done = 0, .since = Clock::now()};
    fileState = found;
    tellsLength = isDamaged = isTurned = false;
    isByUs = true;
    gestureBegan.reset();
    before.reset();
    closer.reset();
    lookedAt = {};
    Measure();
}

void Studio::Impl::EndOpening(const Opening& newest)
{
    if (!newest.isOpen) return state.opening.clear();
    state.reading.isGoing = false;
    state.file->isRead = true; // no more will come
    state.file->axis = state.file->seconds;
}

void Studio::Impl::TakeSaved(const preview::SoundFile& saved, std::shared_ptr<const Result> result)
{
    auto& file = *state.file;
    file.saved = std::make_shared<const preview::SoundFile>(saved);
    file.rate = saved.sampleRate.hertz;
    file.seconds = file.axis = result->prepared.seconds;
    file.waveform = WaveformOf(result->machine, result->part);
    file.isRead = true;
    state.reading.isGoing = false;
    state.part = result->part;
    state.isWhole = true;
    TakeResult(std::move(result));
    if (IsLaidOutWrong(saved)) Tell(Slot::File, {.file = file.name, .what = Event::WrongAddress});
    if (saved.runBytes.empty()) Tell(Slot::File, {.file = file.name, .what = Event::NoPeriod});
}

void Studio::Impl::Grow(const Overview& overview)
{
    auto& file = *state.file;
    file.rate = overview.rate;
    file.channels = overview.channels;
    file.waveform = overview.waveform;
    file.seconds = overview.waveform->Covered().to;
    tellsLength = overview.expected.has_value();
    file.axis = std::max({overview.expected.value_or(0), file.seconds, file.axis});
    isTurned = overview.isTurned;
    state.reading.done = file.seconds / file.axis;
    if (state.part.Length() == 0) ChooseByUs();
}

void Studio::Impl::EndReading(const std::variant<sound::Stretch, sound::Refusal>& read)
{
    auto& file = *state.file;
    file.isRead = true;
    state.reading.isGoing = false;
    if (const auto* const refusal = std::get_if<sound::Refusal>(&read)) {
        isDamaged = true;
        if (refusal->seconds > 0) file.seconds = std::min(file.seconds, refusal->seconds);
        Tell(Slot::File, {.file = file.name, .what = *refusal});
    } else {
        const auto& stretch = std::get<sound::Stretch>(read);
        file.seconds = stretch.length;
        if (stretch.isJoined) Tell(Slot::File, {.file = file.name, .what = Event::OtherJoined});
        if (stretch.told) Tell(Slot::File, {.file = file.name, .what = Event::ToldLonger, .seconds = *stretch.told});
    }
    file.axis = file.seconds;
    if (isByUs && (state.part.Length() == 0 || (isDamaged && state.isWhole))) return ChooseByUs();
    // What was taken up to a guessed end goes on as it is: its work ends where the sound does.
    if (state.isWhole || state.part.to > file.axis) state.part.to = file.axis;
    if (state.part.from > file.axis - kShortestPart) {
        isByUs = true;
        ChooseByUs();
    }
}

double Studio::Impl::FirstSound() const
{
    const auto first = Floored(state.file->waveform->FirstAbove(kAudible));
    return first + kShortestPart < state.file->seconds ? first : 0;
}

/// `chosen` as far as the file goes.
Studio::Impl::Chosen Studio::Impl::Within(Chosen chosen) const
{
    const auto end = state.file->axis;
    auto [from, to] = chosen.part;
    if (from > to) std::swap(from, to);
    from = std::clamp(Milliseconds(from), 0.0, std::max(0.0, Floored(end - kShortestPart)));
    to = std::min(std::max(Milliseconds(to), Milliseconds(from + kShortestPart)), end);
    const bool knowsEnd = state.file->isRead || tellsLength;
    chosen.isWhole = !isDamaged && (chosen.isWhole || (from == 0 && to == end && knowsEnd));
    chosen.part = chosen.isWhole ? Span{.from = 0, .to = end} : Span{.from = from, .to = to};
    return chosen;
}

void Studio::Impl::Choose(const Chosen& chosen)
{
    const auto within = Within(chosen);
    state.part = within.part;
    state.isWhole = within.isWhole;
    isByUs = within.isByUs;
    Prepare();
}

/// The whole, or where that can't fit as much from the first sound on as may fit; nothing before that is known.
void Studio::Impl::ChooseByUs()
{
    if (!HasSound() || !state.file->waveform) return;
    const auto& file = *state.file;
    const auto most = MostSecondsFor(state.settings);
    if ((file.isRead || tellsLength) && file.axis <= most)
        return Choose({.part = {.from = 0, .to = file.axis}, .isWhole = true});
    if (!file.isRead && file.axis <= most) return;
    if (!file.isRead && file.waveform->FirstAbove(kAudible) >= file.seconds) return; // silent so far
    const auto first = FirstSound();
    state.file->axis = std::max(file.axis, file.isRead ? 0 : first + most);
    Choose({.part = {.from = first, .to = first + most}});
}

void Studio::Impl::ChangeSettings()
{
    Measure();
    if (!HasSound()) return;
    StopPreparing();
    if (isByUs)
        ChooseByUs();
    else
        Prepare();
}

void Studio::Impl::StopPreparing()
{
    preparing->Cancel();
    state.preparing.isGoing = false;
    state.isCurrent = false;
    state.meter.fits.reset();
    Forget(Slot::Work);
    dragging.Cancel();
    state.dragFile.clear();
}

void Studio::Impl::Prepare()
{
    StopPreparing();
    const auto& file = *state.file;
    const bool toEnd = state.isWhole || (!isDamaged && file.isRead && state.part.to >= file.axis);
    const Request request{
        .path = file.path, .state = fileState, .part = state.part, .toEnd = toEnd, .settings = state.settings};
    state.preparing = {.isGoing = true, .done = 0, .since = Clock::now()};
    const auto job = [this, request](const Task::Post& post) {
        const auto progress = post.Progress([this](double done) {
            if (state.preparing.isGoing) state.preparing.done = done;
        });
        const auto made = Make(request, progress);
        post.Tell([this, made] { TakeMade(made); });
        const auto* const done = std::get_if<Made>(&made);
        if (done == nullptr) return;
        const auto pictures = Draw(*done->result, *done->samples, post.Silent());
        post.Tell([this, pictures] { state.pictures = pictures; });
    };
    preparing->Start(job, [this](const Failure& failure) {
        state.preparing.isGoing = false;
        TellFailure(Slot::Work, state.file->name, failure);
    });
}

void Studio::Impl::TakeMade(const std::variant<Made, sound::Refusal, prepare::Refusal, Event>& made)
{
    state.preparing.isGoing = false;
    const auto& name = state.file->name;
    if (const auto* const done = std::get_if<Made>(&made)) {
        TakeResult(done->result);
    } else if (const auto* const unread = std::get_if<sound::Refusal>(&made)) {
        using enum sound::Refusal::Kind;
        const bool isTooLong = unread->kind == TooLong || unread->kind == EndlesslyLong;
        if (isTooLong)
            TakeTooLong(unread->most, {.file = name, .what = *unread});
        else
            Tell(Slot::Work, {.file = name, .what = *unread});
    } else if (const auto* const unmade = std::get_if<prepare::Refusal>(&made)) {
        if (unmade->kind == prepare::Refusal::Kind::TooManyBytes)
            TakeTooLong(unmade->seconds, {.file = name, .what = *unmade});
        else
            Tell(Slot::Work, {.file = name, .what = *unmade});
    } else {
        Tell(Slot::Work, {.file = name, .what = std::get<Event>(made)});
    }
}

void Studio::Impl::TakeResult(std::shared_ptr<const Result> result)
{
    state.result = std::move(result);
    state.isCurrent = true;
    state.pictures.reset();
    Measure();
}

/// `fits`: so many seconds from the part's beginning on.
void Studio::Impl::TakeTooLong(double fits, const Notice& notice)
{
    state.meter.fits = fits;
    Tell(Slot::Work, notice);
    if (!isByUs || fits < kShortestPart) return;
    const auto from = state.isWhole ? FirstSound() : state.part.from;
    Choose({.part = {.from = from, .to = from + fits}});
}

void Studio::Impl::Measure()
{
    const auto* const result = state.result.get();
    const auto& settings = HasSound() || result == nullptr ? state.settings : result->settings;
    auto& meter = state.meter;
    meter = {.room = RoomOf(settings.target), .fits = meter.fits};
    if (result == nullptr) return;
    meter.bytes = SizeOf(result->prepared.runBytes.size(), settings.target);
    meter.seconds = result->prepared.seconds;
    const auto perByte = meter.seconds / static_cast<double>(result->prepared.runBytes.size() + 1);
    const auto room = perByte * static_cast<double>(meter.room - meter.bytes);
    meter.moreSeconds = std::clamp(room, 0.0, std::max(0.0, MostSecondsFor(settings) - result->part.Length()));
}

std::function<std::string()> Studio::Impl::BytesOf(Output output) const
{
    if (!state.file || !state.isCurrent) return {};
    if (const auto saved = state.file->saved) {
        if (output == Output::Recording || !IsLaidOutWrong(*saved)) return {};
        return [saved] { return SoundFileBytesOf(*saved); };
    }
    if (output == Output::Recording) return [result = state.result] { return RecordingBytesOf(*result); };
    const auto name = nameOf(state.file->path.stem());
    return [result = state.result, name = fs::path(std::u8string(name.begin(), name.end())).u32string()] {
        return SoundFileBytesOf(*result, name);
    };
}

Studio::Studio(Surroundings surroundings) : impl_(std::make_unique<Impl>(std::move(surroundings)))
{
    impl_->Measure();
    const auto clean = [writing = impl_->writing](const Task::Post& /*post*/) {
        const std::lock_guard lock(writing->mutex);
        static_cast<void>(writing->Folder());
    };
    impl_->cleaning.Start(clean, [](const Failure& /*failure*/) {}); // what is left is left
}

Studio::~Studio()
{
    constexpr std::chrono::seconds kLongest{1};
    const auto mailbox = impl_->mailbox;
    mailbox->Close();
    impl_.reset();
    mailbox->WaitForThreads(kLongest);
}

const State& Studio::Now() const
{
    return impl_->state;
}

bool Studio::Pump()
{
    return impl_->mailbox->Deliver();
}

void Studio::Open(const fs::path& path)
{
    impl_->Open(path);
}

void Studio::SetPart(Span part, Gesture gesture)
{
    if (!impl_->HasSound() || impl_->state.part.Length() == 0) return;
    if (gesture == Gesture::New || !impl_->gestureBegan) impl_->gestureBegan = impl_->Now();
    const auto chosen = impl_->Within({.part = part, .isWhole = false, .isByUs = false});
    if (chosen.part == impl_->state.part && chosen.isWhole == impl_->state.isWhole) return;
    impl_->before = impl_->gestureBegan;
    impl_->state.canUndo = true;
    impl_->Choose(chosen);
}

bool Studio::TypeFrom(std::string_view time)
{
    const auto seconds = core::SecondsOf(time);
    const auto to = impl_->state.part.to;
    if (!seconds || *seconds > to - kShortestPart) return false;
    SetPart({.from = *seconds, .to = to});
    return true;
}

bool Studio::TypeTo(std::string_view time)
{
    const auto seconds = core::SecondsOf(time);
    const auto from = impl_->state.part.from;
    if (!seconds || *seconds < from + kShortestPart) return false;
    SetPart({.from = from, .to = *seconds});
    return true;
}

void Studio::TakeWhole()
{
    if (impl_->HasSound()) SetPart({.from = 0, .to = impl_->state.file->axis});
}

void Studio::TakeWhatFits()
{
    const auto& state = impl_->state;
    if (state.meter.fits) SetPart({.from = state.part.from, .to = state.part.from + *state.meter.fits});
}

void Studio::Undo()
{
    if (!impl_->HasSound() || !impl_->before) return;
    const auto now = impl_->Now();
    impl_->Choose(*std::exchange(impl_->before, now));
}

void Studio::SetKind(prepare::Kind kind)
{
    if (std::exchange(impl_->state.settings.kind, kind) != kind) impl_->ChangeSettings();
}

void Studio::SetTarget(Target target)
{
    if (std::exchange(impl_->state.settings.target, target) != target) impl_->ChangeSettings();
}

void Studio::SetRate(const machine::SampleRate& rate)
{
    if (std::exchange(impl_->state.settings.rate, rate).hertz != rate.hertz) impl_->ChangeSettings();
}

void Studio::Cancel()
{
    if (!impl_->state.preparing.isGoing) return;
    impl_->StopPreparing();
    impl_->Tell(Slot::Work, {.file = impl_->state.file->name, .what = Event::Stopped});
}

void Studio::PrepareAgain()
{
    if (impl_->HasSound() && impl_->state.part.Length() > 0) impl_->Prepare();
}

std::vector<Peak> Studio::Peaks(const Span& span, std::size_t columns) const
{
    const auto* const overview = impl_->state.file ? impl_->state.file->waveform.get() : nullptr;
    if (overview == nullptr) return std::vector<Peak>(columns);
    const auto* const closer = impl_->closer.get();
    const auto end = std::min(span.to, impl_->state.file->seconds);
    const bool isCloser = closer != nullptr && closer->Covered().from <= std::max(span.from, 0.0) &&
                          closer->Covered().to >= end - overview->SecondsPerBin() &&
                          closer->SecondsPerBin() < overview->SecondsPerBin();
    return (isCloser ? closer : overview)->Columns(span, columns);
}

void Studio::LookAt(const Span& span, std::size_t columns)
{
    const auto& state = impl_->state;
    if (!state.file || !state.file->waveform) return;
    const auto column = span.Length() / static_cast<double>(columns);
    if (column >= state.file->waveform->SecondsPerBin()) return;
    const Span part{.from = std::max(0.0, span.from), .to = std::min(span.to, state.file->seconds)};
    const auto& known = impl_->lookedAt;
    constexpr double kCoarse = 3; // times: what is finer is shown well enough
    const bool isKnown = known.from <= part.from && known.to >= part.to && known.Length() <= kCoarse * part.Length();
    if (part.Length() <= 0 || isKnown) return;
    // A little more than is seen, so that it stays there while the picture is moved.
    const auto margin = part.Length() / 2;
    const Span read{.from = std::max(0.0, part.from - margin), .to = part.to + margin};
    impl_->lookedAt = read;
    if (state.file->saved) {
        impl_->closer = WaveformOf(state.result->machine, read);
        return;
    }
    const auto job = [impl = impl_.get(), read, path = state.file->path,
                      isTurned = impl_->isTurned](const Task::Post& post) {
        const auto closer = ReadClosely(path, read, isTurned, post.Silent());
        post.Tell([impl, closer] { impl->closer = closer; });
    };
    // What can't be read is shown less closely, and told when it is prepared.
    impl_->looking->Start(job, [impl = impl_.get()](const Failure& /*failure*/) { impl->lookedAt = {}; });
}

fs::path Studio::SuggestedFile(Output output) const
{
    if (!impl_->state.file) return {};
    const auto& path = impl_->state.file->path;
    auto name = path.stem();
    if (impl_->state.file->saved)
        name += std::string("-").append(AddressTextOf(*impl_->state.file->saved)).append(".bin");
    else
        name += output == Output::Recording ? "-ready.wav" : ".bin";
    return path.parent_path() / name;
}

bool Studio::CanSave(Output output) const
{
    return impl_->BytesOf(output) != nullptr;
}

void Studio::Save(Output output, const fs::path& path, files::Existing existing)
{
    const auto bytes = impl_->BytesOf(output);
    if (!bytes || impl_->state.saving.isGoing) return;
    impl_->Forget(Slot::Saving);
    impl_->state.saving = {.isGoing = true, .done = 0, .since = Clock::now()};
    const auto job = [impl = impl_.get(), bytes, path, existing, writing = impl_->writing,
                      source = impl_->state.file->path](const Task::Post& post) {
        const auto write = [&](const files::ByteSink& sink) { sink(bytes()); };
        {
            const std::lock_guard lock(writing->mutex);
            files::Write(path, existing, write, {source});
        }
        post.Tell([impl, path] {
            impl->state.saving.isGoing = false;
            impl->Tell(Slot::Saving, {.file = impl->nameOf(path), .what = Event::Saved});
        });
    };
    impl_->saving.Start(job, [impl = impl_.get(), path](const Failure& failure) {
        impl->state.saving.isGoing = false;
        impl->TellFailure(Slot::Saving, impl->nameOf(path), failure);
    });
}

std::optional<Studio::Parcel> Studio::ForTheMachine() const
{
    const auto& state = impl_->state;
    if (!state.file || !state.isCurrent) return std::nullopt;
    if (const auto saved = state.file->saved) {
        if (!saved->loadAddress) return std::nullopt;
        return Parcel{.bytes = [saved] { return SoundFileBytesOf(*saved); },
                      .loadAddress = static_cast<std::uint16_t>(*saved->loadAddress)};
    }
    const auto address = AddressOf(state.settings.target);
    if (!address) return std::nullopt;
    return Parcel{.bytes = impl_->BytesOf(Output::SoundFile), .loadAddress = static_cast<std::uint16_t>(*address)};
}

void Studio::WantDragFile()
{
    const auto bytes = impl_->BytesOf(Output::Recording);
    if (!bytes || !impl_->state.dragFile.empty() || impl_->dragging.IsGoing()) return;
    const auto job = [impl = impl_.get(), bytes, writing = impl_->writing,
                      name = SuggestedFile(Output::Recording).filename()](const Task::Post& post) {
        fs::path file;
        {
            const std::lock_guard lock(writing->mutex);
            file = writing->Folder().NewPlace() / name;
            files::Write(file, files::Existing::Refuse, bytes());
        }
        post.Tell([impl, file] { impl->state.dragFile = file; });
    };
    impl_->dragging.Start(
        job, [impl = impl_.get()](const Failure& failure) { impl->TellFailure(Slot::Saving, {}, failure); });
}

void Studio::Dismiss(Notice::Slot slot)
{
    impl_->Forget(slot);
}

} // namespace studio
