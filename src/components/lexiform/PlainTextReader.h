#pragma once
// Plain text files of unknown origin: the encoding is guessed from the bytes
// alone, the way a user expects a text editor to open them.

#include "components/lexiform/RichTextModel.h"

#include <QByteArray>
#include <QString>

namespace lexiform {

enum class TextEncoding {
    Utf8,        // valid UTF-8 without a byte order mark (plain ASCII lands here too)
    Utf8Bom,
    Utf16LE,     // with byte order mark
    Utf16BE,
    Utf32LE,
    Utf32BE,
    Windows1252  // anything that is not valid UTF-8
};

// Guesses the encoding: a byte order mark for UTF-8/16/32, else valid UTF-8,
// else Windows-1252 (which decodes every byte sequence).
TextEncoding detectTextEncoding(const QByteArray& bytes);

// Decodes bytes by detectTextEncoding, dropping the byte order mark. Line ends
// are left as they are. `detected`, when given, receives the encoding used.
QString decodeText(const QByteArray& bytes, TextEncoding* detected = nullptr);

// Windows-1252 to Unicode; the five unassigned bytes map to the C1 controls
// of the same value, as Windows itself does.
QString decodeWindows1252(const QByteArray& bytes);

// Splits decoded text into paragraphs: CR LF, a lone CR and a lone LF each end
// one paragraph. A text ending in a line end has an empty last paragraph, so
// "a\n" gives two paragraphs; an empty text gives one empty paragraph.
Document plainTextToDocument(const QString& text);

// decodeText then plainTextToDocument: every run has the default format.
Document readPlainText(const QByteArray& bytes);

} // namespace lexiform
