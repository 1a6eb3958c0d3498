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

RichText RichText::unformatted(const QString& text)
{
    RichText r;
    r.text_ = text;
    r.unformatted_ = true;
    return r;
}

const QTextDocumentFragment& RichText::fragment() const
{
    if (unformatted_ && fragment_.isEmpty() && !text_.isEmpty()) {
        // Not QTextDocumentFragment::fromPlainText: its text would take the
        // format of wherever it is inserted, where this content has none.
        QTextDocument scratch;
        scratch.setUndoRedoEnabled(false);
        scratch.setPlainText(text_);
        fragment_ = QTextDocumentFragment(&scratch);
    }
    return fragment_;
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
    if (unformatted_)
        return text_;
    QString s = fragment_.toRawText();
    s.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return s;
}

lexiform::Document RichText::toModel() const
{
    QTextDocument scratch;
    scratch.setUndoRedoEnabled(false);
    QTextCursor c(&scratch);
    c.insertFragment(fragment());
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
    c.insertFragment(fragment());
    c.insertFragment(other.fragment());
    return RichText(QTextDocumentFragment(&scratch));
}

void RichText::insertAt(QTextCursor& cursor) const
{
    if (isEmpty()) {
        cursor.removeSelectedText();
        return;
    }
    cursor.insertFragment(fragment());
}
