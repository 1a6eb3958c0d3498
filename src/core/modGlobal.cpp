#include "core/modGlobal.h"

#include "core/Places.h"

QString gsIniFile;
qint32 glExitStatus = 0;
bool gbRefreshingControls = false;
bool gbFrameClosing = false;
QString gsMasterTextFile;
QString gsSourceTextFile;

QString gsClMaster;
QString gsClSource;
bool gbClCompareFolders = false;
bool gbClSubFolders = false;
QString gsClReportFile;
qint32 glClReportType = 1;
qint32 glClReportStyle = 2;
bool gbClIgnoreCase = false;
bool gbClIgnoreWhitespace = false;
bool gbClQuickCompare = false;
bool gbClBeepWhenDone = false;
bool gbClExitWhenDone = false;
bool gbClOpenReport = false;
bool gbClRemoveBlankLines = false;
bool gbClExcelCompareFormulas = false;
bool gbClHTMLCompareSource = false;
QString gsClExcelSheetMaster = QStringLiteral("1");
QString gsClExcelSheetSource = QStringLiteral("1");
QString gsClExcelRowsMaster;
QString gsClExcelColsMaster;
QString gsClExcelRowsSource;
QString gsClExcelColsSource;
bool gbClUseExitStatus = false;
QString gsClLogFile;
bool gbClVerbose = false;

void ResetCommandLineGlobals()
{
    gsClMaster.clear();
    gsClSource.clear();
    gbClCompareFolders = false;
    gbClSubFolders = false;
    gsClReportFile.clear();
    glClReportType = 1;
    glClReportStyle = 2;
    gbClIgnoreCase = false;
    gbClIgnoreWhitespace = false;
    gbClQuickCompare = false;
    gbClBeepWhenDone = false;
    gbClExitWhenDone = false;
    gbClOpenReport = false;
    gbClRemoveBlankLines = false;
    gbClExcelCompareFormulas = false;
    gbClHTMLCompareSource = false;
    gsClExcelSheetMaster = QStringLiteral("1");
    gsClExcelSheetSource = QStringLiteral("1");
    gsClExcelRowsMaster.clear();
    gsClExcelColsMaster.clear();
    gsClExcelRowsSource.clear();
    gsClExcelColsSource.clear();
    gbClUseExitStatus = false;
    gsClLogFile.clear();
    gbClVerbose = false;
}

void InitProgramPlaces()
{
    gsIniFile = iniFilePath();
    gsMasterTextFile = masterTextPath();
    gsSourceTextFile = sourceTextPath();
}
