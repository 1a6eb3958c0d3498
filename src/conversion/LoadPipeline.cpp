#include "conversion/LoadPipeline.h"

#include "settings/clsCompareFileOptions.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "core/modUtilityFile.h"

namespace {

void report(const QString& message)
{
    LogMessage(message, gsClLogFile, gbClVerbose);
}

bool pathHasAny(const QString& path, std::initializer_list<const char*> texts)
{
    for (const char* t : texts)
        if (path.contains(QLatin1String(t), Qt::CaseInsensitive))
            return true;
    return false;
}

// OpenDocument files join the spreadsheet and word groups: without them an
// .ods or .odt file would be copied byte for byte into the editor.
bool isSpreadsheetPath(const QString& path)
{
    return pathHasAny(path, {".XLS", ".ODS"});
}

bool spreadsheetRoad(ConversionControls& controls, const QString& sFile, const QString& File_cnvt,
                     const ConversionOptions& o, bool bIsOriginalFile)
{
    const QString sheets = bIsOriginalFile ? o.sExcelSheetNumberMaster : o.sExcelSheetNumberSource;
    const bool useRows = bIsOriginalFile ? o.bExcelUseRowsMaster : o.bExcelUseRowsSource;
    const QString rows = bIsOriginalFile ? o.sExcelRowsMaster : o.sExcelRowsSource;
    const bool useCols = bIsOriginalFile ? o.bExcelUseColsMaster : o.bExcelUseColsSource;
    const QString cols = bIsOriginalFile ? o.sExcelColsMaster : o.sExcelColsSource;

    if (!ConverterExcelSpreadSheetNumber(controls, sFile, sheets, File_cnvt, 6, o.bExcelCompareFormulas)) {
        report((bIsOriginalFile ? QStringLiteral("LoadFileIntoEditor(): Unable to convert spreadsheet.")
                                : QStringLiteral("LoadFileIntoEditor(): Unable to convert spreadsheet file. "))
               + QStringLiteral("\n\n") + sFile);
        return false;
    }
    if (!ConverterSpecialProcessing(controls, lexiform::SP_TRIM_CSV_FILE, QString(), QString())) {
        report(bIsOriginalFile ? QStringLiteral("SP_TRIM_CSV_FILE: Unable to trim CSV file.")
                               : QStringLiteral("SP_TRIM_CSV_FILE: Unable to process CSV file."));
        return false;
    }
    if (!ConverterSpecialProcessing(controls, lexiform::SP_PAD_CSV_FILE_WITH_SPACES, QString(), QString())) {
        report(QStringLiteral("SP_PAD_CSV_FILE_WITH_SPACES: Unable to process CSV file."));
        return false;
    }
    if (useRows && !ConverterSpecialProcessing(controls, lexiform::SP_CROP_CSV_TO_ROWS, QString(), rows)) {
        report(QStringLiteral("SP_CROP_CSV_TO_ROWS: Unable to process CSV file."));
        return false;
    }
    if (useCols && !ConverterSpecialProcessing(controls, lexiform::SP_CROP_CSV_TO_COLUMNS, QString(), cols)) {
        report(QStringLiteral("SP_CROP_CSV_TO_COLUMNS: Unable to process CSV file."));
        return false;
    }
    if (sheets.contains(QLatin1Char('*')) || sheets.contains(QLatin1Char('-')) || sheets.contains(QLatin1Char(','))) {
        if (!ConverterSpecialProcessing(controls, lexiform::SP_CONCATENATE_ALL, File_cnvt, QStringLiteral("0"))) {
            report(QStringLiteral("SP_CONCATENATE_ALL: Unable to process CSV file."));
            return false;
        }
    }
    return true;
}

bool copyFile(const QString& sFile, const QString& target)
{
    qint16 error = 0;
    return CopyFileOverReadOnly(sFile, target, error);
}

} // namespace

