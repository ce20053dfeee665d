// TemporaryFolder.h: a folder for files that other programs are to fetch while this one runs. It goes when this one
// ends, or, where that was killed, when the next one begins.
#pragma once

#include <filesystem>
#include <string>

namespace files {

class TemporaryFolder {
public:
    /// Will make a folder in `parent` whose name begins with `name`, and removes the ones of that name there that no
    /// running program holds.
    TemporaryFolder(std::filesystem::path parent, std::string name);
    /// Removes the folder and all in it.
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// A new, empty folder in it, which nobody else may open. Throws an IOException where there can't be one. Not to be
    /// called while another thread writes a file.
    [[nodiscard]] std::filesystem::path NewPlace();

private:
    void Make();

    std::filesystem::path parent_;
    std::string name_;
    std::filesystem::path folder_; // empty as long as nobody has asked for a place
    int lock_ = -1;                // the open file that says that somebody is there
    int places_ = 0;
};

} // namespace files
