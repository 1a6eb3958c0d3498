#include "core/modUtilityFile.h"

#include "core/modUtilityString.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// One straight copy; 0 or the errno of the first failure.
int copyOnce(const QByteArray& source, const QByteArray& target)
{
    const int in = ::open(source.constData(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return errno;
    struct stat inStat {};
    if (::fstat(in, &inStat) != 0 || S_ISDIR(inStat.st_mode)) {
        const int err = S_ISDIR(inStat.st_mode) ? EISDIR : errno;
        ::close(in);
        return err;
    }
    // Opening the target truncates it, which would destroy a file copied onto
    // itself.
    struct stat outStat {};
    if (::stat(target.constData(), &outStat) == 0 && outStat.st_dev == inStat.st_dev
        && outStat.st_ino == inStat.st_ino) {
        ::close(in);
        return EINVAL;
    }
    const int out = ::open(target.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (out < 0) {
        const int err = errno;
        ::close(in);
        return err;
    }
    int err = 0;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(in, buffer, sizeof buffer);
        if (n == 0)
            break;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            err = errno;
            break;
        }
        for (ssize_t done = 0; done < n;) {
            const ssize_t w = ::write(out, buffer + done, size_t(n - done));
            if (w < 0) {
                if (errno == EINTR)
                    continue;
                err = errno;
                break;
            }
            done += w;
        }
        if (err)
            break;
    }
    ::close(in);
    if (::close(out) != 0 && !err)
        err = errno;
    return err;
}

} // namespace

bool FileExistsOnDisk(const QString& path)
{
    if (path.isEmpty())
        return false;
    const QString trimmed = TrimBlanks(path);
    if (trimmed.isEmpty())
        return false;
    struct stat st {};
    return ::stat(QFile::encodeName(trimmed).constData(), &st) == 0 && S_ISREG(st.st_mode);
}

bool FolderExistsOnDisk(const QString& path)
{
    if (path.isEmpty())
        return false;
    DIR* dir = ::opendir(QFile::encodeName(path).constData());
    if (!dir)
        return false;
    ::closedir(dir);
    return true;
}

bool CopyFileOverReadOnly(const QString& source, const QString& target, qint16& errorNumber)
{
    // Callers run this from screen handlers; let queued events through first
    // as they always have.
    if (QCoreApplication::instance())
        QCoreApplication::processEvents();

    const QByteArray src = QFile::encodeName(source);
    const QByteArray dst = QFile::encodeName(target);

    struct stat st {};
    const bool targetExists = ::stat(dst.constData(), &st) == 0;
    // Write permission is what read-only means here. Checked up front because
    // the superuser could otherwise write straight through it.
    const bool readOnly = targetExists && !S_ISDIR(st.st_mode) && (st.st_mode & S_IWUSR) == 0;

    int err = readOnly ? EACCES : copyOnce(src, dst);
    if (err == 0)
        return true;
    if ((err == EACCES || err == EPERM) && targetExists && !S_ISDIR(st.st_mode)) {
        const mode_t noted = st.st_mode & 07777;
        if (::chmod(dst.constData(), noted | S_IWUSR) != 0) {
            errorNumber = static_cast<qint16>(errno);
            return false;
        }
        err = copyOnce(src, dst);
        if (err == 0) {
            ::chmod(dst.constData(), noted);
            return true;
        }
    }
    errorNumber = static_cast<qint16>(err);
    return false;
}
