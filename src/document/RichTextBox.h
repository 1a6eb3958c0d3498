#pragma once
// The rich text box the viewers work with: a QTextDocument and a selection,
// optionally shown by a QTextEdit (then the selection is the view's cursor).
//
// Positions count one unit per character, and a paragraph break is one unit
// that Text and SelText give as "\n". Selection setters clamp to the text, as
// a rich edit control does; a negative SelLength is refused and leaves the
// selection as it was. Setting a format or the selection touches only the
// selected range, so rendering loops over thousands of ranges stay cheap.
//
// A box without a view keeps no undo history (work panes are edited in long
// loops and never undone); a view turns it on. Loading a document (Text,
// TextRTF, LoadFile) clears the history.

#include "document/LazyTextLayout.h"
#include "document/RichText.h"

#include "components/lexiform/RichTextModel.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTextCursor>
#include <QTextEdit>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>

class QTextDocument;
class QThread;
class QWidget;

class RichTextBox : public QObject {
    Q_OBJECT

public:
    // The numbered errors of LoadFile and SaveFile.
    struct FileError {
        int number = 0;  // 0: none; 53 file not found; 70 permission denied; 75 path/file access error
        QString description;
        explicit operator bool() const { return number != 0; }
    };

    // File types of LoadFile and SaveFile.
    enum FileType { ByContent = -1, RichTextFile = 0, PlainTextFile = 1 };

    explicit RichTextBox(QObject* parent = nullptr);
    ~RichTextBox() override;

    // --- view ------------------------------------------------------------------
    // Shows the box in a new QTextEdit owned by `parent`; the view edits this
    // box's document, and its cursor becomes the selection.
    QTextEdit* createView(QWidget* parent = nullptr);
    QTextEdit* view() const { return view_; }
    QTextDocument* document() const { return doc_.get(); }

    // --- content ---------------------------------------------------------------
    QString Text() const;
    void setText(const QString& text);  // plain text; formats are dropped
    // A box holding a plain text, built on a worker thread and handed to
    // `home`, where it is taken: a document of a million lines takes seconds.
    // A document is a reentrant object that nothing else sees until then.
    static std::future<std::unique_ptr<RichTextBox>> buildOnWorker(const QString& text, QThread* home);
    // Where the box's document was built, off the UI thread: walks a long
    // plain document for the layout that will show it, which takes the walk
    // if the document is unchanged by then.
    void walkForLayout();
    int TextLength() const;             // Len(Text), without building it
    // Lets go of the text kept since it was last read or set; the next Text()
    // reads the document again. For long documents whose text is done with.
    void releaseKeptText();
    QChar characterAt(int position) const;  // '\n' for a paragraph break

    RichText TextRTF() const;
    void setTextRTF(const RichText& content);  // an empty value empties the box
    // Exchanges the two boxes' documents, formats and all, without copying:
    // what a copy into one box followed by emptying the other would give,
    // for the price of neither. Each box keeps its own view; the history of
    // edits and the selections start anew.
    void swapDocuments(RichTextBox& other);
    RichText SelRTF() const;
    void setSelRTF(const RichText& content);   // replaces the selection; caret behind it

    // --- selection -------------------------------------------------------------
    int SelStart() const;
    void setSelStart(int start);  // collapses the selection there
    int SelLength() const;
    bool setSelLength(int length);  // false (and no change) when negative
    void setSelection(int start, int end);  // end < 0: to the end of the text
    QString SelText() const;
    void setSelText(const QString& text);   // replaces the selection; caret behind it
    void SelectAll();

    // --- character formats of the selection (at the caret when it is empty) -----
    void setSelColor(std::int32_t colorref);
    void setSelBackColor(std::int32_t colorref);
    void setSelBold(bool on);
    void setSelItalic(bool on);
    void setSelUnderline(bool on);
    void setSelStrikeThru(bool on);
    // The format of the character at a position, for checks and reports.
    lexiform::CharFormat formatAt(int position) const;

    // --- files, clipboard, undo ------------------------------------------------
    // Replaces the document with a file. ByContent and RichTextFile read RTF
    // when the bytes are RTF and text otherwise; PlainTextFile always reads
    // text. On error the box keeps what it held.
    FileError LoadFile(const QString& path, int fileType = ByContent);
    // Writes the document as RTF (RichTextFile) or as UTF-8 text.
    FileError SaveFile(const QString& path, int fileType = RichTextFile) const;
    void Cut();
    void Copy() const;
    void Paste();
    void Undo();
    void setUndoEnabled(bool on);

    // --- lines -----------------------------------------------------------------
    // Display lines when shown (wrapped lines count), paragraphs otherwise.
    // LineIndex(-1) is the start of the caret's line.
    int LineIndex(int line) const;
    int LineFromChar(int position) const;
    int LineLength(int position) const;
    int LineCount() const;

    // Word-wrap margin in twips: 0 wraps at the view's width, a large value
    // (1,000,000 and more) turns wrapping off.
    void setRightMargin(int twips);
    int RightMargin() const { return rightMargin_; }

    // Stops the view from painting while a routine moves the selection about;
    // the view takes the selection when the lock ends (once, so it scrolls
    // once and lays out only what it then shows).
    void setUpdatesLocked(bool locked);

    // Takes the document off its view for a long series of edits, so that the
    // view neither lays out nor paints each of them; when the outermost edit
    // ends the view shows the result, laid out as it scrolls. Loading a
    // document into a shown box does this by itself.
    void beginBulkEdit();
    void endBulkEdit();

signals:
    // The characters of the document the box holds changed (the document's
    // own contentsChange, passed on from whichever document the box holds
    // now, so that a listener stays with the box across swapDocuments).
    void contentsChange(int position, int removed, int added);

private:
    QTextCursor cursor() const;
    void setCursor(const QTextCursor& c);
    void mergeFormat(const QTextCharFormat& f);
    void replaceDocument(const std::function<void(QTextCursor&)>& fill);
    void applyMargin();
    void chooseLayout();
    void watchDocument();
    bool shown() const { return view_ != nullptr; }

    bool viewHoldsCursor() const { return view_ && !locked_ && bulkDepth_ == 0; }

    std::unique_ptr<QTextDocument> doc_;
    QTextCursor cursor_;
    QPointer<QTextEdit> view_;
    bool locked_ = false;
    int bulkDepth_ = 0;
    // What the view shows while its document is taken off it.
    std::unique_ptr<QTextDocument> standIn_;
    LazyTextLayout::Walk walked_;
    int rightMargin_ = 0;
    bool undoWanted_ = false;

    // Text is read far more often than it changes: kept until an edit of the
    // characters (format changes leave it valid). Edit the document through
    // this class, or the kept text goes stale.
    mutable QString textCache_;
    mutable bool textValid_ = false;
    bool formatting_ = false;
    bool layoutSwitch_ = false;
};
