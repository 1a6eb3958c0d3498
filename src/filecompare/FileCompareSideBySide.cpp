// The side-by-side rendering: the difference records coloured into copies of
// the two editors, from the last record to the first, with each changed
// section compared a second time word by word.

#include "document/ClsAPIHighlight.h"
#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "core/modGlobal.h"

#include <QFile>
#include <QTextEdit>

#include <string_view>
#include <vector>

using filecompare::DiffFormat;
using filecompare::Sleep;

namespace {

bool isWordDelimiter(QChar c)
{
    const char16_t u = c.unicode();
    return u == 10 || u == 13 || u == 32 || u == 7;
}

// Where the delimiters of a box's text lie (1-based), kept for the last box
// asked about: a section's words are looked up many times between two edits,
// and the walk from the start for every lookup would be quadratic.
struct DelimiterIndex {
    const RichTextBox* box = nullptr;
    QString text;  // holds the box's text buffer, so a new buffer means a new text
    std::vector<qint32> delimiters;
};

const std::vector<qint32>& delimitersOf(const RichTextBox* box, const QString& text)
{
    static DelimiterIndex cache;
    if (cache.box != box || cache.text.constData() != text.constData() || cache.text.size() != text.size()) {
        cache.box = box;
        cache.text = text;
        cache.delimiters.clear();
        for (qsizetype i = 0; i < text.size(); ++i)
            if (isWordDelimiter(text.at(i)))
                cache.delimiters.push_back(qint32(i + 1));
    }
    return cache.delimiters;
}

// The span a changed section occupies in a work pane, by the editor's index:
// the section left the editor without its paragraph break, so the span it
// replaces must leave that break alone too.
void replaceSection(RichTextBox* work, const clsRTBDocument& reference, qint32 first, qint32 last,
                    const RichTextBox* section)
{
    const qint32 start = reference.GetFirstCharLocationOfParagraph(first);
    qint32 end = reference.GetLastCharLocationOfParagraph(last);
    if (end > start && end - 1 < work->TextLength() && work->characterAt(end - 1) == QLatin1Char('\n'))
        --end;
    work->setSelStart(start);
    work->setSelLength(qMax(0, end - start));
    work->setSelRTF(section->TextRTF());
}

} // namespace

void frmCompareFiles::UpdateChangesToRTFFile_SBS()
{
    WalkRecordsFromLast(SkeinMacroDiff, 3, QStringLiteral("Document "), QStringLiteral("% Done. Click here to Abort."),
                        [&](int, int kind, int lf, int ll, int rf, int rl) {
        if (kind == filecompare::kKindChange) {
            ++mlChangeCount;
            ColorizeParagraphsInRTB_SBS(lf, ll, rf, rl);
            docOriginalDiff.SelectParagraphs(lf, ll, true);
            // The Original's text of the section, then the Modified's, each
            // as a paragraph of its own.
            rtbChanges->setSelStart(0);
            const RichText lineBreak = RichText::fromPlainText(QStringLiteral("\n"));
            rtbChanges->setSelRTF(rtbOriginalDiffTemp->TextRTF() + lineBreak + rtbModifiedDiffTemp->TextRTF()
                                  + lineBreak);
        } else if (kind == filecompare::kKindDeletion) {
            ++mlDeletionCount;
            filecompare::ColorizeWholeSection(docOriginalDiff, rtbOriginalDiff, lf, ll,
                                              filecompare::DeletionFormat(moFileOptions), rtbDeletions);
        } else if (kind == filecompare::kKindAddition) {
            ++mlAdditionCount;
            filecompare::ColorizeWholeSection(docModifiedDiff, rtbModifiedDiff, rf, rl,
                                              filecompare::AdditionFormat(moFileOptions), rtbAdditions);
        }
        Sleep(0);
    });
}

void frmCompareFiles::ColorizeParagraphsInRTB_SBS(qint32 lLeftFirst, qint32 lLeftLast, qint32 lRightFirst,
                                                   qint32 lRightLast)
{
    docOriginal.SelectParagraphs(lLeftFirst, lLeftLast, false);
    rtbOriginalDiffTemp->setTextRTF(rtbOriginal->SelRTF());
    docModified.SelectParagraphs(lRightFirst, lRightLast, false);
    rtbModifiedDiffTemp->setTextRTF(rtbModified->SelRTF());
    CompareSectionWords();
    UpdateChangesToParagraphsRTF_SBS();
    // The editors' indexes never change during the pass, and everything the
    // work panes changed so far lies behind this record.
    replaceSection(rtbOriginalDiff, docOriginal, lLeftFirst, lLeftLast, rtbOriginalDiffTemp);
    replaceSection(rtbModifiedDiff, docModified, lRightFirst, lRightLast, rtbModifiedDiffTemp);
}

