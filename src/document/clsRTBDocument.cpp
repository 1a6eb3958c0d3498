#include "document/clsRTBDocument.h"

#include "document/ClsAPIHighlight.h"
#include "document/RichTextBox.h"

#include <QApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QThread>
#include <stdexcept>
#include <utility>

namespace {

constexpr int kRetryLimit = 120;
constexpr int kRetryWaitMs = 500;

clsRTBDocument::Platform defaultPlatform()
{
    clsRTBDocument::Platform p;
    p.wait = [](int ms) { QThread::msleep(ms); };
    p.message = [](const QString& text) {
        QMessageBox box(QMessageBox::NoIcon, QGuiApplication::applicationDisplayName(), text,
                        QMessageBox::Ok);
        box.exec();
    };
    p.beep = [] { QApplication::beep(); };
    p.busyPointer = [](bool busy) {
        if (busy)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QGuiApplication::restoreOverrideCursor();
    };
    return p;
}

} // namespace

clsRTBDocument::Platform& clsRTBDocument::platform()
{
    static Platform p = defaultPlatform();
    return p;
}

void clsRTBDocument::resetPlatform()
{
    platform() = defaultPlatform();
}

void clsRTBDocument::Setup(RichTextBox* rtb)
{
    rtb_ = rtb;
    ParagraphCollectionEmpty();
}

// --- the index ------------------------------------------------------------------

clsParagraph& clsRTBDocument::entry(std::int32_t number)
{
    if (number < 1 || number > ParagraphCount())
        throw std::out_of_range("paragraph " + std::to_string(number) + " is not in the index");
    return paragraphs_[std::size_t(number - 1)];
}

const clsParagraph& clsRTBDocument::entry(std::int32_t number) const
{
    return const_cast<clsRTBDocument*>(this)->entry(number);
}

const clsParagraph& clsRTBDocument::Paragraph(std::int32_t number) const
{
    return entry(number);
}

bool clsRTBDocument::ParagraphCollectionCreate()
{
    ParagraphCollectionEmpty();
    if (!rtb_) {
        paragraphs_.push_back({0, 2});
        return true;
    }
    paragraphs_ = ParagraphsOf(rtb_->Text());
    return true;
}

std::vector<clsParagraph> clsRTBDocument::ParagraphsOf(const QString& s)
{
    // One pass over the text.
    std::vector<clsParagraph> paragraphs;
    const std::int32_t end = std::int32_t(s.size()) + 2;
    const QChar* p = s.constData();
    const qsizetype n = s.size();
    std::int32_t previous = 0;
    paragraphs.reserve(std::size_t(std::count(p, p + n, QLatin1Char('\n'))) + 1);
    for (qsizetype i = 0; i < n; ++i) {
        if (p[i] == u'\n') {
            const std::int32_t lineFeed = std::int32_t(i) + 1;
            paragraphs.push_back({previous, lineFeed});
            previous = lineFeed;
        }
    }
    paragraphs.push_back({previous, end});
    return paragraphs;
}

void clsRTBDocument::ParagraphCollectionAssign(std::vector<clsParagraph> paragraphs)
{
    paragraphs_ = std::move(paragraphs);
}

void clsRTBDocument::ParagraphCollectionAdjust(std::int32_t lParagraphToBeginWith, std::int32_t lLength)
{
    const std::int32_t count = ParagraphCount();
    for (std::int32_t i = lParagraphToBeginWith; i <= count; ++i) {
        clsParagraph& para = entry(i);
        para.FirstChar += lLength;
        para.LastChar += lLength;
    }
}

void clsRTBDocument::ParagraphCollectionTake(clsRTBDocument& from)
{
    paragraphs_ = std::exchange(from.paragraphs_, {});
}

void clsRTBDocument::ParagraphCollectionEmpty()
{
    paragraphs_.clear();
}

std::int32_t clsRTBDocument::GetFirstCharLocationOfParagraph(std::int32_t lParagraph) const
{
    return entry(lParagraph).FirstChar;
}

std::int32_t clsRTBDocument::GetLastCharLocationOfParagraph(std::int32_t lParagraph) const
{
    return entry(lParagraph).LastChar;
}

void clsRTBDocument::SetLastCharLocationOfParagraph(std::int32_t lParagraph, std::int32_t lPosition)
{
    entry(lParagraph).LastChar = lPosition;
}

// --- selection by paragraph ---------------------------------------------------------

