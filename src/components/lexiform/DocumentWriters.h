#pragma once
// Writers of the rich text model besides RTF: plain text, HTML and DOCX.

#include "components/lexiform/RichTextModel.h"

#include <QByteArray>
#include <QString>

namespace lexiform {

// UTF-8, one line per paragraph, the last ended by a line feed when it is
// not empty; a line break inside a paragraph becomes a line feed too.
QByteArray writePlainText(const Document& doc);

// A complete UTF-8 HTML page, one <p> per paragraph, formats as inline
// styles so that any browser or word processor shows them.
QByteArray writeHtml(const Document& doc);

// A minimal Word document (Office Open XML) with the runs and their formats;
// empty when the package could not be built.
QByteArray docxBytes(const Document& doc);
bool writeDocx(const Document& doc, const QString& path);

} // namespace lexiform
