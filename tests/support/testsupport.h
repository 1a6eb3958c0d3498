#pragma once
// Helpers shared by every test program.

#include <QString>
#include <QTemporaryDir>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace tvtest {

// Absolute path of a file under tests/data.
std::string dataPath(const std::string& relative);
QString qDataPath(const QString& relative);

// Absolute path of a built program (tallyvane, tallyvane-diff, ...).
std::string binaryPath(const std::string& name);

// Whole-file helpers on bytes.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

// A full disk, made certain: `body` runs in a child process that may write
// no file past `limit` bytes (writes past it fail with EFBIG instead of
// killing the child). Returns the body's result, or -1 when the child died.
int runWithFileSizeLimit(long limit, const std::function<int()>& body);

// In a child about to become a program (QProcess::setChildProcessModifier):
// the same limit for everything the program writes.
void limitFileSize(long limit);

// SHA-256 of a file's bytes, hex: a test proves an input came out untouched.
std::string sha256(const std::string& path);

// A private scratch folder removed when the object goes.
class TempDir {
public:
    TempDir();
    std::string path() const;
    std::string file(const std::string& name) const;
    QString qpath() const;

private:
    QTemporaryDir dir_;
};

// Waits for a background run (anything with InProgress()) to end; false
// when it is still going after `seconds`.
template <class Engine>
bool waitIdle(const Engine& engine, int seconds = 60)
{
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (engine.InProgress()) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace tvtest
