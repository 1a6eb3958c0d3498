#pragma once
// A layout for long documents of plain paragraphs, for a QTextEdit to show.
//
// Qt's own layout lays the whole document out, a step at a time after every
// change, until the last paragraph has its lines: for a document of 100,000
// lines that is tens of seconds of processor time and hundreds of megabytes
// of line data, most of it for paragraphs nobody scrolls to. This one lays
// out a paragraph only when it is drawn, hit or asked about, and until then
// counts it as tall as its characters would make it in the default font.
// Where paragraphs stand and what they look like is what Qt's layout gives
// for the documents it is used for (see suits()); a paragraph of a
// proportional font that wraps may move by a line once it is laid out.

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>

#include <cstdint>
#include <vector>

class LazyTextLayout : public QAbstractTextDocumentLayout {
    Q_OBJECT
    // QTextEdit asks for these two by name: the first lets it lay out
    // without a width when wrapping is off, the second is its caret width.
    Q_PROPERTY(bool contentHasAlignment READ contentHasAlignment)
    Q_PROPERTY(int cursorWidth READ cursorWidth WRITE setCursorWidth)

public:
    // Below this Qt's layout is quick enough, and it handles everything.
    static constexpr int kMinimumParagraphs = 20000;

    // True for a long document of paragraphs without tables, frames, lists,
    // images, indents, paragraph spacing or line heights of their own.
    static bool suits(const QTextDocument& doc);

    // What a walk over a document finds: its paragraphs' lengths and which
    // of them are shown. A walk of a million paragraphs takes a good tenth
    // of a second, so a document built on a worker is walked there, and the
    // layout that shows it takes the walk if the document is unchanged since.
    struct Walk {
        int revision = -1;
        int characters = 0;
        int longest = 0;
        std::vector<std::uint16_t> length;
        std::vector<float> shown;  // 1 shown, 0 hidden
    };
    static Walk walk(const QTextDocument& doc);

    explicit LazyTextLayout(QTextDocument* doc);
    LazyTextLayout(QTextDocument* doc, Walk walked);

    void draw(QPainter* painter, const PaintContext& context) override;
    int hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const override;
    int pageCount() const override { return 1; }
    QSizeF documentSize() const override;
    QRectF frameBoundingRect(QTextFrame* frame) const override;
    QRectF blockBoundingRect(const QTextBlock& block) const override;

    bool contentHasAlignment() const { return false; }
    int cursorWidth() const { return cursorWidth_; }
    void setCursorWidth(int width) { cursorWidth_ = width; }

    // Paragraphs that have their lines now.
    int laidOutCount() const;

    // Display lines above a paragraph, and the paragraph that holds display
    // line `line` (with its first line in `firstLine`), in log time: the
    // paragraphs not yet laid out count as tall as the layout takes them to
    // be. Every line of the documents this layout serves is one height.
    int linesAbove(int blockNumber) const;
    int blockOfLine(int line, int& firstLine) const;

protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override;

private:
    void measureFont();
    // Walks the document for the lengths of its paragraphs, then estimates.
    void measureAll();
    void adopt(Walk walked);
    // Estimates every paragraph not laid out from its kept length.
    void estimateAll();
    void remeasure();
    // A paragraph of this many characters, wrapped at wrapWidth (0: not wrapped).
    qreal estimate(int length, qreal wrapWidth) const;
    qreal availableWidth() const;
    qreal margin() const;
    // Lays the paragraph out if it is not, and returns its top.
    qreal place(const QTextBlock& block, int number) const;
    qreal top(int number) const;
    int blockAt(qreal y) const;
    void setHeight(int number, qreal height) const;
    void announceSize() const;
    void announceLater() const;

    // Heights of the paragraphs, and the same as a Fenwick tree so that a
    // paragraph's top and the paragraph at a height are found in log time.
    // A height is whole pixels (lines advance by whole pixels): exact in a
    // float, which halves what a million of them take.
    // The sums are whole pixels too; a document would need over a hundred
    // million lines to overflow them, and Qt's would long have given out.
    mutable std::vector<float> height_;
    mutable std::vector<std::int32_t> tree_;
    // The paragraphs' lengths when last walked, so that a new font or width
    // is estimated without another walk; a longer one is asked for again.
    static constexpr std::uint16_t kLengthKeptUpTo = 0xFFFF;
    std::vector<std::uint16_t> length_;
    mutable std::vector<char> laid_;
    mutable qreal total_ = 0;
    mutable bool sizeAnnounced_ = true;
    qreal lineHeight_ = 0;
    qreal charWidth_ = 0;
    qreal wrapWidth_ = 0;  // 0: not wrapped
    // The characters of the document when it was last measured whole.
    int measuredCharacters_ = -1;
    int longest_ = 0;
    // The widest paragraph laid out so far: tabs and wide characters can
    // make a paragraph wider than its length says.
    mutable qreal widest_ = 0;
    int cursorWidth_ = 1;
};
