#include "document/LazyTextLayout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace {

// Far wider than any line; a paragraph is laid out on it when wrapping is off.
constexpr qreal kUnbounded = 1e7;

// The height Qt's layout gives a line of a paragraph of single spacing.
qreal lineAdvance(const QTextLine& line)
{
    return std::ceil(line.ascent() + line.descent() + line.leading());
}

bool plainBlockFormat(const QTextBlockFormat& f)
{
    return f.leftMargin() == 0 && f.rightMargin() == 0 && f.topMargin() == 0 && f.bottomMargin() == 0
        && f.indent() == 0 && f.textIndent() == 0 && f.lineHeightType() == QTextBlockFormat::SingleHeight
        && !f.nonBreakableLines();
}

} // namespace

bool LazyTextLayout::suits(const QTextDocument& doc)
{
    if (doc.blockCount() < kMinimumParagraphs || !doc.rootFrame()->childFrames().isEmpty())
        return false;
    // The format collection is small even for a large document: checking it
    // costs nothing next to walking the paragraphs.
    const QList<QTextFormat> formats = doc.allFormats();
    for (const QTextFormat& f : formats) {
        if (f.isListFormat() || f.isTableFormat() || f.isTableCellFormat())
            return false;
        if (f.isCharFormat() && f.objectType() != QTextFormat::NoObject)
            return false;
        if (f.isBlockFormat() && !plainBlockFormat(f.toBlockFormat()))
            return false;
    }
    return true;
}

LazyTextLayout::LazyTextLayout(QTextDocument* doc)
    : LazyTextLayout(doc, Walk())
{
}

LazyTextLayout::LazyTextLayout(QTextDocument* doc, Walk walked)
    : QAbstractTextDocumentLayout(doc)
{
    if (walked.revision == doc->revision() && walked.characters == doc->characterCount()
        && walked.length.size() == size_t(doc->blockCount()))
        adopt(std::move(walked));
    else
        measureAll();
}

qreal LazyTextLayout::margin() const
{
    return document()->documentMargin();
}

qreal LazyTextLayout::availableWidth() const
{
    const qreal page = document()->pageSize().width();
    return page > 0 ? std::max<qreal>(1, page - 2 * margin()) : 0;
}

qreal LazyTextLayout::estimate(int length, qreal wrapWidth) const
{
    if (wrapWidth <= 0 || length <= 1)
        return lineHeight_;
    const qreal lines = std::ceil((length - 1) * charWidth_ / wrapWidth);
    return lineHeight_ * std::max<qreal>(1, lines);
}

void LazyTextLayout::measureFont()
{
    // One line of the default font gives the height of every line not yet
    // laid out, and its character width the lines a long paragraph wraps to.
    QTextLayout probe(QStringLiteral("x"), document()->defaultFont(), paintDevice());
    probe.beginLayout();
    const QTextLine line = probe.createLine();
    probe.endLayout();
    lineHeight_ = lineAdvance(line);
    charWidth_ = QFontMetricsF(document()->defaultFont(), paintDevice()).averageCharWidth();
    // The width is asked once: asking the document for it per paragraph
    // costs more than the estimate itself on a million paragraphs.
    const qreal width = availableWidth();
    wrapWidth_ = width > 0 && document()->defaultTextOption().wrapMode() != QTextOption::NoWrap ? width : 0;
}

LazyTextLayout::Walk LazyTextLayout::walk(const QTextDocument& doc)
{
    const int n = doc.blockCount();
    Walk w;
    w.revision = doc.revision();
    w.characters = doc.characterCount();
    w.length.assign(size_t(n), 0);
    w.shown.assign(size_t(n), 0);
    int i = 0;
    for (QTextBlock b = doc.begin(); b.isValid() && i < n; b = b.next(), ++i) {
        const int length = b.length();
        w.longest = std::max(w.longest, length);
        w.length[size_t(i)] = std::uint16_t(std::min(length, int(kLengthKeptUpTo)));
        w.shown[size_t(i)] = b.isVisible() ? 1.0f : 0.0f;
    }
    return w;
}

