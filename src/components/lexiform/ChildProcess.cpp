#include "components/lexiform/ChildProcess.h"

#include <QFile>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <vector>

extern char** environ;

namespace lexiform {

namespace {

struct Fd {
    ~Fd()
    {
        if (fd >= 0)
            ::close(fd);
    }
    int fd = -1;
};

QString errorText(int err)
{
    return QString::fromLocal8Bit(std::strerror(err));
}

} // namespace

QString ChildRun::failure(const QString& who) const
{
    switch (end) {
    case NotStarted:
        return QStringLiteral("%1 could not be started: %2").arg(who, errorText(code));
    case Signalled:
        return QStringLiteral("%1 stopped on signal %2 (%3)")
            .arg(who)
            .arg(code)
            .arg(QString::fromLocal8Bit(strsignal(code)));
    case TimedOut:
        return QStringLiteral("%1 did not finish within %2 seconds").arg(who).arg(code);
    case TooMuchOutput:
        return QStringLiteral("%1's output passed the %2 MB allowed").arg(who).arg(code);
    case ReadFailed:
        return QStringLiteral("reading from %1 failed: %2").arg(who, errorText(code));
    case Exited:
        break;
    }
    return QString();
}

ChildRun runChild(const QString& program, const QStringList& arguments, int timeoutMs, long long maxOutput)
{
    ChildRun run;
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) {
        run.code = errno;
        return run;
    }
    Fd readEnd{fds[0]};
    Fd writeEnd{fds[1]};

    // The pipe's ends close on exec, so a child started by another thread
    // at the same moment never holds this one's pipe open.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, writeEnd.fd, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    // Signals the parent blocks or ignores would otherwise stay so in the
    // child, a blocked SIGXCPU among them.
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attr, &none);
    posix_spawnattr_setsigdefault(&attr, &all);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<QByteArray> args{QFile::encodeName(program)};
    for (const QString& a : arguments)
        args.push_back(a.toLocal8Bit());
    std::vector<char*> argv;
    for (QByteArray& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    const int spawned = posix_spawn(&pid, argv[0], &actions, &attr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);
    if (spawned != 0) {
        run.code = spawned;
        return run;
    }
    ::close(writeEnd.fd);
    writeEnd.fd = -1;

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    char chunk[1 << 16];
    run.end = ChildRun::Exited;
    // A child ends with end of file on the pipe, unless something it started
    // keeps the pipe open after it exited (an office suite's helper): then
    // what is left in the pipe is read without waiting for more.
    ::fcntl(readEnd.fd, F_SETFL, O_NONBLOCK);
    bool reaped = false;
    int status = 0;
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            run.end = ChildRun::TimedOut;
            run.code = timeoutMs / 1000;
            break;
        }
        pollfd p{readEnd.fd, POLLIN, 0};
        const int ready = reaped ? 1 : ::poll(&p, 1, int(std::min<long long>(left.count(), 200)));
        if (ready < 0 && errno != EINTR) {
            run.end = ChildRun::ReadFailed;
            run.code = errno;
            break;
        }
        if (ready == 0 && ::waitpid(pid, &status, WNOHANG) == pid)
            reaped = true;
        if (ready <= 0)
            continue;
        const ssize_t n = ::read(readEnd.fd, chunk, sizeof chunk);
        if (n == 0)
            break;
        if (n < 0) {
            if (errno == EAGAIN && reaped)
                break;
            if (errno == EINTR || errno == EAGAIN)
                continue;
            run.end = ChildRun::ReadFailed;
            run.code = errno;
            break;
        }
        if ((long long)(run.output.size() + std::size_t(n)) > maxOutput) {
            run.end = ChildRun::TooMuchOutput;
            run.code = int(maxOutput >> 20);
            break;
        }
        run.output.append(chunk, std::size_t(n));
    }
    if (!reaped) {
        if (run.end != ChildRun::Exited)
            ::kill(pid, SIGKILL);
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
    }
    if (run.end != ChildRun::Exited)
        return run;
    if (WIFSIGNALED(status)) {
        run.end = ChildRun::Signalled;
        run.code = WTERMSIG(status);
    } else {
        run.code = WEXITSTATUS(status);
    }
    return run;
}

} // namespace lexiform
