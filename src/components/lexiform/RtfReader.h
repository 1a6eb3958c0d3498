#pragma once
// Reading RTF into the rich text model.
//
// The reader takes what word processors and rich edit controls write: text in
// the document's code page (\ansicpg, per-font \fcharset and \cpg), \'hh
// escapes, \uN with its \ucN fallbacks, font and colour tables, the character
// formats the model carries and paragraph, line and tab breaks. Table rows
// become one paragraph each, with the cells separated by tabs. Destinations it
// does not show (pictures, headers, field instructions, style sheets, anything
// marked \*) are skipped.
//
// It never fails: damaged input (unbalanced braces, truncation, binary
// garbage, absurd numbers) gives whatever text could be read.

#include "components/lexiform/RichTextModel.h"

#include <QByteArray>

namespace lexiform {

// True when the bytes start like an RTF file ("{\rtf", after optional blanks
// or a UTF-8 byte order mark).
bool looksLikeRtf(const QByteArray& bytes);

// Parses RTF. The result always has at least one paragraph. A final \par
// with nothing behind it does not add an empty paragraph, so what writeRtf
// wrote comes back paragraph for paragraph. Text in the document's default
// font (\deff) has an empty font name; text in any other font carries its
// name.
Document readRtf(const QByteArray& rtf);

} // namespace lexiform