void LazyTextLayout::measureAll()
{
    adopt(walk(*document()));
}

void LazyTextLayout::adopt(Walk walked)
{
    measureFont();
    measuredCharacters_ = walked.characters;
    longest_ = walked.longest;
    length_ = std::move(walked.length);
    // A hidden paragraph takes no room: its height stays 0, which no
    // estimate of a shown one is.
    height_ = std::move(walked.shown);
    laid_.assign(height_.size(), 0);
    estimateAll();
}

void LazyTextLayout::estimateAll()
{
    widest_ = 0;
    const size_t n = height_.size();
    for (size_t i = 0; i < n; ++i) {
        if (height_[i] == 0)
            continue;
        int length = length_[i];
        if (length == kLengthKeptUpTo)
            length = document()->findBlockByNumber(int(i)).length();
        height_[i] = float(estimate(length, wrapWidth_));
    }
    // Linear build of the tree.
    tree_.assign(n + 1, 0);
    total_ = 0;
    for (size_t k = 1; k <= n; ++k) {
        const auto h = std::int32_t(height_[k - 1]);
        tree_[k] += h;
        total_ += h;
        const size_t parent = k + (k & (~k + 1));
        if (parent <= n)
            tree_[parent] += tree_[k];
    }
}

void LazyTextLayout::remeasure()
{
    const qreal line = lineHeight_, chars = charWidth_, wrap = wrapWidth_;
    measureFont();
    const bool sameMeasures = line == lineHeight_ && chars == charWidth_ && wrap == wrapWidth_;
    widest_ = 0;
    for (size_t i = 0; i < laid_.size(); ++i) {
        if (!laid_[i])
            continue;
        QTextBlock b = document()->findBlockByNumber(int(i));
        b.clearLayout();
        laid_[i] = 0;
        if (sameMeasures)
            setHeight(int(i), b.isVisible() ? estimate(b.length(), wrapWidth_) : 0);
        else
            height_[i] = b.isVisible() ? 1.0f : 0.0f;
    }
    // New measures change every estimate; the paragraphs are the ones
    // measured, so their kept lengths give the estimates without a walk over
    // the document.
    if (!sameMeasures)
        estimateAll();
}

void LazyTextLayout::documentChanged(int from, int charsRemoved, int charsAdded)
{
    const int n = document()->blockCount();
    const int characters = document()->characterCount();
    if (from == 0 && charsRemoved == 0 && charsAdded == characters && characters == measuredCharacters_
        && laid_.size() == size_t(n)) {
        // The whole document announced with no character gone: a new
        // layout, font, width or option, announced a dozen times while a
        // window comes up. The paragraphs are the ones measured: only those
        // that have lines lose them, and the estimates of the others stand
        // unless the font or the wrapping width changed.
        remeasure();
        sizeAnnounced_ = true;
        emit documentSizeChanged(documentSize());
        emit update();
        return;
    }
    // Lines of the changed paragraphs are stale; the others are laid out
    // again when next drawn, since a new width or font may have come with
    // the change. Only paragraphs on screen ever had lines.
    const QTextBlock first = document()->findBlock(from);
    const QTextBlock last = document()->findBlock(from + std::max(charsAdded, 1) - 1);
    for (QTextBlock b = first; b.isValid(); b = b.next()) {
        b.clearLayout();
        if (b == last)
            break;
    }
    (void)charsRemoved;
    measureAll();
    sizeAnnounced_ = true;
    emit documentSizeChanged(documentSize());
    emit update();
}

int LazyTextLayout::linesAbove(int blockNumber) const
{
    if (lineHeight_ <= 0 || blockNumber <= 0)
        return 0;
    const int number = std::min(blockNumber, int(height_.size()));
    return int(std::lround((top(number) - margin()) / lineHeight_));
}

