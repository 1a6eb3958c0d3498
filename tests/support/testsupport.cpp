#include "support/testsupport.h"

#include <QDir>
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
