#include "components/lexiform/FileBytes.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

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

QString decodeUnknownText(const QByteArray& bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes.mid(3));
    if (bytes.startsWith("\xFF\xFE"))
        return QStringDecoder(QStringConverter::Utf16LE)(bytes.mid(2));
    if (bytes.startsWith("\xFE\xFF"))
        return QStringDecoder(QStringConverter::Utf16BE)(bytes.mid(2));
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = utf8(bytes);
    if (!utf8.hasError())
        return text;
    // Windows-1252: Latin-1 with printable characters in 0x80-0x9F.
    static const char16_t high[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                      0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* d = out.data();
    for (char ch : bytes) {
        auto b = static_cast<unsigned char>(ch);
        *d++ = b >= 0x80 && b < 0xA0 ? QChar(high[b - 0x80]) : QChar(char16_t(b));
    }
    return out;
}

} // namespace lexiform
