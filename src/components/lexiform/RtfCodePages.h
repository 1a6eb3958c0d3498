#pragma once
// Single- and double-byte Windows code pages as RTF uses them (\ansicpg,
// \fcharset, \cpg). Shared by the RTF reader and writer.

#include <QByteArray>
#include <QString>

namespace lexiform::rtf {

// The code page of an RTF \fcharset number; -1 for "the document's own".
int codePageOfCharset(int charset);

// Decodes bytes of a code page. Unknown or unavailable code pages decode as
// Windows-1252, which accepts every byte.
QString decodeCodePage(int codePage, const QByteArray& bytes);

// The Windows-1252 byte of a character, or 0 when it has none (used for the
// \'hh fallback behind \uN).
unsigned char toWindows1252(char16_t c);

} // namespace lexiform::rtf
