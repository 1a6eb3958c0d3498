#pragma once
// Helpers shared by every test program.

#include <QString>
#include <QTemporaryDir>
#include <string>

namespace tvtest {

// Absolute path of a file under tests/data.
std::string dataPath(const std::string& relative);
QString qDataPath(const QString& relative);

// Absolute path of a built program (tallyvane, tallyvane-diff, ...).
std::string binaryPath(const std::string& name);

// Whole-file helpers on bytes.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

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

} // namespace tvtest
