#include "components/lexiform/FileBytes.h"

#include "components/safewrite/SafeWrite.h"

#include <QFile>

namespace lexiform {

bool readFileBytes(const QString& path, QByteArray& out, long long maxBytes)
{
    out.clear();
    // A device such as /dev/zero reports no size and never ends.
    if (!safewrite::notRegularFileReason(QFile::encodeName(path).toStdString()).empty())
        return false;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    if (f.size() > maxBytes)
        return false;
    out = f.readAll();
    return f.error() == QFileDevice::NoError;
}

bool writeFileBytes(const QString& path, const QByteArray& bytes)
{
    return safewrite::writeWholeFile(QFile::encodeName(path).toStdString(),
                                     std::string_view(bytes.constData(), std::size_t(bytes.size())));
}

bool sameFile(const QString& a, const QString& b)
{
    return safewrite::sameFile(QFile::encodeName(a).toStdString(), QFile::encodeName(b).toStdString());
}

} // namespace lexiform
