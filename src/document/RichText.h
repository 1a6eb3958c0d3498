#pragma once
// Rich content as a value: what TextRTF and SelRTF of a RichTextBox give and
// take. Copies share their data, so handing a box's whole document to another
// box costs one copy of the characters and no RTF text at all; RTF is made or
// parsed only where a file or the clipboard needs it.

#include "components/lexiform/RichTextModel.h"

#include <QByteArray>
#include <QString>
#include <QTextDocumentFragment>

class QTextCursor;

class RichText {
public:
    RichText() = default;
    explicit RichText(const QTextDocumentFragment& fragment);

    // Plain text: each "\n", CR LF or lone CR starts a new paragraph.
    static RichText fromPlainText(const QString& text);
    static RichText fromModel(const lexiform::Document& doc);
    // RTF; bytes that do not look like RTF are taken as plain text.
    static RichText fromRtf(const QByteArray& rtf);
    // The whole content of a document that has no formats at all, kept as
    // its text: a box takes it with one build of its document, where a
    // fragment costs a copy of the document and then a second build.
    static RichText unformatted(const QString& text);
    bool isUnformatted() const { return unformatted_; }

    bool isEmpty() const { return unformatted_ ? text_.isEmpty() : fragment_.isEmpty(); }
    // Paragraphs joined by "\n".
    QString toPlainText() const;
    lexiform::Document toModel() const;
    QByteArray toRtf() const;

    // Both contents one after the other, the second continuing the last
    // paragraph of the first.
    RichText operator+(const RichText& other) const;

    // Made on first use for unformatted content.
    const QTextDocumentFragment& fragment() const;
    // Inserts the content at the cursor, replacing its selection.
    void insertAt(QTextCursor& cursor) const;

private:
    mutable QTextDocumentFragment fragment_;
    QString text_;
    bool unformatted_ = false;
};
