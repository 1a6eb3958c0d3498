#pragma once
// What one file comparison viewer remembers about how to compare and how to
// show the result: 58 persisted values, keyed in the INI file by their member
// names, loaded and saved in the order declared here.
//
// Colours are COLORREF numbers (red in the low byte) in decimal. A first start
// leaves sFileOriginal and sFileModified at the literal "Uninitialized", which
// viewers test for before loading anything.

#include "settings/clsOptionSet.h"

class clsCompareFileOptions : public clsOptionSet {
public:
    // The section starts as a placeholder; the viewer sets its own.
    clsCompareFileOptions() : clsOptionSet(QStringLiteral("CompareFileOptions")) {}

    std::vector<clsVarBase*> Items() override;
    using clsOptionSet::Items;

    // The two files last compared.
    clsVarString sFileOriginal{QStringLiteral("sFileOriginal"), QStringLiteral("Uninitialized")};
    clsVarString sFileModified{QStringLiteral("sFileModified"), QStringLiteral("Uninitialized")};
    // How to compare.
    clsVarBoolean bIgnoreCase{QStringLiteral("bIgnoreCase"), false};
    clsVarBoolean bIgnoreWhitespace{QStringLiteral("bIgnoreWhitespace"), false};
    clsVarBoolean bIgnoreEmptyLines{QStringLiteral("bIgnoreEmptyLines"), false};
    clsVarBoolean bBeepWhenDone{QStringLiteral("bBeepWhenDone"), false};
    clsVarBoolean bQuickCompare{QStringLiteral("bQuickCompare"), false};
    clsVarBoolean bShowReportOnly{QStringLiteral("bShowReportOnly"), false};
    // Automatic refresh; the rate is in seconds.
    clsVarBoolean bRefreshGUI{QStringLiteral("bRefreshGUI"), false};
    clsVarBoolean bReloadOnRefresh{QStringLiteral("bReloadOnRefresh"), true};
    clsVarLong lSliderRefreshRate{QStringLiteral("lSliderRefreshRate"), 10};
    // What to show and how hard to look.
    clsVarBoolean bRemoveFormatting{QStringLiteral("bRemoveFormatting"), false};
    clsVarBoolean bShowSimilarContent{QStringLiteral("bShowSimilarContent"), true};
    clsVarBoolean bShowChangesInLargerSections{QStringLiteral("bShowChangesInLargerSections"), false};
    clsVarBoolean bCompareFaster{QStringLiteral("bCompareFaster"), false};
    clsVarBoolean bUseLineBracket{QStringLiteral("bUseLineBracket"), false};
    clsVarLong lLineBracket{QStringLiteral("lLineBracket"), 1};
    clsVarBoolean bSelectTextInDiffViewer{QStringLiteral("bSelectTextInDiffViewer"), false};
    clsVarBoolean bShowChanges{QStringLiteral("bShowChanges"), true};
    clsVarBoolean bShowAdditions{QStringLiteral("bShowAdditions"), true};
    clsVarBoolean bShowDeletions{QStringLiteral("bShowDeletions"), true};
    // Look of changed text on the Original side, then on the Modified side.
    clsVarBoolean bViewChangeUnderlineOriginal{QStringLiteral("bViewChangeUnderlineOriginal"), false};
    clsVarBoolean bViewChangeStrikeoutOriginal{QStringLiteral("bViewChangeStrikeoutOriginal"), true};
    clsVarBoolean bViewChangeBoldOriginal{QStringLiteral("bViewChangeBoldOriginal"), true};
    clsVarBoolean bViewChangeItalicOriginal{QStringLiteral("bViewChangeItalicOriginal"), false};
    clsVarLong lViewChangeBackColorOriginal{QStringLiteral("lViewChangeBackColorOriginal"), 16777215};
    clsVarLong lViewChangeForeColorOriginal{QStringLiteral("lViewChangeForeColorOriginal"), 255};
    clsVarBoolean bViewChangeBoldModified{QStringLiteral("bViewChangeBoldModified"), true};
    clsVarBoolean bViewChangeItalicModified{QStringLiteral("bViewChangeItalicModified"), false};
    clsVarBoolean bViewChangeUnderlineModified{QStringLiteral("bViewChangeUnderlineModified"), true};
    clsVarBoolean bViewChangeStrikeoutModified{QStringLiteral("bViewChangeStrikeoutModified"), false};
    clsVarLong lViewChangeBackColorModified{QStringLiteral("lViewChangeBackColorModified"), 16777215};
    clsVarLong lViewChangeForeColorModified{QStringLiteral("lViewChangeForeColorModified"), 255};
    // Look of added text, then of deleted text.
    clsVarBoolean bViewAdditionUnderline{QStringLiteral("bViewAdditionUnderline"), true};
    clsVarBoolean bViewAdditionStrikeout{QStringLiteral("bViewAdditionStrikeout"), false};
    clsVarBoolean bViewAdditionBold{QStringLiteral("bViewAdditionBold"), true};
    clsVarBoolean bViewAdditionItalic{QStringLiteral("bViewAdditionItalic"), false};
    clsVarLong lViewAdditionBackColor{QStringLiteral("lViewAdditionBackColor"), 16777215};
    clsVarLong lViewAdditionForeColor{QStringLiteral("lViewAdditionForeColor"), 32768};
    clsVarBoolean bViewDeletionUnderline{QStringLiteral("bViewDeletionUnderline"), false};
    clsVarBoolean bViewDeletionStrikeout{QStringLiteral("bViewDeletionStrikeout"), true};
    clsVarBoolean bViewDeletionBold{QStringLiteral("bViewDeletionBold"), true};
    clsVarBoolean bViewDeletionItalic{QStringLiteral("bViewDeletionItalic"), false};
    clsVarLong lViewDeletionBackColor{QStringLiteral("lViewDeletionBackColor"), 16777215};
    clsVarLong lViewDeletionForeColor{QStringLiteral("lViewDeletionForeColor"), 16711680};
    // Spreadsheets: sheets, rows and columns as free text ("1-2, 12, *").
    clsVarBoolean bExcelCompareFormulas{QStringLiteral("bExcelCompareFormulas"), false};
    clsVarString sExcelSheetNumberMaster{QStringLiteral("sExcelSheetNumberMaster"), QStringLiteral("1")};
    clsVarBoolean bExcelUseRowsMaster{QStringLiteral("bExcelUseRowsMaster"), false};
    clsVarString sExcelRowsMaster{QStringLiteral("sExcelRowsMaster"), QStringLiteral("1")};
    clsVarBoolean bExcelUseColsMaster{QStringLiteral("bExcelUseColsMaster"), false};
    clsVarString sExcelColsMaster{QStringLiteral("sExcelColsMaster"), QStringLiteral("1")};
    clsVarString sExcelSheetNumberSource{QStringLiteral("sExcelSheetNumberSource"), QStringLiteral("1")};
    clsVarBoolean bExcelUseRowsSource{QStringLiteral("bExcelUseRowsSource"), false};
    clsVarString sExcelRowsSource{QStringLiteral("sExcelRowsSource"), QStringLiteral("1")};
    clsVarBoolean bExcelUseColsSource{QStringLiteral("bExcelUseColsSource"), false};
    clsVarString sExcelColsSource{QStringLiteral("sExcelColsSource"), QStringLiteral("1")};
    // Set by -E or by hand; no screen control.
    clsVarBoolean bRemoveBlankLines{QStringLiteral("bRemoveBlankLines"), false};
    // Compare the markup of HTML files rather than their text.
    clsVarBoolean bHTMLCompareSource{QStringLiteral("bHTMLCompareSource"), false};
};