bool clsRTBDocument::bIsValidSelection(std::int32_t ParagraphStart, std::int32_t ParagraphEnd) const
{
    const std::int32_t count = ParagraphCount();
    const bool valid = ParagraphStart >= 0 && ParagraphEnd >= 0 && ParagraphStart <= count
                       && ParagraphEnd <= count;
    if (!valid && platform().beep)
        platform().beep();
    return valid;
}

// Drops the line feed at the end of the selection unless it is wanted. The
// search for it starts at the selection's last character, a search that
// cannot start on an empty selection.
void clsRTBDocument::trimLineFeed(bool bIncludeLF, bool raise)
{
    const int n = rtb_->SelLength();
    if (n < 1) {
        if (raise)
            throw std::invalid_argument("empty selection: no line feed to look for");
        return;
    }
    const bool lineFeedAtEnd = rtb_->characterAt(rtb_->SelStart() + n - 1) == u'\n';
    if (lineFeedAtEnd && !bIncludeLF)
        rtb_->setSelLength(n - 1);
}

void clsRTBDocument::SelectAllTextBetween(std::int32_t ParagraphStart, std::int32_t ParagraphEnd,
                                          bool bIncludeLF)
{
    if (!rtb_)
        return;
    const std::int32_t count = ParagraphCount();
    if (!bIsValidSelection(ParagraphStart, ParagraphEnd)) {
        // Past the last paragraph: everything behind ParagraphStart.
        if (ParagraphEnd > count) {
            const std::int32_t from = GetLastCharLocationOfParagraph(ParagraphStart);
            rtb_->setSelStart(from);
            rtb_->setSelLength(rtb_->TextLength() - from);
        }
        return;
    }
    if (ParagraphStart != 0 && ParagraphStart < count) {
        const std::int32_t from = GetLastCharLocationOfParagraph(ParagraphStart);
        rtb_->setSelStart(from);
        rtb_->setSelLength(GetFirstCharLocationOfParagraph(ParagraphEnd) - from);
    } else if (ParagraphStart != 0) {
        rtb_->setSelStart(GetLastCharLocationOfParagraph(count) - 2);
        rtb_->setSelLength(2);
    } else {
        rtb_->setSelStart(0);
        rtb_->setSelLength(ParagraphEnd != 0 ? GetLastCharLocationOfParagraph(ParagraphEnd) : 1);
    }
    trimLineFeed(bIncludeLF, true);
}

void clsRTBDocument::SelectParagraphs(std::int32_t ParagraphStart, std::int32_t ParagraphEnd,
                                      bool bIncludeLF)
{
    if (!rtb_ || !bIsValidSelection(ParagraphStart, ParagraphEnd))
        return;
    // Each step goes on from whatever the one before it left.
    if (ParagraphStart != 0) {
        try {
            const std::int32_t from = GetFirstCharLocationOfParagraph(ParagraphStart);
            rtb_->setSelStart(from);
            rtb_->setSelLength(GetLastCharLocationOfParagraph(ParagraphEnd) - from);
        } catch (const std::out_of_range&) {
        }
    } else {
        rtb_->setSelStart(0);
        rtb_->setSelLength(ParagraphEnd != 0 ? GetLastCharLocationOfParagraph(ParagraphEnd) : 1);
    }
    trimLineFeed(bIncludeLF, false);
}

void clsRTBDocument::colorizeSelection(std::int32_t lFontColor, std::int32_t lBackColor, bool bBold,
                                       bool bUnderline, bool bStrikeThrough, bool bItalic)
{
    rtb_->setSelColor(lFontColor);
    rtb_->setSelBold(bBold);
    rtb_->setSelUnderline(bUnderline);
    rtb_->setSelStrikeThru(bStrikeThrough);
    rtb_->setSelItalic(bItalic);
    ClsAPIHighlight highlight;
    highlight.AssignControls(rtb_, nullptr);
    highlight.APIHighlightHard(lBackColor);
    rtb_->setSelLength(0);
}

void clsRTBDocument::ColorizeParagraphs(std::int32_t ParagraphStart, std::int32_t ParagraphEnd,
                                        std::int32_t lFontColor, std::int32_t lBackColor, bool bBold,
                                        bool bUnderline, bool bStrikeThrough, bool bItalic)
{
    if (!rtb_)
        return;
    SelectParagraphs(ParagraphStart, ParagraphEnd, true);
    colorizeSelection(lFontColor, lBackColor, bBold, bUnderline, bStrikeThrough, bItalic);
}

