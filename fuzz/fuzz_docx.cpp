// fuzz-link: tv_lexiform
// Word documents: DOCX and ODT packages, and HTML, through the readers.

#include "FuzzZip.h"
#include "components/lexiform/DocxReader.h"
#include "components/lexiform/HtmlReader.h"
#include "components/lexiform/OdtReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    lexiform::ReadLimits limits;
    limits.maxEntryBytes = 8 << 20;
    lexiform::Document doc;
    const uint8_t mode = data[0] % 5;
    ++data;
    --size;
    switch (mode) {
    case 0:
        if (fuzzzip::writeRaw(data, size))
            lexiform::readDocx(fuzzzip::scratchPath(), limits, doc);
        break;
    case 1:
        if (fuzzzip::writePackage(data, size, {"word/document.xml", "word/styles.xml", "word/footnotes.xml",
                                               "_rels/.rels"}))
            lexiform::readDocx(fuzzzip::scratchPath(), limits, doc);
        break;
    case 2:
        if (fuzzzip::writePackage(data, size, {"content.xml", "styles.xml"}))
            lexiform::readOdt(fuzzzip::scratchPath(), limits, doc);
        break;
    case 3:
        if (fuzzzip::writeRaw(data, size))
            lexiform::readOdt(fuzzzip::scratchPath(), limits, doc);
        break;
    default:
        doc = lexiform::readHtml(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
        break;
    }
    return 0;
}
