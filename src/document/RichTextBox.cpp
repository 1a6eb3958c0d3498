#include "document/RichTextBox.h"

#include "components/lexiform/FileBytes.h"
#include "components/lexiform/PlainTextReader.h"
#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"
#include "document/ColorRef.h"
#include "document/LazyTextLayout.h"
#include "document/RichTextConvert.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QTextFrame>
#include <QTextLayout>
#include <QThread>

namespace {

constexpr int kNoWrapTwips = 1000000;
constexpr int kTwipsPerPixel = 15;

// Line ends of any convention as the "\n" that QTextDocument takes as a
// paragraph break (it would take a CR as one too, and so count CR LF twice).
QString normalisedLineEnds(QString text)
{
    if (text.contains(QLatin1Char('\r'))) {
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    return text;
}

QString fromDocumentText(QString s)
{
    s.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return s;
}

const char* const kRtfMimeTypes[] = {"text/rtf", "application/rtf"};

// Moving a cursor makes Qt ask the layout where the new position stands on
// screen, and a shown document is then laid out from its start up to there:
// the whole document for a position near its end. Inside an edit block it
// does not ask, so a selection costs nothing until the view shows it.
void placeCursor(QTextCursor& c, int anchor, int position)
{
    c.beginEditBlock();
    c.setPosition(anchor);
    c.setPosition(position, QTextCursor::KeepAnchor);
    c.endEditBlock();
}

} // namespace

RichTextBox::RichTextBox(QObject* parent)
    : QObject(parent)
    , doc_(std::make_unique<QTextDocument>())
{
    doc_->setUndoRedoEnabled(false);
    cursor_ = QTextCursor(doc_.get());
    watchDocument();
}

void RichTextBox::watchDocument()
{
    // The document reports changes only once something lays it out, that is
    // in a shown box, where the user types; edits through this class mark the
    // text themselves.
    connect(doc_.get(), &QTextDocument::contentsChange, this, [this](int position, int removed, int added) {
        const bool wholeForLayout =
            layoutSwitch_ && position == 0 && removed == 0 && added == doc_->characterCount();
        layoutSwitch_ = false;
        if (!formatting_ && !wholeForLayout)
            textValid_ = false;
        emit contentsChange(position, removed, added);
    });
    // A new layout (a view, or the first question about positions on screen)
    // is announced as a change of the whole document, right after this; the
    // characters stay as they are.
    connect(doc_.get(), &QTextDocument::documentLayoutChanged, this, [this] { layoutSwitch_ = true; });
}

void RichTextBox::swapDocuments(RichTextBox& other)
{
    if (&other == this)
        return;
    beginBulkEdit();
    other.beginBulkEdit();
    doc_->disconnect(this);
    other.doc_->disconnect(&other);
    std::swap(doc_, other.doc_);
    // The kept text describes a document, and goes where it goes.
    std::swap(textCache_, other.textCache_);
    std::swap(textValid_, other.textValid_);
    std::swap(walked_, other.walked_);
    for (RichTextBox* box : {this, &other}) {
        box->watchDocument();
        box->doc_->setUndoRedoEnabled(false);
        box->doc_->clearUndoRedoStacks();
        box->doc_->setUndoRedoEnabled(box->undoWanted_);
        box->cursor_ = QTextCursor(box->doc_.get());
    }
    other.endBulkEdit();
    endBulkEdit();
}

RichTextBox::~RichTextBox()
{
    if (view_)
        view_->setDocument(nullptr);
}

QTextEdit* RichTextBox::createView(QWidget* parent)
{
    auto* edit = new QTextEdit(parent);
    chooseLayout();
    edit->setDocument(doc_.get());
    edit->setAcceptRichText(true);
    edit->setTextCursor(cursor_);
    view_ = edit;
    undoWanted_ = true;
    doc_->setUndoRedoEnabled(true);
    applyMargin();
    return edit;
}

// --- selection ------------------------------------------------------------------

QTextCursor RichTextBox::cursor() const
{
    return viewHoldsCursor() ? view_->textCursor() : cursor_;
}

void RichTextBox::setCursor(const QTextCursor& c)
{
    if (viewHoldsCursor())
        view_->setTextCursor(c);
    else
        cursor_ = c;
}

int RichTextBox::SelStart() const
{
    return cursor().selectionStart();
}

void RichTextBox::setSelStart(int start)
{
    QTextCursor c = cursor();
    const int p = std::clamp(start, 0, TextLength());
    placeCursor(c, p, p);
    setCursor(c);
}

int RichTextBox::SelLength() const
{
    const QTextCursor c = cursor();
    return c.selectionEnd() - c.selectionStart();
}

bool RichTextBox::setSelLength(int length)
{
    if (length < 0)
        return false;
    QTextCursor c = cursor();
    const int start = c.selectionStart();
    const int end = int(std::min<long long>(static_cast<long long>(start) + length, TextLength()));
    placeCursor(c, start, end);
    setCursor(c);
    return true;
}

void RichTextBox::setSelection(int start, int end)
{
    const int len = TextLength();
    if (end < 0 || end > len)
        end = len;
    start = std::clamp(start, 0, len);
    QTextCursor c = cursor();
    placeCursor(c, start, end);
    setCursor(c);
}

void RichTextBox::SelectAll()
{
    setSelection(0, -1);
}

QString RichTextBox::SelText() const
{
    return fromDocumentText(cursor().selectedText());
}

void RichTextBox::setSelText(const QString& text)
{
    QTextCursor c = cursor();
    c.insertText(normalisedLineEnds(text));
    textValid_ = false;
    setCursor(c);
}

// --- content --------------------------------------------------------------------

QString RichTextBox::Text() const
{
    if (!textValid_) {
        textCache_ = fromDocumentText(doc_->toRawText());
        textValid_ = true;
    }
    return textCache_;
}

void RichTextBox::releaseKeptText()
{
    textCache_ = QString();
    textValid_ = false;
}

int RichTextBox::TextLength() const
{
    return doc_->characterCount() - 1;
}

QChar RichTextBox::characterAt(int position) const
{
    const QChar c = doc_->characterAt(position);
    return c == QChar::ParagraphSeparator ? QChar(u'\n') : c;
}

void RichTextBox::replaceDocument(const std::function<void(QTextCursor&)>& fill)
{
    // A shown document would be laid out whole, synchronously, as it fills.
    const bool bulk = view_ && bulkDepth_ == 0;
    if (bulk)
        beginBulkEdit();
    // Loading is not an edit to undo, and recording it would copy the
    // whole document into the history.
    doc_->setUndoRedoEnabled(false);
    doc_->clear();
    QTextCursor c(doc_.get());
    fill(c);
    c.movePosition(QTextCursor::Start);
    setCursor(c);
    doc_->setUndoRedoEnabled(undoWanted_);
    textValid_ = false;
    if (bulk)
        endBulkEdit();
}

std::future<std::unique_ptr<RichTextBox>> RichTextBox::buildOnWorker(const QString& text, QThread* home)
{
    return std::async(std::launch::async, [text, home] {
        auto box = std::make_unique<RichTextBox>();
        box->setText(text);
        box->walkForLayout();
        box->document()->moveToThread(home);
        box->moveToThread(home);
        return box;
    });
}

void RichTextBox::walkForLayout()
{
    if (LazyTextLayout::suits(*doc_))
        walked_ = LazyTextLayout::walk(*doc_);
}

void RichTextBox::setText(const QString& text)
{
    const QString normalised = normalisedLineEnds(text);
    replaceDocument([&](QTextCursor&) { doc_->setPlainText(normalised); });
    // The document gives its text back as it took it, unless the text holds
    // a character the document turns into a paragraph break. Keeping it
    // spares reading a long document back, and a copy of a box's text shares
    // its characters with the box instead of holding them again.
    for (const QChar c : {QChar(QChar::ParagraphSeparator), QChar(0xFDD0), QChar(0xFDD1)})
        if (normalised.contains(c))
            return;
    textCache_ = normalised;
    textValid_ = true;
}

namespace {

// True when nothing in the document carries a format: no character or
// paragraph format with a property, no list, table or frame. The format
// collection keeps formats that edits left unused, so this may say no for
// a document that has become plain, never yes for one that is not.
bool hasNoFormats(const QTextDocument& doc)
{
    if (!doc.rootFrame()->childFrames().isEmpty())
        return false;
    const QList<QTextFormat> formats = doc.allFormats();
    for (const QTextFormat& f : formats) {
        if (f.isFrameFormat())
            continue;
        if (!(f.isCharFormat() || f.isBlockFormat()) || f.propertyCount() != 0)
            return false;
    }
    return true;
}

} // namespace

RichText RichTextBox::TextRTF() const
{
    if (hasNoFormats(*doc_))
        return RichText::unformatted(Text());
    QTextCursor all(doc_.get());
    placeCursor(all, 0, TextLength());
    return RichText(QTextDocumentFragment(all));
}

void RichTextBox::setTextRTF(const RichText& content)
{
    if (content.isUnformatted()) {
        setText(content.toPlainText());
        return;
    }
    replaceDocument([&](QTextCursor& c) { content.insertAt(c); });
}

RichText RichTextBox::SelRTF() const
{
    return RichText(QTextDocumentFragment(cursor()));
}

void RichTextBox::setSelRTF(const RichText& content)
{
    QTextCursor c = cursor();
    // A rendering puts coloured copies of sections back over the same
    // characters: the kept text still holds then, and a long document is
    // not read back for it.
    // Frames and tables bring characters of their own, and are left out.
    bool sameCharacters = false;
    if (textValid_) {
        const QString incoming = content.toPlainText();
        sameCharacters = !incoming.contains(QChar(0xFDD0)) && !incoming.contains(QChar(0xFDD1))
            && incoming == fromDocumentText(c.selectedText());
    }
    formatting_ = sameCharacters;
    content.insertAt(c);
    formatting_ = false;
    if (!sameCharacters || TextLength() != textCache_.size())
        textValid_ = false;
    setCursor(c);
}

// --- formats --------------------------------------------------------------------

void RichTextBox::mergeFormat(const QTextCharFormat& f)
{
    QTextCursor c = cursor();
    formatting_ = true;
    c.mergeCharFormat(f);
    formatting_ = false;
    setCursor(c);
}

void RichTextBox::setSelColor(std::int32_t colorref)
{
    QTextCharFormat f;
    f.setForeground(tv::colorFromColorref(colorref));
    mergeFormat(f);
}

void RichTextBox::setSelBackColor(std::int32_t colorref)
{
    QTextCharFormat f;
    f.setBackground(tv::colorFromColorref(colorref));
    mergeFormat(f);
}

void RichTextBox::setSelBold(bool on)
{
    QTextCharFormat f;
    f.setFontWeight(on ? QFont::Bold : QFont::Normal);
    mergeFormat(f);
}

void RichTextBox::setSelItalic(bool on)
{
    QTextCharFormat f;
    f.setFontItalic(on);
    mergeFormat(f);
}

void RichTextBox::setSelUnderline(bool on)
{
    QTextCharFormat f;
    f.setFontUnderline(on);
    mergeFormat(f);
}

void RichTextBox::setSelStrikeThru(bool on)
{
    QTextCharFormat f;
    f.setFontStrikeOut(on);
    mergeFormat(f);
}

lexiform::CharFormat RichTextBox::formatAt(int position) const
{
    const QTextBlock block = doc_->findBlock(position);
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment frag = it.fragment();
        if (position >= frag.position() && position < frag.position() + frag.length())
            return tv::fromQtFormat(frag.charFormat());
    }
    // A paragraph break: its format is the one the next paragraph starts with.
    const QTextBlock next = block.next();
    return tv::fromQtFormat(next.isValid() ? next.charFormat() : block.charFormat());
}