ConversionOptions ConversionOptionsFrom(const clsCompareFileOptions& s)
{
    ConversionOptions o;
    o.bRemoveFormatting = s.bRemoveFormatting.Data();
    o.bHTMLCompareSource = s.bHTMLCompareSource.Data();
    o.bRemoveBlankLines = s.bRemoveBlankLines.Data();
    o.bExcelCompareFormulas = s.bExcelCompareFormulas.Data();
    o.sExcelSheetNumberMaster = s.sExcelSheetNumberMaster.Data();
    o.bExcelUseRowsMaster = s.bExcelUseRowsMaster.Data();
    o.sExcelRowsMaster = s.sExcelRowsMaster.Data();
    o.bExcelUseColsMaster = s.bExcelUseColsMaster.Data();
    o.sExcelColsMaster = s.sExcelColsMaster.Data();
    o.sExcelSheetNumberSource = s.sExcelSheetNumberSource.Data();
    o.bExcelUseRowsSource = s.bExcelUseRowsSource.Data();
    o.sExcelRowsSource = s.sExcelRowsSource.Data();
    o.bExcelUseColsSource = s.bExcelUseColsSource.Data();
    o.sExcelColsSource = s.sExcelColsSource.Data();
    return o;
}

LoadRoad RoadForFile(const QString& sFile, bool bHTMLCompareSource)
{
    if (isSpreadsheetPath(sFile))
        return LoadRoad::Spreadsheet;
    if (!bHTMLCompareSource && pathHasAny(sFile, {".JHTM", ".XHTM", ".HTM"}))
        return LoadRoad::WordDocument;
    if (pathHasAny(sFile, {".REG", ".WPD", ".WPS", ".MCW", ".ANS", ".ASC", ".DOC", ".ODT"}))
        return LoadRoad::WordDocument;
    if (pathHasAny(sFile, {".PDF"}))
        return LoadRoad::Pdf;
    return LoadRoad::Copy;
}

qint32 WordConversionType(const ConversionOptions& options)
{
    return options.bRemoveFormatting ? 2 : 6;
}

bool ConvertFileIfNecessary(ConversionControls& controls, const QString& sFile, const QString& File_cnvt,
                            const ConversionOptions& options, bool bIsOriginalFile)
{
    switch (RoadForFile(sFile, options.bHTMLCompareSource)) {
    case LoadRoad::Spreadsheet:
        return spreadsheetRoad(controls, sFile, File_cnvt, options, bIsOriginalFile);
    case LoadRoad::WordDocument:
        if (ConverterWordDoc(controls, sFile, File_cnvt, WordConversionType(options)))
            return true;
        report(QStringLiteral("LoadFileIntoEditor(): Unable to convert Word file.\n\n") + sFile);
        return false;
    case LoadRoad::Pdf:
        if (ConverterPDFDoc(controls, sFile, File_cnvt, 1))
            return true;
        report(QStringLiteral("LoadFileIntoEditor(): Unable to convert PDF file.\n\n") + sFile);
        return false;
    case LoadRoad::Copy:
        break;
    }
    if (copyFile(sFile, File_cnvt))
        return true;
    report(QStringLiteral("LoadFileIntoEditor(): Unable to copy file.\n\n") + sFile);
    return false;
}

bool StageFileForDiffPane(ConversionControls& controls, const QString& sFile, const QString& sTemp,
                          const ConversionOptions& options)
{
    if (pathHasAny(sFile, {".DAT", ".BAS", ".FRM", ".C", ".cpp", ".TXT", ".RTF", ".JHTM", ".XHTM", ".HTM"})) {
        if (copyFile(sFile, sTemp))
            return true;
        report(QStringLiteral("LoadFileIntoEditor(): Unable to copy file.\n\n") + sFile);
        return false;
    }
    if (ConverterWordDoc(controls, sFile, sTemp, WordConversionType(options)))
        return true;
    report(QStringLiteral("LoadFileIntoEditor(): Unable to convert Word file.\n\n") + sFile);
    return false;
}

void RemoveBlankLinesAfterLoad(ConversionControls& controls, const QString& sFile, const QString& sTemp,
                               const ConversionOptions& options)
{
    if (!options.bRemoveBlankLines)
        return;
    if (isSpreadsheetPath(sFile)) {
        controls.Lexiform1.SpecialProcessing(lexiform::SP_REMOVE_BLANK_LINES_CSV, sTemp, QString());
        controls.Lexiform1.SpecialProcessing(lexiform::SP_REMOVE_BLANK_LINES_CSV, sTemp, QString());
    } else {
        controls.Lexiform1.SpecialProcessing(lexiform::SP_REMOVE_BLANK_LINES, sTemp, QString());
    }
}
