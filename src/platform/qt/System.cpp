#include "platform/qt/System.h"

#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QSysInfo>

#include <cerrno>
#include <utility>

#include <fcntl.h>

#ifdef Q_OS_WIN
#include <QAbstractNativeEventFilter>
#include <QFileInfo>
#include <QRegularExpression>

#include <io.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace platform {

namespace fs = std::filesystem;

#ifdef Q_OS_WIN

fs::path ToPath(const QString& text)
{
    return QDir::toNativeSeparators(text).toStdWString();
}

QString FromPath(const fs::path& path)
{
    return QString::fromStdWString(path.wstring());
}

std::optional<fs::path> LocalPath(const QUrl& url)
{
    auto local = url; // or of a server: "//server/share/name"
    if (url.host() == "localhost") local.setHost({});
    const auto file = local.toLocalFile();
    if (file.isEmpty() || file.contains(QChar::Null)) return std::nullopt;
    return ToPath(file);
}

std::optional<fs::path> LinkTarget(const fs::path& path)
{
    const QFileInfo info(FromPath(path)); // the standard library knows no links here
    if (!info.isSymbolicLink()) return std::nullopt;
    return ToPath(info.symLinkTarget());
}

// The system would take some of these for a device, a stream or a shorter name, and report no error.
std::error_code NameRefusal(const fs::path& path)
{
    static const QRegularExpression kBad(R"([<>:"|?*\x01-\x1F]|[ .]$|^(CON|PRN|AUX|NUL|COM\d|LPT\d)(\.|$))",
                                         QRegularExpression::CaseInsensitiveOption);
    if (!FromPath(path.filename()).contains(kBad)) return {};
    return {ERROR_INVALID_NAME, std::system_category()};
}

QString ErrorText(const std::error_code& error)
{
    if (error.category() == std::system_category()) return qt_error_string(error.value());
    return QString::fromLocal8Bit(error.message().c_str());
}

bool IsWritable(const fs::path& path)
{
    constexpr int kWrite = 2;
    return _waccess(path.c_str(), kWrite) == 0;
}

int OpenToRead(const fs::path& path)
{
    return _wopen(path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

// An open file is locked against removal by the system itself.
int CreateLocked(const fs::path& path)
{
    return _wopen(path.c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

void RemoveLeftover(const fs::path& path)
{
    std::error_code inUse;
    fs::remove(path, inUse);
}

bool Sync(int file)
{
    return _commit(file) == 0;
}

bool CloseForRename(int& file)
{
    return _close(std::exchange(file, -1)) == 0;
}

void SyncFolder(const fs::path& /*folder*/)
{} // the file system's journal does it

namespace {

void RemoveEmptyKey(const wchar_t* name)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    DWORD keys = 0;
    DWORD values = 0;
    const auto known = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                                        nullptr, nullptr, nullptr);
    RegCloseKey(key);
    if (known == ERROR_SUCCESS && keys == 0 && values == 0) RegDeleteKeyW(HKEY_CURRENT_USER, name);
}

} // namespace

// By the system's word: the toolkit takes a new Return for a repetition where a box was closed before the key was let go.
void IgnoreRepeatedReturns(QCoreApplication& application)
{
    class Filter : public QAbstractNativeEventFilter {
        bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/) override
        {
            constexpr LPARAM kWasDown = 1 << 30;
            const auto& key = *static_cast<MSG*>(message);
            return key.message == WM_KEYDOWN && key.wParam == VK_RETURN && (key.lParam & kWasDown) != 0;
        }
    };
    static Filter filter;
    application.installNativeEventFilter(&filter);
}

// No call keeps the toolkit's file dialog from the registry. It makes a key there at its start, and fills it when it is
// destroyed. So it isn't destroyed, and the key goes where it is empty: other programs may have written to it.
void EndFileDialog::operator()(QFileDialog* dialog) const
{
    dialog->setParent(nullptr);
    RemoveEmptyKey(L"Software\\QtProject\\OrganizationDefaults");
    RemoveEmptyKey(L"Software\\QtProject");
}

#else

fs::path ToPath(const QString& text)
{
    return QFile::encodeName(text).toStdString();
}

QString FromPath(const fs::path& path)
{
    return QFile::decodeName(path.c_str());
}

std::optional<fs::path> LocalPath(const QUrl& url)
{
    const auto host = url.host();
    const bool thisMachine = host.isEmpty() || host == "localhost" || host == QSysInfo::machineHostName().toLower();
    if (!url.isLocalFile() || !thisMachine) return std::nullopt;
    const auto encoded = url.adjusted(QUrl::StripTrailingSlash).path(QUrl::FullyEncoded);
    auto bytes = QByteArray::fromPercentEncoding(encoded.toLatin1());
    if (bytes.contains('\0')) return std::nullopt;
    return bytes.toStdString();
}

std::optional<fs::path> LinkTarget(const fs::path& path)
{
    std::error_code error;
    if (!fs::is_symlink(path, error)) return std::nullopt;
    return path.parent_path() / fs::read_symlink(path, error);
}

std::error_code NameRefusal(const fs::path& /*path*/)
{
    return {};
}

QString ErrorText(const std::error_code& error)
{
    return qt_error_string(error.value());
}

bool IsWritable(const fs::path& path)
{
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

int OpenToRead(const fs::path& path)
{
    return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
}

int CreateLocked(const fs::path& path)
{
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    struct stat status = {};
    if (file < 0) return file;
    flock(file, LOCK_EX | LOCK_NB);
    if (fstat(file, &status) == 0 && status.st_nlink > 0) return file;
    close(file); // another program took it for a leftover before it was locked
    errno = EEXIST;
    return -1;
}

void RemoveLeftover(const fs::path& path)
{
    const int file = open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) return;
    if (flock(file, LOCK_EX | LOCK_NB) == 0) unlink(path.c_str());
    close(file);
}

bool Sync(int file)
{
    return fsync(file) == 0;
}

bool CloseForRename(int& file)
{
    const int duplicate = dup(file);
    return duplicate >= 0 && close(duplicate) == 0;
}

void SyncFolder(const fs::path& folder)
{
    const int file = open(folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    fsync(file);
    close(file);
}

void IgnoreRepeatedReturns(QCoreApplication& application)
{
    class Filter : public QObject {
        bool eventFilter(QObject* /*object*/, QEvent* event) override
        {
            const auto type = event->type();
            if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride)
                return false;
            const auto& key = *static_cast<QKeyEvent*>(event); // NOLINT: the type tells
            if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
            // Under X11 the toolkit misses many. They come in the same millisecond as the release before them.
            if (type == QEvent::KeyRelease) released_ = key.timestamp();
            return type != QEvent::KeyRelease &&
                   (key.isAutoRepeat() || (key.timestamp() != 0 && key.timestamp() == released_));
        }

        quint64 released_ = 0;
    };
    static Filter filter;
    application.installEventFilter(&filter);
}

void EndFileDialog::operator()(QFileDialog* dialog) const
{
    delete dialog;
}

#endif

} // namespace platform
