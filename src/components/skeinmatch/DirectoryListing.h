#pragma once
// One folder's entries, read once and put in the order in which the folder
// and find walks report them.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace skeinmatch {

enum class EntryType : std::uint8_t { File, Link, Folder, Other };

struct DirEntry {
    std::string name;
    std::string key;  // FoldCase(name): the sort key
    EntryType type = EntryType::Other;
};

// An open folder, so that files in it can be reached by name (openat and
// friends) without the kernel walking the whole path again for each one.
class DirHandle {
public:
    explicit DirHandle(int fd) : fd_(fd) {}
    ~DirHandle();
    DirHandle(const DirHandle&) = delete;
    DirHandle& operator=(const DirHandle&) = delete;
    int fd() const { return fd_; }

private:
    int fd_;
};

// Lists `path` (which may or may not end in '/'), without "." and "..",
// sorted by NameOrder. Symbolic links are reported as links, never followed.
// Returns false with errno's value in `error` when the folder cannot be read.
// With `handle`, the folder is also kept open there (null when that failed,
// for instance for want of file descriptors; the listing is good anyway).
bool ListDirectory(const std::string& path, std::vector<DirEntry>& entries, int& error,
                   std::shared_ptr<const DirHandle>* handle = nullptr);

// "path" with exactly one '/' at its end ("/" stays "/", "" stays "").
std::string WithTrailingSlash(std::string path);

// The last component of a path, trailing slashes ignored.
std::string LastComponent(const std::string& path);

} // namespace skeinmatch