int LazyTextLayout::blockOfLine(int line, int& firstLine) const
{
    firstLine = 0;
    if (height_.empty() || lineHeight_ <= 0 || line <= 0)
        return 0;
    // Half a line down, so that rounding of the sums never lands a hair
    // above the paragraph's top.
    const int number = std::clamp(blockAt(margin() + (line + 0.5) * lineHeight_), 0, int(height_.size()) - 1);
    firstLine = linesAbove(number);
    return number;
}

int LazyTextLayout::laidOutCount() const
{
    return int(std::count(laid_.begin(), laid_.end(), char(1)));
}

void LazyTextLayout::setHeight(int number, qreal height) const
{
    const auto delta = std::int32_t(std::lround(height - height_[size_t(number)]));
    if (delta == 0)
        return;
    height_[size_t(number)] = float(height);
    total_ += delta;
    for (size_t k = size_t(number) + 1; k < tree_.size(); k += k & (~k + 1))
        tree_[k] += delta;
    announceLater();
}

void LazyTextLayout::announceLater() const
{
    // The scroll bars follow once the drawing that found the change is over.
    if (sizeAnnounced_) {
        sizeAnnounced_ = false;
        QTimer::singleShot(0, this, [this] { announceSize(); });
    }
}

void LazyTextLayout::announceSize() const
{
    sizeAnnounced_ = true;
    emit const_cast<LazyTextLayout*>(this)->documentSizeChanged(documentSize());
}

qreal LazyTextLayout::top(int number) const
{
    qreal sum = 0;
    for (size_t k = size_t(number); k > 0; k -= k & (~k + 1))
        sum += tree_[k];
    return margin() + sum;
}

int LazyTextLayout::blockAt(qreal y) const
{
    // The last paragraph whose top is at or above y.
    qreal rest = y - margin();
    size_t pos = 0;
    size_t step = 1;
    while (step * 2 < tree_.size())
        step *= 2;
    for (; step > 0; step /= 2) {
        const size_t next = pos + step;
        if (next < tree_.size() && tree_[next] <= rest) {
            pos = next;
            rest -= tree_[next];
        }
    }
    return int(std::min(pos, height_.empty() ? size_t(0) : height_.size() - 1));
}

qreal LazyTextLayout::place(const QTextBlock& block, int number) const
{
    const qreal y = top(number);
    QTextLayout* tl = block.layout();
    if (!laid_[size_t(number)] || tl->lineCount() == 0) {
        const QTextBlockFormat format = block.blockFormat();
        QTextOption option = document()->defaultTextOption();
        option.setTextDirection(block.textDirection());
        option.setAlignment(QStyle::visualAlignment(block.textDirection(), format.alignment()));
        option.setTabs(format.tabPositions());
        tl->setTextOption(option);
        const qreal width = availableWidth();
        qreal h = 0;
        qreal natural = 0;
        tl->beginLayout();
        for (QTextLine line = tl->createLine(); line.isValid(); line = tl->createLine()) {
            line.setLineWidth(width > 0 ? width : kUnbounded);
            line.setPosition(QPointF(0, h));
            h += lineAdvance(line);
            natural = std::max(natural, line.naturalTextWidth());
        }
        tl->endLayout();
        laid_[size_t(number)] = 1;
        if (width <= 0 && natural > widest_) {
            widest_ = natural;
            announceLater();
        }
        setHeight(number, block.isVisible() ? h : 0);
    }
    tl->setPosition(QPointF(margin(), y));
    return y;
}

QSizeF LazyTextLayout::documentSize() const
{
    const qreal page = document()->pageSize().width();
    const qreal width = page > 0 ? page : std::max(longest_ * charWidth_, widest_) + 2 * margin() + cursorWidth_;
    return QSizeF(width, total_ + 2 * margin());
}

