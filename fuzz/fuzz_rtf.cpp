// fuzz-link: tv_lexiform
// The RTF reader on arbitrary bytes, and the writer on what it read: neither
// may crash, and what the writer makes must read back to the same document.
#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray in = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const lexiform::Document doc = lexiform::readRtf(in);
    const lexiform::Document again = lexiform::readRtf(lexiform::writeRtf(doc));
    if (!(again.plainText() == doc.plainText()))
        std::abort();
    return 0;
}
