#include "components/lexiform/PlainTextReader.h"

#include <QStringDecoder>

namespace lexiform {

namespace {

// 0x80..0x9F of Windows-1252; the rest of the code page is Latin-1.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool startsWith(const QByteArray& b, std::initializer_list<unsigned char> prefix)
{
    if (b.size() < qsizetype(prefix.size()))
        return false;
    qsizetype i = 0;
    for (unsigned char c : prefix)
        if (static_cast<unsigned char>(b[i++]) != c)
            return false;
    return true;
}

// Checked without decoding: a decoder would build the whole text only to
// throw it away, twice the work of a load for a large file.
bool isValidUtf8(const QByteArray& bytes)
{
    return QByteArrayView(bytes).isValidUtf8();
}

QString decodeWith(QStringConverter::Encoding enc, const QByteArray& bytes, qsizetype skip)
{
    QStringDecoder dec(enc, QStringDecoder::Flag::Stateless);
    return dec(QByteArrayView(bytes).sliced(skip));
}

} // namespace

TextEncoding detectTextEncoding(const QByteArray& bytes)
{
    // UTF-32 LE must be tested before UTF-16 LE: its mark starts with FF FE.
    if (startsWith(bytes, {0xFF, 0xFE, 0x00, 0x00}))
        return TextEncoding::Utf32LE;
    if (startsWith(bytes, {0x00, 0x00, 0xFE, 0xFF}))
        return TextEncoding::Utf32BE;
    if (startsWith(bytes, {0xEF, 0xBB, 0xBF}))
        return TextEncoding::Utf8Bom;
    if (startsWith(bytes, {0xFF, 0xFE}))
        return TextEncoding::Utf16LE;
    if (startsWith(bytes, {0xFE, 0xFF}))
        return TextEncoding::Utf16BE;
    return isValidUtf8(bytes) ? TextEncoding::Utf8 : TextEncoding::Windows1252;
}

QString decodeWindows1252(const QByteArray& bytes)
{
    // Windows-1252 is Latin-1 but for 0x80 to 0x9F: Qt's widening of
    // Latin-1 is several times quicker than a lookup per byte, and the few
    // bytes of that range are put right after it.
    QString out = QString::fromLatin1(bytes);
    const auto* b = reinterpret_cast<const unsigned char*>(bytes.constData());
    QChar* d = nullptr;
    for (qsizetype i = 0, n = bytes.size(); i < n; ++i) {
        if ((b[i] & 0xE0) == 0x80) {
            if (!d)
                d = out.data();
            d[i] = QChar(kCp1252High[b[i] - 0x80]);
        }
    }
    return out;
}

QString decodeText(const QByteArray& bytes, TextEncoding* detected)
{
    const TextEncoding enc = detectTextEncoding(bytes);
    if (detected)
        *detected = enc;
    switch (enc) {
    case TextEncoding::Utf8:
        return QString::fromUtf8(bytes);
    case TextEncoding::Utf8Bom:
        return decodeWith(QStringConverter::Utf8, bytes, 3);
    case TextEncoding::Utf16LE:
        return decodeWith(QStringConverter::Utf16LE, bytes, 2);
    case TextEncoding::Utf16BE:
        return decodeWith(QStringConverter::Utf16BE, bytes, 2);
    case TextEncoding::Utf32LE:
        return decodeWith(QStringConverter::Utf32LE, bytes, 4);
    case TextEncoding::Utf32BE:
        return decodeWith(QStringConverter::Utf32BE, bytes, 4);
    case TextEncoding::Windows1252:
        break;
    }
    return decodeWindows1252(bytes);
}

Document plainTextToDocument(const QString& text)
{
    Document doc;
    const QChar* p = text.constData();
    const qsizetype n = text.size();
    qsizetype start = 0;
    auto push = [&](qsizetype end) {
        Paragraph para;
        if (end > start)
            para.runs.push_back(Run{text.mid(start, end - start), {}});
        doc.paragraphs.push_back(std::move(para));
    };
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = p[i].unicode();
        if (c == u'\n') {
            push(i);
            start = i + 1;
        } else if (c == u'\r') {
            push(i);
            if (i + 1 < n && p[i + 1] == u'\n')
                ++i;
            start = i + 1;
        }
    }
    push(n);
    return doc;
}

Document readPlainText(const QByteArray& bytes)
{
    return plainTextToDocument(decodeText(bytes));
}

} // namespace lexiform
