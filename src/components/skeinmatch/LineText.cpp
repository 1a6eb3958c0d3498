#include "components/skeinmatch/LineText.h"

#include "components/safewrite/SafeWrite.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace skeinmatch {

namespace {

struct Fd {
    int fd = -1;
    ~Fd()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

} // namespace

void LineText::clear()
{
    data_.reset();
    size_ = 0;
    starts_.assign(1, 0);
    count_ = 0;
}

bool LineText::load(const std::string& path, std::string& error)
{
    clear();
    if (path.empty()) {
        error = "no file name given";
        return false;
    }
    // Refused before the open: a named pipe would block it, and a device
    // such as /dev/zero would be read until memory runs out.
    if (const std::string why = safewrite::notRegularFileReason(path); !why.empty()) {
        error = path + ": " + why;
        return false;
    }
    Fd f;
    f.fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (f.fd < 0) {
        error = path + ": " + std::strerror(errno);
        return false;
    }
    struct stat st {};
    if (::fstat(f.fd, &st) != 0) {
        error = path + ": " + std::strerror(errno);
        return false;
    }
    if (S_ISDIR(st.st_mode)) {
        error = path + ": is a folder";
        return false;
    }

    // A regular file is read in one go; a shell's pipe in chunks until it
    // ends.
    std::size_t cap = S_ISREG(st.st_mode) ? static_cast<std::size_t>(st.st_size) : 0;
    if (cap > maxBytes) {
        error = path + ": file too large";
        return false;
    }
    if (cap == 0)
        cap = 1 << 16;
    std::unique_ptr<char[]> buf;
    try {
        buf = std::make_unique_for_overwrite<char[]>(cap);
    } catch (const std::bad_alloc&) {
        error = path + ": out of memory";
        return false;
    }
    std::size_t len = 0;
    for (;;) {
        if (len == cap) {
            if (cap >= maxBytes) {
                error = path + ": file too large";
                return false;
            }
            std::size_t grown = std::min(cap * 2, maxBytes);
            std::unique_ptr<char[]> bigger;
            try {
                bigger = std::make_unique_for_overwrite<char[]>(grown);
            } catch (const std::bad_alloc&) {
                error = path + ": out of memory";
                return false;
            }
            std::memcpy(bigger.get(), buf.get(), len);
            buf = std::move(bigger);
            cap = grown;
        }
        ssize_t got = ::read(f.fd, buf.get() + len, cap - len);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            error = path + ": " + std::strerror(errno);
            return false;
        }
        if (got == 0)
            break;
        len += static_cast<std::size_t>(got);
    }
    data_ = std::move(buf);
    size_ = len;
    if (!split()) {
        error = path + ": too many lines";
        clear();
        return false;
    }
    return true;
}

bool LineText::assign(std::string_view bytes)
{
    clear();
    if (bytes.size() > maxBytes)
        return false;
    data_ = std::make_unique_for_overwrite<char[]>(bytes.size() + 1);
    if (!bytes.empty())
        std::memcpy(data_.get(), bytes.data(), bytes.size());
    size_ = bytes.size();
    if (!split()) {
        clear();
        return false;
    }
    return true;
}

bool LineText::split()
{
    starts_.clear();
    // A guess that avoids most regrowth for source text and costs little
    // when wrong.
    starts_.reserve(size_ / 24 + 2);
    starts_.push_back(0);
    const char* base = data_.get();
    const char* p = base;
    const char* end = base + size_;
    while (p < end) {
        const void* nl = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
        if (!nl) {
            p = end;
            starts_.push_back(static_cast<std::uint32_t>(size_));
            break;
        }
        p = static_cast<const char*>(nl) + 1;
        starts_.push_back(static_cast<std::uint32_t>(p - base));
    }
    count_ = starts_.size() - 1;
    // Line numbers travel as 32-bit signed values.
    if (count_ >= static_cast<std::size_t>(INT_MAX))
        return false;
    return true;
}

} // namespace skeinmatch