// --- files ----------------------------------------------------------------------

RichTextBox::FileError RichTextBox::LoadFile(const QString& path, int fileType)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {53, tr("File not found")};
    QFile file(path);
    // Only a transient failure earns the caller's retry loop; a file we may
    // not read will not become readable by waiting, so it fails at once.
    if (!info.isDir() && !info.isReadable())
        return {70, tr("Permission denied")};
    if (info.isDir() || !file.open(QIODevice::ReadOnly))
        return {75, tr("Path/File access error")};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        return {75, tr("Path/File access error")};
    file.close();

    if (fileType != PlainTextFile && lexiform::looksLikeRtf(bytes)) {
        const lexiform::Document doc = lexiform::readRtf(bytes);
        replaceDocument([&](QTextCursor& c) { tv::insertModel(c, doc); });
    } else {
        // Plain text goes in whole: far faster than run by run.
        setText(lexiform::decodeText(bytes));
    }
    return {};
}

RichTextBox::FileError RichTextBox::SaveFile(const QString& path, int fileType) const
{
    const QByteArray bytes = fileType == PlainTextFile
                                 ? Text().toUtf8()
                                 : lexiform::writeRtf(tv::modelOfRange(*doc_));
    if (!lexiform::writeFileBytes(path, bytes))
        return {75, tr("Path/File access error")};
    return {};
}

