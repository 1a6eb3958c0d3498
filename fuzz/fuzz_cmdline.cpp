// fuzz-link: tv_core
// Any argument list (NUL-separated in the input) through the command-line
// parser: it answers usable or not, never crashes.

#include "core/modParseCommandLine.h"

#include <QStringList>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QStringList args;
    const QByteArray all = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    for (const QByteArray& part : all.split('\0'))
        args << QString::fromUtf8(part);
    ParseCommandLine(args);
    return 0;
}
