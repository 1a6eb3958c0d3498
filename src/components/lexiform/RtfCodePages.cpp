#include "components/lexiform/RtfCodePages.h"

#include "components/lexiform/PlainTextReader.h"

#include <QStringDecoder>
#include <array>
#include <memory>
#include <unordered_map>

namespace lexiform::rtf {

namespace {

bool isMultiByte(int cp)
{
    return cp == 932 || cp == 936 || cp == 949 || cp == 950 || cp == 1361;
}

QByteArray codecName(int cp)
{
    switch (cp) {
    case 932: return "Shift_JIS";
    case 936: return "GBK";
    case 949: return "windows-949";
    case 950: return "Big5";
    case 1361: return "Johab";
    case 437: case 737: case 775: case 850: case 852: case 855: case 857:
    case 860: case 861: case 862: case 863: case 864: case 865: case 866: case 869:
        return "IBM" + QByteArray::number(cp);
    case 10000: return "macintosh";
    case 10007: return "x-mac-cyrillic";
    case 20866: return "KOI8-R";
    case 21866: return "KOI8-U";
    case 28591: return "ISO-8859-1";
    case 65001: return "UTF-8";
    default: return "windows-" + QByteArray::number(cp);
    }
}

// What one code page decodes with: a table for single-byte pages (fast, and
// immune to a decoder's state), a decoder for the double-byte ones.
struct CodePage {
    bool valid = false;
    std::array<char16_t, 256> table{};
    QByteArray name;
    bool multiByte = false;
};

const CodePage& codePage(int cp)
{
    // Lexiform runs on worker threads too: one cache per thread needs no lock.
    thread_local std::unordered_map<int, std::unique_ptr<CodePage>> cache;
    auto it = cache.find(cp);
    if (it != cache.end())
        return *it->second;
    auto page = std::make_unique<CodePage>();
    page->name = codecName(cp);
    if (cp != 1252 && cp != 65001) {
        QStringDecoder probe(page->name.constData());
        page->valid = probe.isValid();
    }
    page->multiByte = page->valid && isMultiByte(cp);
    if (!page->multiByte) {
        const QString fallback = [] {
            QByteArray all(256, '\0');
            for (int i = 0; i < 256; ++i)
                all[i] = char(i);
            return decodeWindows1252(all);
        }();
        for (int i = 0; i < 256; ++i)
            page->table[i] = fallback[i].unicode();
        if (page->valid) {
            for (int i = 0x80; i < 256; ++i) {
                QStringDecoder dec(page->name.constData(), QStringDecoder::Flag::Stateless);
                const QString s = dec(QByteArray(1, char(i)));
                if (!dec.hasError() && s.size() == 1 && s[0] != QChar::ReplacementCharacter)
                    page->table[i] = s[0].unicode();
            }
        }
    }
    return *cache.emplace(cp, std::move(page)).first->second;
}

} // namespace

int codePageOfCharset(int charset)
{
    switch (charset) {
    case 77: return 10000;
    case 128: return 932;
    case 129: return 949;
    case 130: return 1361;
    case 134: return 936;
    case 136: return 950;
    case 161: return 1253;
    case 162: return 1254;
    case 163: return 1258;
    case 177: return 1255;
    case 178: return 1256;
    case 186: return 1257;
    case 204: return 1251;
    case 222: return 874;
    case 238: return 1250;
    case 254: return 437;
    case 255: return 850;
    default: return -1;  // 0 ANSI, 1 default, 2 symbol and the rest
    }
}

QString decodeCodePage(int cp, const QByteArray& bytes)
{
    if (cp == 65001)
        return QString::fromUtf8(bytes);
    const CodePage& page = codePage(cp);
    if (page.multiByte) {
        QStringDecoder dec(page.name.constData(), QStringDecoder::Flag::Stateless);
        return dec(bytes);
    }
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* d = out.data();
    for (char ch : bytes)
        *d++ = QChar(page.table[static_cast<unsigned char>(ch)]);
    return out;
}

unsigned char toWindows1252(char16_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<unsigned char>(c);
    thread_local std::unordered_map<char16_t, unsigned char> reverse = [] {
        std::unordered_map<char16_t, unsigned char> m;
        QByteArray high(32, '\0');
        for (int i = 0; i < 32; ++i)
            high[i] = char(0x80 + i);
        const QString s = decodeWindows1252(high);
        for (int i = 0; i < 32; ++i)
            if (s[i].unicode() >= 0x100)
                m.emplace(s[i].unicode(), static_cast<unsigned char>(0x80 + i));
        return m;
    }();
    auto it = reverse.find(c);
    return it == reverse.end() ? 0 : it->second;
}

} // namespace lexiform::rtf
