// fuzz-link: tv_folioform
// Any bytes as a PDF through the text extraction, with and without a
// password: an answer code, never a crash.

#include "FuzzZip.h"
#include "components/folioform/Folioform.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (!fuzzzip::writeRaw(data, size))
        return 0;
    folioform::Folioform pdf;
    QString text;
    pdf.extractText(fuzzzip::scratchPath(), size % 2 ? QStringLiteral("secret") : QString(), text);
    return 0;
}
