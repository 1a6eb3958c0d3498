#include "components/lexiform/FileBytes.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace lexiform {

bool readFileBytes(const QString& path, QByteArray& out, long long maxBytes)
{
    out.clear();
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
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    if (f.write(bytes) != bytes.size()) {
        f.cancelWriting();
        return false;
    }
    return f.commit();
}

bool sameFile(const QString& a, const QString& b)
{
    QFileInfo fa(a), fb(b);
    if (fa.exists() && fb.exists())
        return fa.canonicalFilePath() == fb.canonicalFilePath();
    return fa.absoluteFilePath() == fb.absoluteFilePath();
}

} // namespace lexiform
