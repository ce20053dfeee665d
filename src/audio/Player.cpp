#include "audio/Player.h"

#include <SDL.h>

#include <bit>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace audio {
namespace {

using std::chrono::steady_clock;

/// What is shown where the library gives no reason.
std::runtime_error Failure(const char* otherwise)
{
    const std::string reason = SDL_GetError();
    return std::runtime_error(reason.empty() ? otherwise : reason);
}

/// The library, for as long as a device is open: another one may be there the next time.
class Library {
public:
    Library()
    {
        SDL_SetMainReady();
        SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1"); // Ctrl+C is the program's
        if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) throw Failure("No sound device was found.");
    }
    ~Library() { SDL_QuitSubSystem(SDL_INIT_AUDIO); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

/// What a device calls in its thread, to be given the next samples. Once it `hasGone`, nobody hears them any more.
using FillFunction = std::function<void(std::span<std::int16_t> buffer, bool hasGone)>;

/// The device that the system takes for sounds.
class Device {
public:
    Device(int rate, FillFunction fill) : fill_(std::move(fill))
    {
        SDL_AudioSpec wanted{};
        wanted.freq = rate;
        wanted.format = AUDIO_S16SYS;
        wanted.channels = 1;
        // 8 to 16 ms, so that with the one that is heard and one that waits a change is heard within 50 ms.
        wanted.samples = static_cast<Uint16>(std::bit_floor(static_cast<unsigned>(rate) / 62));
        wanted.callback = [](void* self, Uint8* bytes, int size) { static_cast<Device*>(self)->Fill(bytes, size); };
        wanted.userdata = this;
        id_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
        if (id_ == 0) throw Failure("The sound device can't be opened.");
        SDL_PauseAudioDevice(id_, 0); // from now on it calls
    }
    ~Device() { SDL_CloseAudioDevice(id_); }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

private:
    void Fill(Uint8* bytes, int size) const
    {
        // The library goes on calling for a device that has gone.
        fill_({reinterpret_cast<std::int16_t*>(bytes), static_cast<std::size_t>(size) / sizeof(std::int16_t)},
              SDL_GetAudioDeviceStatus(id_) != SDL_AUDIO_PLAYING);
    }

    Library library_;
    FillFunction fill_;
    SDL_AudioDeviceID id_ = 0;
};

} // namespace

struct Player::Impl {
    explicit Impl(int hertz) : rate(hertz), transport(hertz) {}

    /// In a thread of its own: opens a device whenever something is to be played.
    void Work()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return isEnding || transport.IsPlaying(); });
            if (isEnding) return;
            lock.unlock();
            std::string reason;
            try {
                PlayThroughDevice();
            } catch (const std::exception& error) {
                reason = error.what();
            }
            lock.lock();
            if (!reason.empty()) Fail(reason);
        }
    }

    void PlayThroughDevice()
    {
        const Device device(rate, [this](auto buffer, bool hasGone) { Fill(buffer, hasGone); });
        std::unique_lock lock(mutex); // let go of before the device is closed, which waits for its thread
        changed.wait(lock, [this] { return isEnding || !transport.IsPlaying(); });
    }

    void Fill(std::span<std::int16_t> buffer, bool hasGone)
    {
        const std::lock_guard lock(mutex);
        if (hasGone && transport.IsPlaying()) Fail("The sound device has gone.");
        transport.Fill(buffer, steady_clock::now());
        if (!transport.IsPlaying()) changed.notify_one();
    }

    /// Requires: the mutex is held.
    void Fail(const std::string& reason)
    {
        failure = reason;
        transport.Stop(steady_clock::now());
    }

    const int rate;
    mutable std::mutex mutex; // of all below but the thread
    std::condition_variable changed;
    Transport transport;
    std::string failure;
    bool isEnding = false;
    std::thread thread;
};

Player::Player(int rate) : impl_(std::make_unique<Impl>(rate))
{
    impl_->thread = std::thread([impl = impl_.get()] {
        impl->Work();
        SDL_TLSCleanup(); // the library's last error; its own threads do so by themselves
    });
}

Player::~Player()
{
    {
        const std::lock_guard lock(impl_->mutex);
        impl_->isEnding = true;
    }
    impl_->changed.notify_one();
    impl_->thread.join();
}

void Player::Put(std::size_t which, Sound sound)
{
    auto shared = std::make_shared<const Sound>(std::move(sound));
    std::shared_ptr<const Sound> before; // deleted without the lock
    const std::lock_guard lock(impl_->mutex);
    before = impl_->transport.Put(which, std::move(shared));
}

void Player::Select(std::size_t which)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->transport.Select(which);
}

void Player::Repeat(const std::optional<Range>& range)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->transport.Repeat(range);
}

void Player::SetVolume(double volume)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->transport.SetVolume(volume);
}

void Player::Play(double from)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->failure.clear();
    impl_->transport.Play(from);
    impl_->changed.notify_one();
}

void Player::Stop()
{
    const std::lock_guard lock(impl_->mutex);
    impl_->transport.Stop(steady_clock::now());
    impl_->changed.notify_one();
}

Status Player::Now() const
{
    const std::lock_guard lock(impl_->mutex);
    return {.isPlaying = impl_->transport.IsPlaying(),
            .place = impl_->transport.Place(steady_clock::now()),
            .failure = impl_->failure};
}

} // namespace audio
