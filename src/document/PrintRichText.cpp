#include "document/PrintRichText.h"

#include "document/LevelSpacing.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPrinter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <cmath>
#include <memory>
#include <vector>

namespace tv {

namespace {

constexpr double kTwipsPerInch = 1440.0;

// A page holds whole lines, from the top of its first to the top of the
// first line of the next page.
struct Page {
    double top = 0;
    double bottom = 0;
    double shortestLine = 0;  // for a tolerance in comparing heights
};

// The layout's own page breaks let a line straddle two pages, and what the
// clip hides of it would still be in a PDF's text; so pages are cut between
// lines here. A line taller than a page gets a page to itself.
std::vector<Page> paginate(const QTextDocument& doc, double pageHeight)
{
    std::vector<Page> pages{{0, 0}};
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        const QTextLayout* layout = b.layout();
        if (!layout || !b.isVisible())
            continue;
        const double y = layout->position().y();
        for (int i = 0; i < layout->lineCount(); ++i) {
            const QTextLine line = layout->lineAt(i);
            const double top = y + line.y();
            const double bottom = top + line.height();
            Page& page = pages.back();
            if (bottom - page.top > pageHeight && top > page.top) {
                page.bottom = top;
                pages.push_back({top, bottom, line.height()});
            } else {
                page.bottom = std::max(page.bottom, bottom);
                if (page.shortestLine <= 0 || line.height() < page.shortestLine)
                    page.shortestLine = line.height();
            }
        }
    }
    return pages;
}

void drawPage(QPainter& painter, const QTextDocument& doc, const Page& page, const QRectF& drawing)
{
    painter.save();
    painter.translate(drawing.left(), drawing.top() - page.top);
    painter.setClipRect(QRectF(0, page.top, drawing.width(), drawing.height()));
    painter.setPen(Qt::black);
    // Line by line: a layout asked to draw part of itself also draws the
    // line just above that part, which a clip hides from the eye but not
    // from a PDF's text, so a line would be found on two pages.
    const double slack = std::max(page.shortestLine / 4, 0.5);
    for (QTextBlock b = doc.findBlock(0); b.isValid(); b = b.next()) {
        const QTextLayout* layout = b.layout();
        if (!layout || !b.isVisible())
            continue;
        const QPointF at = layout->position();
        const QRectF box = layout->boundingRect().translated(at);
        if (box.bottom() <= page.top)
            continue;
        if (box.top() >= page.bottom)
            break;
        for (int i = 0; i < layout->lineCount(); ++i) {
            const QTextLine line = layout->lineAt(i);
            const double top = at.y() + line.y();
            if (top >= page.top - slack && top < page.bottom - slack)
                line.draw(&painter, at);
        }
    }
    painter.restore();
}

} // namespace

qint32 MarginTwips(const QString& inches)
{
    bool numeric = false;
    const double value = inches.trimmed().toDouble(&numeric);
    if (!numeric || !std::isfinite(value))
        return 720;
    const double twips = std::round(value * kTwipsPerInch);
    if (twips > 2e9 || twips < -2e9)
        return 720;
    return qint32(twips);
}

QString PrintRTF(const QTextDocument& document, QPrinter& printer, qint32 lLeftMargin, qint32 lTopMargin,
                 qint32 lRightMargin, qint32 lBottomMargin)
{
    // Device units per twip, across and down.
    const double dpiX = printer.logicalDpiX();
    const double dpiY = printer.logicalDpiY();
    auto across = [&](double twips) { return twips * dpiX / kTwipsPerInch; };
    auto down = [&](double twips) { return twips * dpiY / kTwipsPerInch; };

    // The painter starts at the printable area's corner; the paper's edge
    // lies the unprintable strip before it.
    const QRectF paper = printer.paperRect(QPrinter::DevicePixel);
    const QRectF printable = printer.pageRect(QPrinter::DevicePixel);
    const double offsetX = printable.left() - paper.left();
    const double offsetY = printable.top() - paper.top();

    const QRectF drawing(QPointF(across(lLeftMargin) - offsetX, down(lTopMargin) - offsetY),
                         QPointF(paper.width() - across(lRightMargin) - offsetX,
                                 paper.height() - down(lBottomMargin) - offsetY));
    if (drawing.width() < 1 || drawing.height() < 1)
        return QStringLiteral("The margins leave no room on the page: together they are wider or taller than "
                              "the paper (%1 by %2 inches).")
            .arg(paper.width() / dpiX, 0, 'f', 2)
            .arg(paper.height() / dpiY, 0, 'f', 2);

    // A copy laid out for the printer's resolution and width, so that the
    // editor on the screen keeps its own layout and its spacing for the view.
    std::unique_ptr<QTextDocument> copy(document.clone());
    ClearLevelSpacing(*copy);
    copy->documentLayout()->setPaintDevice(&printer);
    copy->setDocumentMargin(0);
    copy->setTextWidth(drawing.width());
    (void)copy->documentLayout()->documentSize();  // lays out the whole copy
    const std::vector<Page> pages = paginate(*copy, drawing.height());

    QPainter painter;
    if (!painter.begin(&printer))
        return QStringLiteral("The printer could not be started.");
    // The pages the print dialog asked for (1-based; 0 and 0 for all).
    const std::size_t first = printer.fromPage() > 0 ? std::size_t(printer.fromPage() - 1) : 0;
    const std::size_t last = printer.toPage() > 0 ? std::min(pages.size(), std::size_t(printer.toPage())) : pages.size();
    for (std::size_t i = first; i < std::max(last, first + 1) && i < pages.size(); ++i) {
        if (i > first && !printer.newPage()) {
            painter.end();
            return QStringLiteral("The printer refused page %1.").arg(i + 1);
        }
        drawPage(painter, *copy, pages[i], drawing);
    }
    if (!painter.end())
        return QStringLiteral("The printer could not finish the job.");
    return QString();
}

} // namespace tv
