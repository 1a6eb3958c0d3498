#pragma once
// Permission tests need a user that the file modes apply to. When the tests
// run as root (containers, CI), the work is done in a child process that has
// become "nobody"; the child hands its answer back as a string.

#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <grp.h>

namespace tvtest {

inline constexpr uid_t kNobody = 65534;

// True when permission bits are enforced for the process as it is.
inline bool permissionsApply()
{
    return geteuid() != 0;
}

// Makes a tree that root built usable by "nobody": owner nobody for every
// path given (so that mode 000 keeps that user out), world-traversable
// folders. Does nothing when not root.
inline void handToNobody(const std::string& path)
{
    if (geteuid() == 0)
        (void)!chown(path.c_str(), kNobody, kNobody);
}

// Runs `work` as an unprivileged user and returns what it returned. Without
// root this is a plain call.
inline std::string runUnprivileged(const std::function<std::string()>& work)
{
    if (geteuid() != 0)
        return work();
    int fds[2];
    if (pipe(fds) != 0)
        return "pipe failed";
    const pid_t pid = fork();
    if (pid < 0)
        return "fork failed";
    if (pid == 0) {
        close(fds[0]);
        std::string out;
        if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)
            out = "could not drop privileges";
        else
            out = work();
        std::size_t done = 0;
        while (done < out.size()) {
            const ssize_t n = write(fds[1], out.data() + done, out.size() - done);
            if (n <= 0)
                break;
            done += static_cast<std::size_t>(n);
        }
        close(fds[1]);
        _exit(0);
    }
    close(fds[1]);
    std::string result;
    char buf[4096];
    for (;;) {
        const ssize_t n = read(fds[0], buf, sizeof buf);
        if (n <= 0)
            break;
        result.append(buf, static_cast<std::size_t>(n));
    }
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    return result;
}

} // namespace tvtest