void clsRTBDocument::ColorizeAll(std::int32_t lFontColor, std::int32_t lBackColor, bool bBold,
                                 bool bUnderline, bool bStrikeThrough, bool bItalic)
{
    if (!rtb_)
        return;
    SelectAll();
    colorizeSelection(lFontColor, lBackColor, bBold, bUnderline, bStrikeThrough, bItalic);
}

void clsRTBDocument::SetCursorAt(std::int32_t lParagraphNum)
{
    if (!rtb_)
        return;
    if (lParagraphNum >= 1)
        rtb_->setSelStart(GetLastCharLocationOfParagraph(lParagraphNum) - 1);
    else
        rtb_->setSelStart(GetFirstCharLocationOfParagraph(1));
}

void clsRTBDocument::ScrollRTB(bool bUp)
{
    if (!rtb_)
        return;
    rtb_->setUpdatesLocked(true);
    const int c = rtb_->LineIndex(-1);
    const int n = rtb_->TextLength();
    const QString text = rtb_->Text();
    if (bUp) {
        rtb_->setSelStart(0);
        rtb_->setSelLength(c);
        // The line feed in front of the caret's paragraph, then the one in
        // front of the paragraph above; the character before the first is
        // passed over too, for the CR of a CR LF.
        const int p = c > 0 ? int(text.lastIndexOf(QLatin1Char('\n'), c - 1)) + 1 : 0;  // 1-based, 0: none
        if (p > 0 && p - 2 >= 1) {
            const int q = int(text.lastIndexOf(QLatin1Char('\n'), p - 3)) + 1;
            if (q > 0) {
                rtb_->setSelStart(q);
                rtb_->setSelLength(1);
            }
        }
    } else {
        rtb_->setSelStart(c);
        rtb_->setSelLength(n - c);
        const int p = int(text.indexOf(QLatin1Char('\n'), c)) - c + 1;  // 1-based in the selection
        if (p > 0) {
            rtb_->setSelStart(p + c);
            rtb_->setSelLength(1);
        }
    }
    rtb_->setUpdatesLocked(false);
}

void clsRTBDocument::GetEditStatus(std::int32_t& lLine, std::int32_t& lCol) const
{
    if (!rtb_)
        return;
    const int start = rtb_->SelStart();
    lCol = rtb_->LineFromChar(start) + 1;
    (void)rtb_->LineLength(start);
    lLine = start + 1 - rtb_->LineIndex(lLine - 1);
}

// --- the box as a whole ---------------------------------------------------------------

void clsRTBDocument::Clear()
{
    if (rtb_)
        rtb_->setTextRTF(RichText());
}

void clsRTBDocument::SelectAll()
{
    if (rtb_)
        rtb_->setSelection(0, -1);
}

void clsRTBDocument::Cut()
{
    if (rtb_)
        rtb_->Cut();
}

void clsRTBDocument::Copy()
{
    if (rtb_)
        rtb_->Copy();
}

void clsRTBDocument::Paste()
{
    if (rtb_)
        rtb_->Paste();
}

void clsRTBDocument::Undo()
{
    if (rtb_)
        rtb_->Undo();
}

void clsRTBDocument::LoadFile(const QString& sFile)
{
    load(sFile, RichTextBox::ByContent);
}

void clsRTBDocument::LoadFile2(const QString& sFile, int vFileType)
{
    load(sFile, vFileType);
}

void clsRTBDocument::load(const QString& sFile, int fileType)
{
    if (!rtb_ || !QFileInfo::exists(sFile))
        return;
    Platform& pf = platform();
    if (pf.busyPointer)
        pf.busyPointer(true);
    int retries = 0;
    for (;;) {
        const RichTextBox::FileError error = rtb_->LoadFile(sFile, fileType);
        if (!error)
            break;
        // A file that another program still holds is waited for.
        if (error.number == 75 && ++retries < kRetryLimit) {
            if (pf.wait)
                pf.wait(kRetryWaitMs);
            continue;
        }
        if (pf.busyPointer)
            pf.busyPointer(false);
        if (pf.message)
            pf.message(QStringLiteral("(%1) %2").arg(error.number).arg(error.description));
        return;
    }
    if (pf.busyPointer)
        pf.busyPointer(false);
}
