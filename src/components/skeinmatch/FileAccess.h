#pragma once
// Small POSIX file routines shared by the folder walk and the find in files.

#include <cstddef>
#include <string>

namespace skeinmatch {

// Closes its descriptor when it goes.
class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return fd_; }

private:
    int fd_;
};

// Reads until `want` bytes or the end of the file; false, with errno's value
// in `err`, on a read error.
bool ReadFull(int fd, char* buf, std::size_t want, std::size_t& got, int& err);

// "what path: reason" for a failed call that left errno `err`.
std::string DescribeError(const std::string& what, const std::string& path, int err);

// A value as one cell of a tab-delimited report: a tab or line end inside a
// name would break the row apart.
std::string TabCell(const std::string& s);

} // namespace skeinmatch
