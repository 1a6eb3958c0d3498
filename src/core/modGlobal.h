#pragma once
// Program-wide state. Everything the command line decides lives here, so the
// batch drivers, the viewers and the conversion routines read one source.

#include <QString>
#include <QtGlobal>

// Full path of the INI file; every settings operation reads it.
extern QString gsIniFile;

// Result count of a batch run; becomes the exit status with -X -G.
extern qint32 glExitStatus;

// True while code fills screen controls: their change handlers then do nothing.
extern bool gbRefreshingControls;

// The frame is closing: viewers skip their resize layout.
extern bool gbFrameClosing;

// The two plain-text files the line-diff engine reads, shared by all file
// viewers and rewritten for every compare.
extern QString gsMasterTextFile;
extern QString gsSourceTextFile;

// Command-line switches (see ParseCommandLine). Their defaults are restored
// by ResetCommandLineGlobals at the start of every parse.
extern QString gsClMaster;              // -M, Original file or folder
extern QString gsClSource;              // -S, Modified file or folder
extern bool gbClCompareFolders;         // -D
extern bool gbClSubFolders;             // -C
extern QString gsClReportFile;          // -T
extern qint32 glClReportType;           // -R, 1 HTML, 2 text, 3 comma delimited
extern qint32 glClReportStyle;          // -F, 1 all in one, 2 side by side
extern bool gbClIgnoreCase;             // -I
extern bool gbClIgnoreWhitespace;       // -W
extern bool gbClQuickCompare;           // -Q
extern bool gbClBeepWhenDone;           // -B
extern bool gbClExitWhenDone;           // -X
extern bool gbClOpenReport;             // -O
extern bool gbClRemoveBlankLines;       // -E
extern bool gbClExcelCompareFormulas;   // -A
extern bool gbClHTMLCompareSource;      // -H
extern QString gsClExcelSheetMaster;    // -Y
extern QString gsClExcelSheetSource;    // -Z
extern QString gsClExcelRowsMaster;     // -1
extern QString gsClExcelColsMaster;     // -2
extern QString gsClExcelRowsSource;     // -3
extern QString gsClExcelColsSource;     // -4
extern bool gbClUseExitStatus;          // -G
extern QString gsClLogFile;             // -L
extern bool gbClVerbose;                // -V

void ResetCommandLineGlobals();

// Sets gsIniFile, gsMasterTextFile and gsSourceTextFile to their places on
// this machine (see Places.h). Called once by the entry routine.
void InitProgramPlaces();