QRectF LazyTextLayout::frameBoundingRect(QTextFrame* frame) const
{
    if (frame != document()->rootFrame())
        return QRectF();
    return QRectF(QPointF(0, 0), documentSize());
}

QRectF LazyTextLayout::blockBoundingRect(const QTextBlock& block) const
{
    if (!block.isValid() || !block.isVisible() || block.document() != document())
        return QRectF();
    const int number = block.blockNumber();
    if (number < 0 || size_t(number) >= height_.size())
        return QRectF();
    const qreal y = place(block, number);
    const qreal width = availableWidth();
    return QRectF(margin(), y, width > 0 ? width : block.layout()->boundingRect().width(),
                  height_[size_t(number)]);
}

int LazyTextLayout::hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const
{
    if (height_.empty())
        return -1;
    const int number = blockAt(point.y());
    const QTextBlock block = document()->findBlockByNumber(number);
    if (!block.isValid())
        return -1;
    const qreal y = place(block, number);
    const QTextLayout* tl = block.layout();
    const QPointF local = point - QPointF(margin(), y);
    QTextLine hit;
    for (int i = 0; i < tl->lineCount(); ++i) {
        const QTextLine line = tl->lineAt(i);
        if (local.y() < line.y() + lineAdvance(line) || i == tl->lineCount() - 1) {
            hit = line;
            break;
        }
    }
    if (!hit.isValid())
        return accuracy == Qt::ExactHit ? -1 : block.position();
    if (accuracy == Qt::ExactHit
        && (local.y() < 0 || local.y() > hit.y() + lineAdvance(hit) || local.x() < hit.x()
            || local.x() > hit.x() + hit.naturalTextWidth()))
        return -1;
    return block.position() + hit.xToCursor(local.x());
}

void LazyTextLayout::draw(QPainter* painter, const PaintContext& context)
{
    if (height_.empty())
        return;
    const QRectF clip = context.clip.isValid() ? context.clip : QRectF(0, 0, kUnbounded, total_ + 2 * margin());
    int number = blockAt(clip.top());
    QTextBlock block = document()->findBlockByNumber(number);
    const QColor text = context.palette.color(QPalette::Text);
    for (; block.isValid() && size_t(number) < height_.size(); block = block.next(), ++number) {
        if (!block.isVisible())
            continue;
        const qreal y = place(block, number);
        if (y > clip.bottom())
            break;
        QTextLayout* tl = block.layout();
        const qreal h = height_[size_t(number)];
        const QTextBlockFormat format = block.blockFormat();
        if (format.hasProperty(QTextFormat::BackgroundBrush))
            painter->fillRect(QRectF(margin(), y, documentSize().width() - 2 * margin(), h), format.background());

        // The selections as Qt's layout hands them to a paragraph: a range
        // that takes in the paragraph break shows it as a blank behind the line.
        const int position = block.position();
        const int length = block.length();
        QList<QTextLayout::FormatRange> ranges;
        for (const Selection& s : context.selections) {
            const int from = s.cursor.selectionStart() - position;
            const int to = s.cursor.selectionEnd() - position;
            if (from < length && to > 0 && to > from) {
                ranges.append({from, to - from, s.format});
            } else if (!s.cursor.hasSelection() && s.format.hasProperty(QTextFormat::FullWidthSelection)
                       && block.contains(s.cursor.position())) {
                const QTextLine line = tl->lineForTextPosition(s.cursor.position() - position);
                QTextLayout::FormatRange r{line.textStart(), line.textLength(), s.format};
                if (r.start + r.length == length - 1)
                    ++r.length;
                ranges.append(r);
            }
        }
        painter->setPen(text);
        tl->draw(painter, QPointF(0, 0), ranges, clip);
        const int caret = context.cursorPosition;
        if (caret >= position && caret < position + length) {
            painter->setPen(text);
            tl->drawCursor(painter, QPointF(0, 0), caret - position, cursorWidth_);
        }
    }
}