// --- clipboard and undo ------------------------------------------------------------

void RichTextBox::Copy() const
{
    const QTextCursor c = cursor();
    if (!c.hasSelection())
        return;
    auto* mime = new QMimeData;
    const QTextDocumentFragment frag(c);
    mime->setText(fromDocumentText(frag.toRawText()));
    mime->setHtml(frag.toHtml());
    const QByteArray rtf = lexiform::writeRtf(tv::modelOfRange(*doc_, c.selectionStart(), c.selectionEnd()));
    for (const char* type : kRtfMimeTypes)
        mime->setData(QLatin1String(type), rtf);
    QGuiApplication::clipboard()->setMimeData(mime);
}

void RichTextBox::Cut()
{
    QTextCursor c = cursor();
    if (!c.hasSelection())
        return;
    Copy();
    c.removeSelectedText();
    textValid_ = false;
    setCursor(c);
}

void RichTextBox::Paste()
{
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime)
        return;
    RichText content;
    bool found = false;
    for (const char* type : kRtfMimeTypes) {
        if (mime->hasFormat(QLatin1String(type))) {
            content = RichText::fromRtf(mime->data(QLatin1String(type)));
            found = true;
            break;
        }
    }
    if (!found && mime->hasHtml())
        content = RichText(QTextDocumentFragment::fromHtml(mime->html()));
    else if (!found && mime->hasText())
        content = RichText::fromPlainText(mime->text());
    else if (!found)
        return;
    setSelRTF(content);
}

