// Files.h: the files that a user names, read bounded and written whole or not at all; standard library and system only.
// Errors  all that can't be done is an IOException.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace files {

/// What can't be done with which file. `what` says it in English.
class IOException : public std::exception {
public:
    enum class Kind {
        NoOrdinaryFile,  // a folder, a device, a pipe
        BeingChanged,    // by another program, while it is read
        WriteProtected,  // the file
        FolderProtected, // the file may be written, but only whole, and its folder takes no new file
        Exists,          // and nobody has agreed that it is replaced
        IsTheSource,     // by whatever name: it would be replaced by what is made from it
        System,          // `Error` says it
    };

    IOException(Kind kind, std::filesystem::path file, std::error_code error = {});

    /// "NAME: REASON".
    [[nodiscard]] const char* what() const noexcept override { return what_.c_str(); }
    /// The file, UTF-8.
    [[nodiscard]] std::string Name() const;
    [[nodiscard]] std::string Reason() const;

    Kind ErrorKind;
    std::filesystem::path File; // as the caller named it
    std::error_code Error;      // none but for Kind::System

private:
    std::string what_;
};

/// Two that are equal mean that nobody has written to the file in between, as far as that can be seen.
struct FileState {
    std::uint64_t Length = 0; // bytes
    std::filesystem::file_time_type Changed = {};

    bool operator==(const FileState&) const = default;
};

/// Of the file at `path` as it is now. Length and time are 0 where it has none. May wait for as long as the file system
/// does, on any thread.
[[nodiscard]] FileState StateOf(const std::filesystem::path& path);

/// The bytes of the file at `path`, of a longer one the first `atMost`. Throws, before anything blocks, for all that
/// isn't a regular file, and for a file that can't be read or whose state isn't `state` before or after it was read.
[[nodiscard]] std::string ReadBytes(const std::filesystem::path& path, const FileState& state, std::uint64_t atMost);
/// The same for a file that must not change while it is read.
[[nodiscard]] std::string ReadBytes(const std::filesystem::path& path, std::uint64_t atMost);

/// A file at `path`, to be read anywhere in it: no folder, no device, no pipe. What can't be done is thrown.
class Reader {
public:
    explicit Reader(const std::filesystem::path& path);
    ~Reader();
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    [[nodiscard]] std::int64_t Size() const { return size_; }
    /// Reads `count` bytes from `position` on, fewer only at the end.
    std::int64_t Read(void* bytes, std::int64_t count, std::int64_t position) const;

private:
    std::filesystem::path path_;
    std::int64_t size_;
    int file_;
};

/// What is to become of a file that stands at the name.
enum class Existing {
    Refuse,  // also one that another program makes while this one writes
    Replace, // the user has agreed
};

/// Takes the next bytes of a file. Throws where it can't.
using ByteSink = std::function<void(std::string_view bytes)>;
/// Gives the bytes of a file to the sink that it gets. What it throws ends the writing and is thrown on.
using Producer = std::function<void(const ByteSink& sink)>;

/// Makes the file at `path`, whole and on the disk, or leaves all as it was and throws. A link stays one: what it leads
/// to is written. A file that is replaced gives its owner, group, rights and attributes to the new one, as far as this
/// user can; where not, the new one gives fewer rights, never more. Its further hard links keep the old bytes. None of
/// the files `sources` is ever replaced or taken for a leftover, by whatever name.
void Write(const std::filesystem::path& path, Existing existing, const Producer& produce,
           const std::vector<std::filesystem::path>& sources = {});
void Write(const std::filesystem::path& path, Existing existing, std::string_view bytes);

/// Throws what `Write` would throw before it asks for the first byte, so that no work is done for nothing.
void RequireWritable(const std::filesystem::path& path, Existing existing,
                     const std::vector<std::filesystem::path>& sources);

/// Writes to the standard output, its bytes as they are.
void WriteStandardOutput(const Producer& produce);

/// What a program calls before all else. From now on a write beyond a limit, to a reader that has gone, or to a closed
/// standard output fails with an error: it would end the program, or reach a file of ours. A signal that asks the
/// program to end takes the half file away first, where the system has such signals.
void BeginWriting();
/// What a program calls at its end, if a thread may still be writing: takes its half file away, where the system can.
void EndWriting();

} // namespace files
