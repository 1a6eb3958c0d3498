#pragma once
// Web pages (.htm, .html, .xhtml and the like) as a browser shows their
// text: tags gone, entities decoded, white space collapsed, block elements
// as paragraphs, table rows as tab-separated paragraphs, and the character
// formats of tags and inline styles (bold, italic, underline, strike,
// colours, fonts). Parsing is libxml2's tolerant HTML parser, so broken
// markup gives what a browser would show rather than an error.

#include "components/lexiform/RichTextModel.h"

#include <QByteArray>

namespace lexiform {

// The encoding comes from a byte order mark, then a <meta> charset, then
// valid UTF-8, else Windows-1252.
Document readHtml(const QByteArray& html);

} // namespace lexiform
