// fuzz-link: tv_settings
// Any bytes as the settings file: reading never crashes, and a value written
// into it reads back as written, with the rest of the file still readable.

#include "FuzzZip.h"
#include "settings/IniStore.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (!fuzzzip::writeRaw(data, size))
        return 0;
    const QString file = fuzzzip::scratchPath();
    // Section and key from the file's own first bytes, so that reads meet
    // what is in it.
    const QString head = QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(std::min<size_t>(size, 24)));
    const QString section = head.section(QLatin1Char(']'), 0, 0).remove(QLatin1Char('['));
    const QString key = head.section(QLatin1Char('\n'), 1, 1).section(QLatin1Char('='), 0, 0);
    IniReadString(file, section, key, QStringLiteral("default"));
    IniReadInt(file, section, key, 7);
    const QString value = QStringLiteral("value \u00e9 1");
    if (IniWriteString(file, QStringLiteral("Fuzz"), QStringLiteral("Key"), value)
        && IniReadString(file, QStringLiteral("Fuzz"), QStringLiteral("Key"), QString()) != value)
        abort();
    return 0;
}
