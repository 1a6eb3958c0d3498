#include "components/skeinmatch/FileAccess.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace skeinmatch {

FileDescriptor::~FileDescriptor()
{
    if (fd_ >= 0)
        ::close(fd_);
}

bool ReadFull(int fd, char* buf, std::size_t want, std::size_t& got, int& err)
{
    got = 0;
    while (got < want) {
        const ssize_t n = ::read(fd, buf + got, want - got);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            err = errno;
            return false;
        }
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    return true;
}

std::string DescribeError(const std::string& what, const std::string& path, int err)
{
    return what + " " + path + ": " + std::strerror(err);
}

std::string TabCell(const std::string& s)
{
    std::string out = s;
    for (char& c : out)
        if (c == '\t' || c == '\n' || c == '\r')
            c = ' ';
    return out;
}

} // namespace skeinmatch