void RichTextBox::Undo()
{
    QTextCursor c = cursor();
    doc_->undo(&c);
    textValid_ = false;
    setCursor(c);
}

void RichTextBox::setUndoEnabled(bool on)
{
    undoWanted_ = on;
    doc_->setUndoRedoEnabled(on);
}

// --- lines ------------------------------------------------------------------------

namespace {

// The laid-out text of a block in a shown box; laying out on demand, since
// a view lays out lazily.
QTextLayout* laidOut(const QTextDocument* doc, const QTextBlock& block)
{
    doc->documentLayout()->blockBoundingRect(block);
    QTextLayout* layout = block.layout();
    return (layout && layout->lineCount() > 0) ? layout : nullptr;
}

} // namespace

int RichTextBox::LineIndex(int line) const
{
    if (line < 0)
        return LineIndex(LineFromChar(SelStart()));
    if (!shown()) {
        const QTextBlock block = doc_->findBlockByNumber(line);
        return block.isValid() ? block.position() : -1;
    }
    // A long document is not walked (and laid out) up to the line: the
    // status bar asks twice a second.
    int first = 0;
    QTextBlock block = doc_->begin();
    if (const auto* lazy = qobject_cast<const LazyTextLayout*>(doc_->documentLayout()))
        block = doc_->findBlockByNumber(lazy->blockOfLine(line, first));
    for (; block.isValid(); block = block.next()) {
        const QTextLayout* layout = laidOut(doc_.get(), block);
        const int lines = layout ? layout->lineCount() : 1;
        if (line < first + lines)
            return block.position() + (layout ? layout->lineAt(line - first).textStart() : 0);
        first += lines;
    }
    return -1;
}

