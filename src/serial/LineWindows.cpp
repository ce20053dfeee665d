#include "serial/Line.h"

#include <windows.h>

namespace serial {
namespace {

using enum Refusal::Kind;

[[noreturn]] void Fail(Refusal::Kind kind)
{
    throw LineError(kind, {static_cast<int>(GetLastError()), std::system_category()});
}

Refusal::Kind KindOfOpen(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME: return NoSuchPort;
    case ERROR_ACCESS_DENIED: // what a port that is open already says
    case ERROR_SHARING_VIOLATION: return Busy;
    default: return System;
    }
}

} // namespace

struct Line::Impl {
    HANDLE file = INVALID_HANDLE_VALUE;
    DCB before{};
    COMMTIMEOUTS timeoutsBefore{};
    bool isOurs = false; // and has other settings than before

    ~Impl()
    {
        if (isOurs) {
            SetCommState(file, &before);
            SetCommTimeouts(file, &timeoutsBefore);
        }
        if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    }
};

Line::Line(const std::string& port, int baud) : impl_(std::make_unique<Impl>())
{
    auto& file = impl_->file;
    const auto path = R"(\\.\)" + port; // from COM10 on the name alone means a file
    file = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) Fail(KindOfOpen(GetLastError()));
    impl_->before.DCBlength = sizeof(DCB);
    if (GetCommState(file, &impl_->before) == 0 || GetCommTimeouts(file, &impl_->timeoutsBefore) == 0) Fail(NotAPort);
    impl_->isOurs = true;

    auto settings = impl_->before;
    settings.BaudRate = static_cast<DWORD>(baud);
    settings.ByteSize = 8;
    settings.Parity = NOPARITY;
    settings.StopBits = ONESTOPBIT;
    settings.fBinary = TRUE;
    settings.fParity = FALSE;
    settings.fOutxCtsFlow = FALSE;
    settings.fOutxDsrFlow = FALSE;
    settings.fDsrSensitivity = FALSE;
    settings.fOutX = FALSE;
    settings.fInX = FALSE;
    settings.fNull = FALSE;
    settings.fAbortOnError = FALSE;
    settings.fDtrControl = DTR_CONTROL_ENABLE;
    settings.fRtsControl = RTS_CONTROL_ENABLE;
    if (SetCommState(file, &settings) == 0) Fail(Baud);
    COMMTIMEOUTS timeouts{};
    timeouts.WriteTotalTimeoutConstant = static_cast<DWORD>(kWait.count()); // then WriteFile tells how many went
    if (SetCommTimeouts(file, &timeouts) == 0) Fail(System);
}

Line::~Line() = default;

std::size_t Line::Write(std::string_view bytes)
{
    DWORD written = 0;
    if (WriteFile(impl_->file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == 0 &&
        GetLastError() != ERROR_TIMEOUT)
        Fail(Lost);
    return written;
}

void Line::Wait()
{
    Sleep(static_cast<DWORD>(kWait.count()));
    static_cast<void>(IsEmpty());
}

bool Line::IsEmpty()
{
    COMSTAT state{};
    DWORD errors = 0;
    if (ClearCommError(impl_->file, &errors, &state) == 0) Fail(Lost);
    return state.cbOutQue == 0;
}

void Line::Discard() noexcept
{
    PurgeComm(impl_->file, PURGE_TXABORT | PURGE_TXCLEAR);
}

} // namespace serial
