// Printing a document to a PDF file, looked at with the poppler tools a user
// has: every paragraph printed once, pages as the margins allow, and the text
// starting where the margins say on the paper.

#include "document/PrintRichText.h"

#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QFile>
#include <QImage>
#include <QPageSize>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTextDocument>
#include <gtest/gtest.h>

namespace {

QString run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    EXPECT_TRUE(p.waitForFinished(60000)) << program.toStdString();
    EXPECT_EQ(p.exitCode(), 0) << program.toStdString() << " " << args.join(QLatin1Char(32)).toStdString();
    return QString::fromUtf8(p.readAllStandardOutput());
}

int pageCount(const QString& pdf)
{
    const QRegularExpression pages(QStringLiteral("^Pages:\\s+(\\d+)"), QRegularExpression::MultilineOption);
    return pages.match(run(QStringLiteral("pdfinfo"), {pdf})).captured(1).toInt();
}

QString printTo(const QTextDocument& doc, const QString& pdf, qint32 left, qint32 top, qint32 right, qint32 bottom,
                int fromPage = 0, int toPage = 0)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    printer.setPageSize(QPageSize(QPageSize::Letter));
    printer.setFromTo(fromPage, toPage);
    return tv::PrintRTF(doc, printer, left, top, right, bottom);
}

QString pageText(const QString& pdf, int page)
{
    const QString n = QString::number(page);
    return run(QStringLiteral("pdftotext"), {QStringLiteral("-f"), n, QStringLiteral("-l"), n, pdf, QStringLiteral("-")});
}

QTextDocument* numberedParagraphs(int n)
{
    auto* doc = new QTextDocument;
    QStringList lines;
    for (int i = 1; i <= n; ++i)
        lines << QStringLiteral("Paragraph %1 of the letter").arg(i);
    doc->setPlainText(lines.join('\n'));
    return doc;
}

// The first dark pixel from the left and from the top of a page image.
QPoint inkCorner(const QString& png)
{
    const QImage page = QImage(png).convertToFormat(QImage::Format_Grayscale8);
    EXPECT_FALSE(page.isNull()) << png.toStdString();
    QPoint corner(page.width(), page.height());
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x)
            if (qGray(page.pixel(x, y)) < 128)
                corner = QPoint(std::min(corner.x(), x), std::min(corner.y(), y));
    return corner;
}

TEST(PrintToPdf, EveryParagraphOnceAndMorePagesForWiderMargins)
{
    tvtest::TempDir dir;
    std::unique_ptr<QTextDocument> doc(numberedParagraphs(150));
    const QString narrow = dir.qpath() + "/narrow.pdf";
    const QString wide = dir.qpath() + "/wide.pdf";
    ASSERT_EQ(printTo(*doc, narrow, 720, 720, 720, 720), QString());
    ASSERT_EQ(printTo(*doc, wide, 1440, 4320, 1440, 4320), QString());

    const int narrowPages = pageCount(narrow);
    const int widePages = pageCount(wide);
    EXPECT_GE(narrowPages, 2);
    // Ten inches of text a page against five.
    EXPECT_GE(widePages, 2 * narrowPages - 1);

    // A line cut at a page break would be lost or printed twice.
    const QString text = run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), wide, QStringLiteral("-")});
    for (int i = 1; i <= 150; ++i)
        EXPECT_EQ(text.count(QStringLiteral("Paragraph %1 of").arg(i)), 1) << i;
    EXPECT_TRUE(pageText(wide, widePages).contains(QStringLiteral("Paragraph 150 of"))) << "the last page ends it";

    // A range chosen in the print dialog prints those pages alone.
    const QString range = dir.qpath() + "/range.pdf";
    ASSERT_EQ(printTo(*doc, range, 1440, 4320, 1440, 4320, 2, 3), QString());
    EXPECT_EQ(pageCount(range), 2);
    EXPECT_EQ(pageText(range, 1), pageText(wide, 2));
}

TEST(PrintToPdf, TheTextStartsAtTheMarginsOnThePaper)
{
    tvtest::TempDir dir;
    QTextDocument doc;
    doc.setPlainText(QStringLiteral("Margins are measured from the paper's edge"));
    const QString pdf = dir.qpath() + "/margins.pdf";
    // Two inches left, one and a half at the top.
    ASSERT_EQ(printTo(doc, pdf, 2880, 2160, 720, 720), QString());
    ASSERT_EQ(pageCount(pdf), 1);
    run(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-png"),
                                      QStringLiteral("-singlefile"), pdf, dir.qpath() + "/page"});
    const QPoint ink = inkCorner(dir.qpath() + "/page.png");
    // 72 pixels to the inch; the first glyph's ink sits a little inside its box.
    EXPECT_GE(ink.x(), 144);
    EXPECT_LE(ink.x(), 144 + 6);
    EXPECT_GE(ink.y(), 108);
    EXPECT_LE(ink.y(), 108 + 18);
}

TEST(PrintToPdf, AnEmptyDocumentIsOneBlankPage)
{
    tvtest::TempDir dir;
    QTextDocument doc;
    const QString pdf = dir.qpath() + "/empty.pdf";
    ASSERT_EQ(printTo(doc, pdf, 720, 720, 720, 720), QString());
    EXPECT_EQ(pageCount(pdf), 1);
}

TEST(PrintToPdf, MarginsWiderThanThePaperPrintNothingAndSaySo)
{
    tvtest::TempDir dir;
    QTextDocument doc;
    doc.setPlainText(QStringLiteral("text"));
    const QString pdf = dir.qpath() + "/none.pdf";
    const QString why = printTo(doc, pdf, 5 * 1440, 720, 4 * 1440, 720);
    EXPECT_TRUE(why.contains(QStringLiteral("margins"))) << why.toStdString();
    EXPECT_FALSE(QFile::exists(pdf));
}

} // namespace
