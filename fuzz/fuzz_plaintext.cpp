// fuzz-link: tv_lexiform tv_gleanseek
// Text of unknown encoding, as the viewers and the find engine decode it:
// no crash, and UTF-8 the find engine makes is valid UTF-8.

#include "components/gleanseek/TextEncoding.h"
#include "components/lexiform/PlainTextReader.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const char* p = reinterpret_cast<const char*>(data);
    const QByteArray bytes = QByteArray::fromRawData(p, qsizetype(size));
    lexiform::TextEncoding detected;
    const QString text = lexiform::decodeText(bytes, &detected);
    lexiform::plainTextToDocument(text);

    std::string utf8;
    gleanseek::AppendWindows1252AsUtf8(utf8, p, size);
    if (!gleanseek::IsValidUtf8(utf8.data(), utf8.size()))
        abort();
    utf8.clear();
    gleanseek::AppendUtf16AsUtf8(utf8, p, size & ~size_t(1), size % 3 == 0);
    if (!gleanseek::IsValidUtf8(utf8.data(), utf8.size()))
        abort();
    gleanseek::CharacterCount(p, size);
    return 0;
}
