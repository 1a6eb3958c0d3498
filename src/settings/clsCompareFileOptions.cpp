#include "settings/clsCompareFileOptions.h"

std::vector<clsVarBase*> clsCompareFileOptions::Items()
{
    return {&sFileOriginal, &sFileModified, &bIgnoreCase, &bIgnoreWhitespace,
            &bIgnoreEmptyLines, &bBeepWhenDone, &bQuickCompare, &bShowReportOnly,
            &bRefreshGUI, &bReloadOnRefresh, &lSliderRefreshRate, &bRemoveFormatting,
            &bShowSimilarContent, &bShowChangesInLargerSections, &bCompareFaster,
            &bUseLineBracket, &lLineBracket, &bSelectTextInDiffViewer, &bShowChanges,
            &bShowAdditions, &bShowDeletions, &bViewChangeUnderlineOriginal,
            &bViewChangeStrikeoutOriginal, &bViewChangeBoldOriginal,
            &bViewChangeItalicOriginal, &lViewChangeBackColorOriginal,
            &lViewChangeForeColorOriginal, &bViewChangeBoldModified,
            &bViewChangeItalicModified, &bViewChangeUnderlineModified,
            &bViewChangeStrikeoutModified, &lViewChangeBackColorModified,
            &lViewChangeForeColorModified, &bViewAdditionUnderline, &bViewAdditionStrikeout,
            &bViewAdditionBold, &bViewAdditionItalic, &lViewAdditionBackColor,
            &lViewAdditionForeColor, &bViewDeletionUnderline, &bViewDeletionStrikeout,
            &bViewDeletionBold, &bViewDeletionItalic, &lViewDeletionBackColor,
            &lViewDeletionForeColor, &bExcelCompareFormulas, &sExcelSheetNumberMaster,
            &bExcelUseRowsMaster, &sExcelRowsMaster, &bExcelUseColsMaster,
            &sExcelColsMaster, &sExcelSheetNumberSource, &bExcelUseRowsSource,
            &sExcelRowsSource, &bExcelUseColsSource, &sExcelColsSource, &bRemoveBlankLines,
            &bHTMLCompareSource};
}
