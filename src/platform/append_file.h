#pragma once
// A text file opened for appending, written through to the operating system at once: what was
// appended survives the end of the process, killed or not. sync() asks the disk to hold it too.

#include <string>
#include <string_view>

namespace zv::platform {

class AppendFile {
public:
    AppendFile() = default;
    ~AppendFile();
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;

    // Opens or creates the file; 0, or the errno of the failure.
    [[nodiscard]] int open(const std::string& path);
    // Writes all of the text; false when the system refused part of it.
    [[nodiscard]] bool append(std::string_view text);
    // fdatasync: the rows written so far reach the disk.
    void sync();
    // Syncs and closes; nothing when not open.
    void close();
    [[nodiscard]] bool isOpen() const { return fd_ >= 0; }

private:
    int fd_ = -1;
};

} // namespace zv::platform