void frmCompareFiles::UpdateChangesToParagraphsRTF_SBS()
{
    WalkRecordsFromLast(SkeinMiniDiff, 2, QStringLiteral("Section: "), QStringLiteral("% Done"),
                        [&](int, int kind, int lf, int ll, int rf, int rl) {
        if (kind == filecompare::kKindAddition) {
            FormatWordRange(rtbModifiedDiffTemp, rf, rl, filecompare::AdditionFormat(moFileOptions));
        } else if (kind == filecompare::kKindDeletion) {
            FormatWordRange(rtbOriginalDiffTemp, lf, ll, filecompare::DeletionFormat(moFileOptions));
        } else if (kind == filecompare::kKindChange) {
            FormatWordRange(rtbModifiedDiffTemp, rf, rl, filecompare::ChangeFormatModified(moFileOptions));
            FormatWordRange(rtbOriginalDiffTemp, lf, ll, filecompare::ChangeFormatOriginal(moFileOptions));
        }
        Sleep(0);
    });
    SetPanelText(2, QString());
}

void frmCompareFiles::CompareSectionWords()
{
    // The words of a change are compared in memory: no work files to write
    // and read back for every section.
    Skeinmatch& e = SkeinMiniDiff;
    e.setIgnoreCase(moFileOptions.bIgnoreCase.Data());
    // An empty line of a word list is a line end of the text and must count.
    e.setIgnoreEmptyLines(false);
    e.setIgnoreWhitespace(moFileOptions.bIgnoreWhitespace.Data());
    e.setCompareMode(0);
    const QByteArray original = WordLines(rtbOriginalDiffTemp->Text());
    const QByteArray modified = WordLines(rtbModifiedDiffTemp->Text());
    e.compareTexts(std::string_view(original.constData(), size_t(original.size())),
                   std::string_view(modified.constData(), size_t(modified.size())));
}

QByteArray frmCompareFiles::WordLines(const QString& sText)
{
    // A token ends behind its delimiter. A line-end delimiter is replaced by
    // the line end written behind every token, so the list has exactly one
    // line per word and its line numbers are the word numbers of
    // FindWordBounds; a blank or a bell stays at the end of its word.
    QByteArray out;
    out.reserve(sText.size() + sText.size() / 4 + 16);
    qsizetype start = 0;
    auto emitToken = [&](qsizetype end, bool dropLast) {
        out.append(sText.mid(start, end - start - (dropLast ? 1 : 0)).toUtf8());
        out.append("\r\n");
        start = end;
    };
    for (qsizetype i = 0; i < sText.size(); ++i) {
        const QChar c = sText.at(i);
        if (isWordDelimiter(c))
            emitToken(i + 1, c.unicode() == 10 || c.unicode() == 13);
    }
    if (start < sText.size())
        emitToken(sText.size(), false);
    return out;
}

bool frmCompareFiles::WriteWordLines(const QString& sText, const QString& sFile)
{
    QFile f(sFile);
    if (sFile.isEmpty() || !f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray out = WordLines(sText);
    return f.write(out) == out.size() && f.flush();
}

bool frmCompareFiles::FindWordBounds(const RichTextBox* rtb, qint32 lWord, qint32& lFirst, qint32& lLast)
{
    if (lWord == 0) {
        lFirst = 0;
        lLast = 0;
        return true;
    }
    const QString s = rtb->Text();
    const std::vector<qint32>& delimiters = delimitersOf(rtb, s);
    const auto count = qint32(delimiters.size());
    if (lWord >= 1 && lWord <= count) {
        lLast = delimiters[size_t(lWord - 1)];
        lFirst = lWord == 1 ? 1 : delimiters[size_t(lWord - 2)];
    } else {
        // Past the last delimiter: the word runs to the end of the text.
        lFirst = count == 0 ? 1 : delimiters.back();
        lLast = qint32(s.size()) + 1;
    }
    return lFirst != -1;
}

void frmCompareFiles::FormatWordRange(RichTextBox* rtb, qint32 lFromWord, qint32 lToWord, std::int32_t lColor,
                                      std::int32_t lBackColor, bool bBold, bool bUnderline, bool bStrikeout,
                                      bool bItalic)
{
    qint32 lFirst = 0, lLast = 0, unused = 0;
    if (!FindWordBounds(rtb, lFromWord, lFirst, unused))
        return;
    if (!FindWordBounds(rtb, lToWord, unused, lLast))
        return;
    if (lFirst == 0)
        lFirst = 1;
    rtb->setSelStart(lFirst - 1);
    rtb->setSelLength(qMax(0, lLast - lFirst + 1));
    filecompare::FormatSelection(rtb, {lColor, lBackColor, bBold, bUnderline, bStrikeout, bItalic});
}

void filecompare::ColorizeWholeSection(clsRTBDocument& doc, RichTextBox* pane, qint32 first, qint32 last,
                                       const DiffFormat& f, RichTextBox* filtered)
{
    doc.ColorizeParagraphs(first, last, f.color, f.backColor, f.bold, f.underline, f.strikeout, f.italic);
    doc.SelectParagraphs(first, last, true);
    filtered->setSelStart(0);
    filtered->setSelRTF(pane->SelRTF());
}

void filecompare::FormatSelection(RichTextBox* rtb, const DiffFormat& f)
{
    rtb->setSelColor(f.color);
    rtb->setSelBold(f.bold);
    rtb->setSelUnderline(f.underline);
    rtb->setSelStrikeThru(f.strikeout);
    rtb->setSelItalic(f.italic);
    ClsAPIHighlight highlight;
    highlight.AssignControls(rtb);
    highlight.APIHighlightHard(f.backColor);
    rtb->setSelLength(0);
}
