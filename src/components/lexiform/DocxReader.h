#pragma once
// Word documents in the Office Open XML form (.docx, .docm, .dotx): the main
// text with the character formats the model carries, read with libzip and a
// streaming XML reader.
//
// Tables come out as one paragraph per row, cells separated by tabs (several
// paragraphs in one cell joined by blanks). Text boxes follow the paragraph
// that anchors them. Headers and footers are left out: they repeat on every
// page and are not part of the running text. Footnotes and endnotes are
// appended after the body, in the order of their references. Deleted
// tracked changes and hidden text are left out; inserted ones are kept.

#include "components/lexiform/LexiformResult.h"
#include "components/lexiform/RichTextModel.h"

#include <QString>

namespace lexiform {

// Result::Ok, or SourceInvalid when the file is no readable document.
int readDocx(const QString& path, const ReadLimits& limits, Document& out);

} // namespace lexiform