int RichTextBox::LineFromChar(int position) const
{
    position = std::clamp(position, 0, TextLength());
    const QTextBlock target = doc_->findBlock(position);
    if (!shown())
        return target.blockNumber();
    int line = 0;
    if (const auto* lazy = qobject_cast<const LazyTextLayout*>(doc_->documentLayout())) {
        // Laying the target out first settles its height in the sum.
        const QTextLayout* layout = laidOut(doc_.get(), target);
        line = lazy->linesAbove(target.blockNumber());
        if (layout)
            line += layout->lineForTextPosition(position - target.position()).lineNumber();
        return line;
    }
    for (QTextBlock block = doc_->begin(); block.isValid() && block != target; block = block.next()) {
        const QTextLayout* layout = laidOut(doc_.get(), block);
        line += layout ? layout->lineCount() : 1;
    }
    const QTextLayout* layout = laidOut(doc_.get(), target);
    if (layout)
        line += layout->lineForTextPosition(position - target.position()).lineNumber();
    return line;
}

int RichTextBox::LineLength(int position) const
{
    position = std::clamp(position, 0, TextLength());
    const QTextBlock block = doc_->findBlock(position);
    if (shown()) {
        if (const QTextLayout* layout = laidOut(doc_.get(), block))
            return layout->lineForTextPosition(position - block.position()).textLength();
    }
    return block.length() - 1;
}

int RichTextBox::LineCount() const
{
    return LineFromChar(TextLength()) + 1;
}

void RichTextBox::setRightMargin(int twips)
{
    rightMargin_ = std::max(0, twips);
    applyMargin();
}

void RichTextBox::applyMargin()
{
    if (!view_)
        return;
    if (rightMargin_ == 0) {
        view_->setLineWrapMode(QTextEdit::WidgetWidth);
    } else if (rightMargin_ >= kNoWrapTwips) {
        view_->setLineWrapMode(QTextEdit::NoWrap);
    } else {
        view_->setLineWrapMode(QTextEdit::FixedPixelWidth);
        view_->setLineWrapColumnOrWidth(rightMargin_ / kTwipsPerPixel);
    }
}

void RichTextBox::setUpdatesLocked(bool locked)
{
    if (!view_ || locked == locked_)
        return;
    if (locked) {
        if (bulkDepth_ == 0)
            cursor_ = view_->textCursor();
        locked_ = true;
        view_->setUpdatesEnabled(false);
    } else {
        locked_ = false;
        if (bulkDepth_ == 0)
            view_->setTextCursor(cursor_);
        view_->setUpdatesEnabled(true);
    }
}

void RichTextBox::beginBulkEdit()
{
    if (!view_ || bulkDepth_++ > 0)
        return;
    if (!locked_)
        cursor_ = view_->textCursor();
    standIn_ = std::make_unique<QTextDocument>();
    view_->setDocument(standIn_.get());
    // Without a layout the document does no layout work while it changes;
    // the view makes a new one when it takes the document back.
    doc_->setDocumentLayout(nullptr);
}

void RichTextBox::chooseLayout()
{
    // A document without a layout gets Qt's own from the view; a long plain
    // one is laid out only where it is looked at.
    if (LazyTextLayout::suits(*doc_))
        doc_->setDocumentLayout(new LazyTextLayout(doc_.get(), std::exchange(walked_, {})));
}

void RichTextBox::endBulkEdit()
{
    if (!view_ || bulkDepth_ == 0 || --bulkDepth_ > 0)
        return;
    chooseLayout();
    view_->setDocument(doc_.get());
    standIn_.reset();
    applyMargin();
    if (!locked_)
        view_->setTextCursor(cursor_);
}
