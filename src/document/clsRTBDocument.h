#pragma once
// A paragraph index over one RichTextBox, so that the comparison code can
// address a document by paragraph number (1-based) while the box knows only
// character positions (0-based).
//
// A paragraph is the text up to and including a line feed; a text of n line
// feeds has n + 1 paragraphs. The LastChar of the last paragraph overshoots
// the text by 2, and the selection routines rely on the box clamping it.
// Nothing watches the box: whoever edits it follows each edit with
// ParagraphCollectionAdjust or a new ParagraphCollectionCreate.
//
// The routines that read one entry trust their callers: a paragraph number
// outside the index throws std::out_of_range.

#include "document/clsParagraph.h"

#include <QPointer>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

#include "document/RichTextBox.h"

class clsRTBDocument {
public:
    // What the class needs of the desktop, replaceable so that tests neither
    // wait, beep nor open message boxes.
    struct Platform {
        std::function<void(int milliseconds)> wait;
        std::function<void(const QString& text)> message;
        std::function<void()> beep;
        std::function<void(bool busy)> busyPointer;
    };
    static Platform& platform();
    static void resetPlatform();

    clsRTBDocument() = default;
    explicit clsRTBDocument(RichTextBox* rtb) { Setup(rtb); }

    void Setup(RichTextBox* rtb);
    RichTextBox* RichTB() const { return rtb_; }
    void setRichTB(RichTextBox* rtb) { rtb_ = rtb; }

    // --- the index -------------------------------------------------------------
    bool ParagraphCollectionCreate();
    void ParagraphCollectionAdjust(std::int32_t lParagraphToBeginWith, std::int32_t lLength);
    void ParagraphCollectionEmpty();
    // Takes the index of another box whose document, with the same
    // paragraphs, this box now holds (a finished copy swapped in), leaving
    // that one empty.
    void ParagraphCollectionTake(clsRTBDocument& from);
    // The index of a plain text, made where the text is (a worker, say), and
    // given to the document that holds that very text.
    static std::vector<clsParagraph> ParagraphsOf(const QString& text);
    void ParagraphCollectionAssign(std::vector<clsParagraph> paragraphs);
    const std::vector<clsParagraph>& Paragraphs() const { return paragraphs_; }
    std::int32_t ParagraphCount() const { return std::int32_t(paragraphs_.size()); }
    const clsParagraph& Paragraph(std::int32_t number) const;

    std::int32_t GetFirstCharLocationOfParagraph(std::int32_t lParagraph) const;
    std::int32_t GetLastCharLocationOfParagraph(std::int32_t lParagraph) const;
    void SetLastCharLocationOfParagraph(std::int32_t lParagraph, std::int32_t lPosition);

    // --- selection by paragraph --------------------------------------------------
    // False (with a beep) when a number is negative or above the count.
    bool bIsValidSelection(std::int32_t ParagraphStart, std::int32_t ParagraphEnd) const;
    // Selects what lies between two paragraphs, both left out; from the top
    // (ParagraphStart 0) ParagraphEnd is taken in. Throws std::invalid_argument
    // when the selection comes out empty, as between neighbouring paragraphs.
    void SelectAllTextBetween(std::int32_t ParagraphStart, std::int32_t ParagraphEnd, bool bIncludeLF);
    // Selects the paragraphs, both included; a step that fails is passed over.
    void SelectParagraphs(std::int32_t ParagraphStart, std::int32_t ParagraphEnd, bool bIncludeLF);

    // Colours are COLORREF numbers.
    void ColorizeParagraphs(std::int32_t ParagraphStart, std::int32_t ParagraphEnd,
                            std::int32_t lFontColor, std::int32_t lBackColor, bool bBold,
                            bool bUnderline, bool bStrikeThrough, bool bItalic);
    void ColorizeAll(std::int32_t lFontColor, std::int32_t lBackColor, bool bBold,
                     bool bUnderline, bool bStrikeThrough, bool bItalic);

    void SetCursorAt(std::int32_t lParagraphNum);
    void ScrollRTB(bool bUp);
    // The caret for the status bar. The names are crossed: lLine receives the
    // column and lCol the line; pass lLine as 0 to ask about the caret's line.
    void GetEditStatus(std::int32_t& lLine, std::int32_t& lCol) const;

    // --- the box as a whole --------------------------------------------------------
    void Clear();
    void SelectAll();
    void Cut();
    void Copy();
    void Paste();
    void Undo();

    // Loads a file into the box, waiting for a file that cannot be opened yet
    // (up to 119 waits of half a second). A missing file is silently left
    // alone; other failures show "(number) description".
    void LoadFile(const QString& sFile);
    void LoadFile2(const QString& sFile, int vFileType);

private:
    clsParagraph& entry(std::int32_t number);
    const clsParagraph& entry(std::int32_t number) const;
    void trimLineFeed(bool bIncludeLF, bool raise);
    void colorizeSelection(std::int32_t lFontColor, std::int32_t lBackColor, bool bBold,
                           bool bUnderline, bool bStrikeThrough, bool bItalic);
    void load(const QString& sFile, int fileType);

    QPointer<RichTextBox> rtb_;
    std::vector<clsParagraph> paragraphs_;
};
