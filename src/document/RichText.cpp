#include "document/RichText.h"

#include "components/lexiform/PlainTextReader.h"
#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"
#include "document/RichTextConvert.h"

#include <QTextCursor>
#include <QTextDocument>

RichText::RichText(const QTextDocumentFragment& fragment)
    : fragment_(fragment)
{
}

RichText RichText::fromPlainText(const QString& text)
{
    return fromModel(lexiform::plainTextToDocument(text));
}

RichText RichText::fromModel(const lexiform::Document& doc)
{
    QTextDocument scratch;
    scratch.setUndoRedoEnabled(false);
    QTextCursor c(&scratch);
    tv::insertModel(c, doc);
    return RichText(QTextDocumentFragment(&scratch));
}

RichText RichText::fromRtf(const QByteArray& rtf)
{
    if (!lexiform::looksLikeRtf(rtf))
        return fromPlainText(lexiform::decodeText(rtf));
    return fromModel(lexiform::readRtf(rtf));
}

QString RichText::toPlainText() const
{
    QString s = fragment_.toRawText();
    s.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return s;
}

lexiform::Document RichText::toModel() const
{
    QTextDocument scratch;
    scratch.setUndoRedoEnabled(false);
    QTextCursor c(&scratch);
    c.insertFragment(fragment_);
    return tv::modelOfRange(scratch);
}

QByteArray RichText::toRtf() const
{
    return lexiform::writeRtf(toModel());
}

RichText RichText::operator+(const RichText& other) const
{
    if (other.isEmpty())
        return *this;
    if (isEmpty())
        return other;
    QTextDocument scratch;
    scratch.setUndoRedoEnabled(false);
    QTextCursor c(&scratch);
    c.insertFragment(fragment_);
    c.insertFragment(other.fragment_);
    return RichText(QTextDocumentFragment(&scratch));
}

void RichText::insertAt(QTextCursor& cursor) const
{
    if (isEmpty()) {
        cursor.removeSelectedText();
        return;
    }
    cursor.insertFragment(fragment_);
}
