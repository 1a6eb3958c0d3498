#pragma once
// Between Lexiform's rich text model and QTextDocument: the boxes hold
// QTextDocuments, files and the converters speak the model.

#include "components/lexiform/RichTextModel.h"

#include <QTextCharFormat>

class QTextCursor;
class QTextDocument;

namespace tv {

QTextCharFormat toQtFormat(const lexiform::CharFormat& f);
lexiform::CharFormat fromQtFormat(const QTextCharFormat& f);

// Inserts the paragraphs at the cursor: the first continues the cursor's
// paragraph, each further one starts a new block.
void insertModel(QTextCursor& cursor, const lexiform::Document& doc);

// The characters from `from` to `to` (document positions) as a model; the
// whole document by default.
lexiform::Document modelOfRange(const QTextDocument& doc, int from = 0, int to = -1);

} // namespace tv
