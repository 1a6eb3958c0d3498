#include "components/skeinmatch/DirectoryListing.h"

#include "components/skeinmatch/FileNamePattern.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace skeinmatch {

DirHandle::~DirHandle()
{
    if (fd_ >= 0)
        ::close(fd_);
}

bool ListDirectory(const std::string& path, std::vector<DirEntry>& entries, int& error,
                   std::shared_ptr<const DirHandle>* handle)
{
    entries.clear();
    error = 0;
    if (handle)
        handle->reset();
    const int fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        error = errno;
        return false;
    }
    // The listing reads through its own descriptor; the one kept stays at
    // the start for openat.
    const int kept = handle ? ::fcntl(fd, F_DUPFD_CLOEXEC, 0) : -1;
    DIR* dir = fdopendir(fd);
    if (!dir) {
        error = errno;
        ::close(fd);
        if (kept >= 0)
            ::close(kept);
        return false;
    }
    if (handle && kept >= 0)
        *handle = std::make_shared<const DirHandle>(kept);
    for (;;) {
        errno = 0;
        const dirent* d = readdir(dir);
        if (!d) {
            if (errno != 0) {
                error = errno;
                closedir(dir);
                entries.clear();
                if (handle)
                    handle->reset();
                return false;
            }
            break;
        }
        const char* n = d->d_name;
        if (n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0)))
            continue;
        DirEntry e;
        e.name = n;
        unsigned char t = d->d_type;
        if (t == DT_UNKNOWN) {
            // Some file systems do not fill in the type; ask without
            // following a link.
            struct stat st;
            if (fstatat(dirfd(dir), n, &st, AT_SYMLINK_NOFOLLOW) == 0)
                t = S_ISREG(st.st_mode) ? DT_REG : S_ISDIR(st.st_mode) ? DT_DIR : S_ISLNK(st.st_mode) ? DT_LNK : DT_FIFO;
        }
        switch (t) {
        case DT_REG: e.type = EntryType::File; break;
        case DT_DIR: e.type = EntryType::Folder; break;
        case DT_LNK: e.type = EntryType::Link; break;
        default: e.type = EntryType::Other; break;
        }
        entries.push_back(std::move(e));
    }
    closedir(dir);
    for (DirEntry& e : entries)
        e.key = FoldCase(e.name);
    std::sort(entries.begin(), entries.end(), [](const DirEntry& a, const DirEntry& b) {
        return NameOrder()(a.key, a.name, b.key, b.name);
    });
    return true;
}

std::string WithTrailingSlash(std::string path)
{
    if (path.empty())
        return path;
    while (path.size() > 1 && path.back() == '/' && path[path.size() - 2] == '/')
        path.pop_back();
    if (path.empty() || path.back() != '/')
        path.push_back('/');
    return path;
}

std::string LastComponent(const std::string& path)
{
    std::size_t end = path.size();
    while (end > 1 && path[end - 1] == '/')
        --end;
    const std::size_t slash = path.rfind('/', end - (end ? 1 : 0));
    if (slash == std::string::npos)
        return path.substr(0, end);
    if (end == 1 && path[0] == '/')
        return "/";
    return path.substr(slash + 1, end - slash - 1);
}

} // namespace skeinmatch
