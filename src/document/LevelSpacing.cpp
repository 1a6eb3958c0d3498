#include "document/LevelSpacing.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <map>

namespace tv {

namespace {

// Where in a block format the spacing we added is noted, so that a second
// levelling or a print can take exactly that away again.
constexpr int kLevelSpacingProperty = QTextFormat::UserProperty + 0x4c56;

// Spacing is no edit a user could want to undo; it stays out of the undo
// history, which a freshly rendered pane does not have yet anyway.
class QuietFormatting {
public:
    explicit QuietFormatting(QTextDocument& doc) : doc_(doc), undo_(doc.isUndoRedoEnabled())
    {
        doc_.setUndoRedoEnabled(false);
    }
    ~QuietFormatting() { doc_.setUndoRedoEnabled(undo_); }
    QuietFormatting(const QuietFormatting&) = delete;
    QuietFormatting& operator=(const QuietFormatting&) = delete;

private:
    QTextDocument& doc_;
    bool undo_;
};

void setSpacing(QTextBlock block, double extra)
{
    QTextBlockFormat f = block.blockFormat();
    const double old = f.doubleProperty(kLevelSpacingProperty);
    if (old == extra)
        return;
    f.setTopMargin(std::max(0.0, f.topMargin() - old + extra));
    if (extra > 0)
        f.setProperty(kLevelSpacingProperty, extra);
    else
        f.clearProperty(kLevelSpacingProperty);
    QTextCursor(block).setBlockFormat(f);
}

// Where the text of each block starts and, last, where the document ends.
std::vector<double> blockTops(QTextDocument& doc)
{
    QAbstractTextDocumentLayout* layout = doc.documentLayout();
    std::vector<double> tops;
    tops.reserve(std::size_t(doc.blockCount()) + 1);
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next())
        tops.push_back(layout->blockBoundingRect(b).top());
    tops.push_back(layout->documentSize().height());
    return tops;
}

} // namespace

void ClearLevelSpacing(QTextDocument& document)
{
    QuietFormatting quiet(document);
    QTextCursor edit(&document);
    edit.beginEditBlock();
    for (QTextBlock b = document.begin(); b.isValid(); b = b.next())
        if (b.blockFormat().hasProperty(kLevelSpacingProperty))
            setSpacing(b, 0);
    edit.endEditBlock();
}

double LevelSpacingOf(const QTextDocument& document, int block)
{
    return document.findBlockByNumber(block).blockFormat().doubleProperty(kLevelSpacingProperty);
}

void LevelDocuments(QTextDocument& left, QTextDocument& right, const std::vector<DifferenceSpan>& records)
{
    ClearLevelSpacing(left);
    ClearLevelSpacing(right);
    // Heights are measured once and the spacing worked out on paper: a top
    // margin moves only what lies below it, so each block keeps its height
    // and a relayout per difference (quadratic on a long document) is saved.
    const std::vector<double> leftTops = blockTops(left);
    const std::vector<double> rightTops = blockTops(right);
    const int leftBlocks = int(leftTops.size()) - 1;
    const int rightBlocks = int(rightTops.size()) - 1;

    // Pairs of 0-based blocks that are to start level: the first paragraph
    // of each difference on both sides, and the first equal paragraph behind
    // it. A side with nothing in the difference (the Original of an
    // addition) offers the paragraph behind the insertion point.
    std::vector<std::pair<int, int>> anchors;
    anchors.reserve(records.size() * 2);
    for (const DifferenceSpan& r : records) {
        int l0 = 0, l1 = 0, r0 = 0, r1 = 0;
        switch (r.kind) {
        case 'a': l0 = l1 = r.leftFirst; r0 = r.rightFirst - 1; r1 = r.rightLast; break;
        case 'd': r0 = r1 = r.rightFirst; l0 = r.leftFirst - 1; l1 = r.leftLast; break;
        case 'c': l0 = r.leftFirst - 1; l1 = r.leftLast; r0 = r.rightFirst - 1; r1 = r.rightLast; break;
        default: continue;
        }
        anchors.emplace_back(l0, r0);
        anchors.emplace_back(l1, r1);
    }

    std::map<int, double> leftExtra, rightExtra;
    double leftShift = 0, rightShift = 0;
    int lastLeft = -1, lastRight = -1;
    for (auto [l, r] : anchors) {
        // Out-of-range or backward records would pad the wrong block; an
        // anchor past the end of a side has no block to pad and ends it.
        if (l < lastLeft || r < lastRight || l < 0 || r < 0 || l > leftBlocks || r > rightBlocks)
            continue;
        lastLeft = l;
        lastRight = r;
        const double yl = leftTops[std::size_t(l)] + leftShift;
        const double yr = rightTops[std::size_t(r)] + rightShift;
        if (yl < yr && l < leftBlocks) {
            leftExtra[l] += yr - yl;
            leftShift += yr - yl;
        } else if (yr < yl && r < rightBlocks) {
            rightExtra[r] += yl - yr;
            rightShift += yl - yr;
        }
    }

    auto apply = [](QTextDocument& doc, const std::map<int, double>& extra) {
        if (extra.empty())
            return;
        QuietFormatting quiet(doc);
        QTextCursor edit(&doc);
        edit.beginEditBlock();
        for (auto [block, space] : extra)
            setSpacing(doc.findBlockByNumber(block), space);
        edit.endEditBlock();
    };
    apply(left, leftExtra);
    apply(right, rightExtra);
}

} // namespace tv
