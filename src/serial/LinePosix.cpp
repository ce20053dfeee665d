#include "serial/Line.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace serial {
namespace {

using enum Refusal::Kind;

constexpr std::array<speed_t, kBauds.size()> kSpeeds{B50,   B75,   B110,  B150,  B200,   B300,  B600,
                                                     B1200, B2400, B4800, B9600, B19200, B38400};

[[noreturn]] void Fail(Refusal::Kind kind, int error = errno)
{
    throw LineError(kind, {error, std::system_category()});
}

Refusal::Kind KindOfOpen(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENXIO: // a name without its device
    case ENODEV: return NoSuchPort;
    case EIO: return Lost; // the other end of a pseudo terminal is gone
    case EBUSY: return Busy;
    case EACCES:
    case EPERM: return NoRights;
    case EISDIR: return NotAPort;
    default: return System;
    }
}

} // namespace

struct Line::Impl {
    int file = -1;
    termios before{};
    bool isOurs = false; // and has other settings than before

    ~Impl()
    {
        if (isOurs) {
            tcsetattr(file, TCSANOW, &before);
            ioctl(file, TIOCNXCL);
        }
        if (file >= 0) close(file);
    }
    /// Waits until it is ready for `events`, at most so long; whether it is.
    [[nodiscard]] bool IsReady(short events) const
    {
        pollfd polled{file, events, 0};
        if (poll(&polled, 1, static_cast<int>(kWait.count())) < 0 && errno != EINTR) Fail(System);
        if ((polled.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) Fail(Lost, EIO);
        return (polled.revents & events) != 0;
    }
};

Line::Line(const std::string& port, int baud) : impl_(std::make_unique<Impl>())
{
    const auto path = port.find('/') == std::string::npos ? "/dev/" + port : port;
    auto& file = impl_->file;
    file = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) Fail(KindOfOpen(errno));
    if (tcgetattr(file, &impl_->before) != 0)
        Fail(errno == EIO ? NoSuchPort : NotAPort); // EIO: a UART that isn't there
    if (flock(file, LOCK_EX | LOCK_NB) != 0) Fail(errno == EWOULDBLOCK ? Busy : System);
    if (ioctl(file, TIOCEXCL) != 0) Fail(System);
    impl_->isOurs = true;

    auto settings = impl_->before;
    cfmakeraw(&settings);
    settings.c_iflag &= ~static_cast<tcflag_t>(IXOFF | IXANY | INPCK);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | CRTSCTS);
    settings.c_cflag |= CLOCAL | CREAD;
    const auto speed = kSpeeds.at(static_cast<std::size_t>(std::ranges::find(kBauds, baud) - kBauds.begin()));
    termios set{};
    if (cfsetispeed(&settings, speed) != 0 || cfsetospeed(&settings, speed) != 0) Fail(Baud);
    if (tcsetattr(file, TCSANOW, &settings) != 0 || tcgetattr(file, &set) != 0) Fail(System);
    if (cfgetospeed(&set) != speed) Fail(Baud, 0); // a driver keeps the old one in silence
}

Line::~Line() = default;

std::size_t Line::Write(std::string_view bytes)
{
    if (!impl_->IsReady(POLLOUT)) return 0;
    const auto written = write(impl_->file, bytes.data(), bytes.size());
    if (written >= 0) return static_cast<std::size_t>(written);
    if (errno == EAGAIN || errno == EINTR) return 0;
    Fail(errno == EIO || errno == ENXIO || errno == ENODEV ? Lost : System);
}

void Line::Wait()
{
    static_cast<void>(impl_->IsReady(0));
}

bool Line::IsEmpty()
{
    int waiting = 0;
    if (ioctl(impl_->file, TIOCOUTQ, &waiting) != 0) Fail(Lost);
#ifdef TIOCSERGETLSR
    unsigned state = TIOCSER_TEMT; // also that of a driver that doesn't know
    ioctl(impl_->file, TIOCSERGETLSR, &state);
    return waiting == 0 && (state & TIOCSER_TEMT) != 0;
#else
    return waiting == 0;
#endif
}

void Line::Discard() noexcept
{
    tcflush(impl_->file, TCOFLUSH);
}

} // namespace serial
