#pragma once
// The road of a file into an editor of the file viewer: its name decides
// whether it is converted as a spreadsheet, a word processor or web
// document, a PDF, or copied as it is, into the one temporary file the
// editor then loads. The viewer calls these routines; they know nothing of
// its windows.

#include "conversion/ConverterRoutines.h"

#include <QString>

class clsCompareFileOptions;

// What the road reads of a viewer's option set.
struct ConversionOptions {
    bool bRemoveFormatting = false;
    bool bHTMLCompareSource = false;
    bool bRemoveBlankLines = false;
    bool bExcelCompareFormulas = false;
    QString sExcelSheetNumberMaster = QStringLiteral("1");
    bool bExcelUseRowsMaster = false;
    QString sExcelRowsMaster = QStringLiteral("1");
    bool bExcelUseColsMaster = false;
    QString sExcelColsMaster = QStringLiteral("1");
    QString sExcelSheetNumberSource = QStringLiteral("1");
    bool bExcelUseRowsSource = false;
    QString sExcelRowsSource = QStringLiteral("1");
    bool bExcelUseColsSource = false;
    QString sExcelColsSource = QStringLiteral("1");
};

ConversionOptions ConversionOptionsFrom(const clsCompareFileOptions& options);

enum class LoadRoad { Spreadsheet, WordDocument, Pdf, Copy };

// The road of a file by its name: the extension texts are looked for
// anywhere in the path, without regard to case, in a fixed order.
LoadRoad RoadForFile(const QString& sFile, bool bHTMLCompareSource);

// 2 (plain text) when formatting is to be removed, else 6 (rich text).
qint32 WordConversionType(const ConversionOptions& options);

// Converts or copies sFile into File_cnvt by its road; the options of the
// original side (master) or of the modified side (source) apply to a
// spreadsheet. False, after the message of the failing step, when File_cnvt
// does not hold the result.
bool ConvertFileIfNecessary(ConversionControls& controls, const QString& sFile, const QString& File_cnvt,
                            const ConversionOptions& options, bool bIsOriginalFile);

// The road of the three difference panes (editors 1 to 3): source and text
// files are copied, everything else goes through Word conversion.
bool StageFileForDiffPane(ConversionControls& controls, const QString& sFile, const QString& sTemp,
                          const ConversionOptions& options);

// The blank-line step that follows a load into the original or modified
// editor when bRemoveBlankLines is set: on the staged copy only, never on the
// user's file. Results are not examined.
void RemoveBlankLinesAfterLoad(ConversionControls& controls, const QString& sFile, const QString& sTemp,
                               const ConversionOptions& options);
