#include "support/testsupport.h"

#include <QCryptographicHash>
#include <QDir>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tvtest {

std::string dataPath(const std::string& relative)
{
    return std::string(TV_TEST_DATA) + "/" + relative;
}

QString qDataPath(const QString& relative)
{
    return QString::fromUtf8(TV_TEST_DATA) + "/" + relative;
}

std::string binaryPath(const std::string& name)
{
    return std::string(TV_BINARY_DIR) + "/" + name;
}

std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + path);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writeFile(const std::string& path, const std::string& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out)
        throw std::runtime_error("cannot write " + path);
    out << bytes;
}

void limitFileSize(long limit)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit r{rlim_t(limit), rlim_t(limit)};
    setrlimit(RLIMIT_FSIZE, &r);
}

namespace {

int childStatus(pid_t pid)
{
    int st = 0;
    while (waitpid(pid, &st, 0) < 0)
        if (errno != EINTR)
            return -1;
    return WIFEXITED(st) ? WEXITSTATUS(st) : -1;
}

} // namespace

int runWithFileSizeLimit(long limit, const std::function<int()>& body)
{
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid < 0)
        return -1;
    if (pid == 0) {
        limitFileSize(limit);
        _exit(body());
    }
    return childStatus(pid);
}

std::string sha256(const std::string& path)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(readFile(path)), QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

TempDir::TempDir()
{
    if (!dir_.isValid())
        throw std::runtime_error("cannot make a temporary folder");
}

std::string TempDir::path() const
{
    return dir_.path().toStdString();
}

std::string TempDir::file(const std::string& name) const
{
    return path() + "/" + name;
}

QString TempDir::qpath() const
{
    return dir_.path();
}

} // namespace tvtest
