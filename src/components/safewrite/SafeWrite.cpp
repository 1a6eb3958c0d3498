#include "components/safewrite/SafeWrite.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace safewrite {

namespace {

std::atomic<unsigned> tempCounter{0};

std::string folderOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}

std::string nameOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string resolved(const std::string& path)
{
    char buf[PATH_MAX];
    if (::realpath(path.c_str(), buf))
        return buf;
    return {};
}

// A not-yet-existing file is named by its folder's real path and its own
// name, so that "./x", "x" and "sub/../x" come out the same.
std::string resolvedNewPath(const std::string& path)
{
    std::string folder = resolved(folderOf(path));
    if (folder.empty()) {
        folder = folderOf(path);
        if (folder.empty() || folder[0] != '/') {
            char cwd[PATH_MAX];
            if (::getcwd(cwd, sizeof cwd))
                folder = std::string(cwd) + '/' + folder;
        }
    }
    return folder + '/' + nameOf(path);
}

} // namespace

SafeFile::SafeFile(std::string target) : target_(std::move(target)) {}

SafeFile::~SafeFile() { discard(); }

bool SafeFile::fail(int code)
{
    if (errorCode_ == 0)
        errorCode_ = code ? code : EIO;
    return false;
}

std::string SafeFile::reason() const { return errorCode_ ? std::string(std::strerror(errorCode_)) : std::string(); }

bool SafeFile::open()
{
    discard();
    errorCode_ = 0;
    if (target_.empty())
        return fail(ENOENT);
    // A link stays a link: the file it points to gets the new content.
    std::string real = target_;
    struct stat old {};
    const bool exists = ::stat(target_.c_str(), &old) == 0;
    if (exists) {
        const std::string r = resolved(target_);
        if (!r.empty())
            real = r;
        if (S_ISDIR(old.st_mode))
            return fail(EISDIR);
        if (!S_ISREG(old.st_mode)) {
            // A device or a pipe cannot be replaced, and must not be: the
            // user asked for the bytes to go there.
            fd_ = ::open(real.c_str(), O_WRONLY | O_CLOEXEC);
            if (fd_ < 0)
                return fail(errno);
            direct_ = true;
            return true;
        }
    }
    const std::string folder = folderOf(real);
    const std::string base = nameOf(real);
    for (int attempt = 0; attempt < 100; ++attempt) {
        temp_ = folder + "/." + base + ".tv" + std::to_string(::getpid()) + "-" + std::to_string(tempCounter++)
            + ".tmp";
        fd_ = ::open(temp_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd_ >= 0)
            break;
        if (errno != EEXIST) {
            const int e = errno;
            temp_.clear();
            return fail(e);
        }
    }
    if (fd_ < 0) {
        temp_.clear();
        return fail(EEXIST);
    }
    target_ = real;
    // The replacement keeps the permissions the user gave the old file.
    if (exists)
        (void)::fchmod(fd_, old.st_mode & 07777);
    return true;
}

bool SafeFile::write(std::string_view bytes)
{
    if (fd_ < 0 || failed())
        return fail(EBADF);
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd_, p, left);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return fail(errno);
        }
        if (n == 0)
            return fail(ENOSPC);
        p += n;
        left -= std::size_t(n);
    }
    return true;
}

bool SafeFile::commit()
{
    if (fd_ < 0 || failed()) {
        discard();
        return fail(EBADF);
    }
    // Space a file system only promised (delayed allocation, NFS) is
    // claimed here; a file that never reached the disk must not replace one
    // that did.
    if (::fsync(fd_) != 0 && !(direct_ && (errno == EINVAL || errno == EROFS || errno == ENOTSUP))) {
        const int e = errno;
        discard();
        return fail(e);
    }
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) {
        const int e = errno;
        discard();
        return fail(e);
    }
    if (direct_) {
        direct_ = false;
        return true;
    }
    if (::rename(temp_.c_str(), target_.c_str()) != 0) {
        const int e = errno;
        discard();
        return fail(e);
    }
    temp_.clear();
    // The rename itself is on disk once the folder is.
    const int dir = ::open(folderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        (void)::fsync(dir);
        ::close(dir);
    }
    return true;
}

void SafeFile::discard()
{
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
    if (!temp_.empty()) {
        ::unlink(temp_.c_str());
        temp_.clear();
    }
    direct_ = false;
}

SafeOStream::SafeOStream(std::string target) : std::ostream(this), file_(std::move(target))
{
    open_ = file_.open();
    setp(buf_, buf_ + sizeof buf_);
    if (!open_)
        setstate(std::ios::badbit);
}

bool SafeOStream::drain()
{
    const std::ptrdiff_t n = pptr() - pbase();
    setp(buf_, buf_ + sizeof buf_);
    return n == 0 || file_.write(std::string_view(buf_, std::size_t(n)));
}

int SafeOStream::overflow(int c)
{
    if (!drain())
        return std::streambuf::traits_type::eof();
    if (c != std::streambuf::traits_type::eof()) {
        *pptr() = char(c);
        pbump(1);
    }
    return std::streambuf::traits_type::not_eof(c);
}

int SafeOStream::sync() { return drain() ? 0 : -1; }

bool SafeOStream::commit()
{
    if (!open_)
        return false;
    if (!drain() || !good()) {
        file_.discard();
        return false;
    }
    return file_.commit();
}

bool writeWholeFile(const std::string& path, std::string_view bytes, std::string* reason)
{
    SafeFile f(path);
    const bool ok = f.open() && f.write(bytes) && f.commit();
    if (!ok && reason)
        *reason = f.reason();
    return ok;
}

bool sameFile(const std::string& a, const std::string& b)
{
    if (a.empty() || b.empty())
        return false;
    struct stat sa {}, sb {};
    const bool ea = ::stat(a.c_str(), &sa) == 0;
    const bool eb = ::stat(b.c_str(), &sb) == 0;
    if (ea && eb)
        return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
    if (ea != eb)
        return false;
    return resolvedNewPath(a) == resolvedNewPath(b);
}

std::string notRegularFileReason(const std::string& path)
{
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0 || S_ISREG(st.st_mode))
        return {};
    if (S_ISDIR(st.st_mode))
        return "it is a folder";
    if (S_ISFIFO(st.st_mode)) {
        // A pipe handed over as /dev/fd/N (a shell's <(command)) has its
        // writer already and ends; a named pipe may never get one.
        char link[64];
        const ssize_t n = ::readlink(path.c_str(), link, sizeof link - 1);
        if (n > 5 && std::string_view(link, std::size_t(n)).substr(0, 5) == "pipe:")
            return {};
        return "it is a named pipe, not a regular file";
    }
    if (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode)) {
        // The empty file every system has, as in "compare with nothing".
        struct stat null {};
        if (S_ISCHR(st.st_mode) && ::stat("/dev/null", &null) == 0 && null.st_rdev == st.st_rdev)
            return {};
        return "it is a device, not a regular file";
    }
    if (S_ISSOCK(st.st_mode))
        return "it is a socket, not a regular file";
    return "it is not a regular file";
}

} // namespace safewrite
