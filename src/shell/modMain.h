#pragma once
// The program's start: the choice between an interactive run (the frame
// window opens and the user takes over) and a batch run (one comparison of
// two files or two folders, a report, a log line, and perhaps an end by
// itself with a status). The batch drivers only hand the command line to
// viewer number 1 and read back what its comparison found.

#include <QStringList>

#include <memory>

class frmMainMDI;

struct MainResult {
    // True: the frame stays open and the program lives in its event loop
    // until the user closes it. False: the program ends with exitStatus.
    bool runEventLoop = false;
    int exitStatus = 0;
};

// Parses args (the command line without the program's name) and runs what it
// asks for. The frame, when one is made, is put into `frame`; ending the
// program by destroying it closes no window, so nothing of a batch run is
// saved to the INI file. Without a display nobody could take over, so a
// batch run always ends when its comparison is done, as with -X, and an
// interactive start ends at once with status 2 after saying that a display
// is needed. A -D run without a folder viewer in the build ends with 2.
MainResult Main(const QStringList& args, bool hasDisplay, std::unique_ptr<frmMainMDI>& frame);

// The file comparison of the command line, in viewer number 1 of the frame.
// Sets glExitStatus to the number of differences. Returns true when the
// program is to end now (-X): a file comparison then ends with status 0,
// whatever -G says.
bool CompareFilesFromCommandLine(frmMainMDI& frame);

// The folder comparison of the command line, in folder viewer number 1.
// Sets glExitStatus to the number of finding records. False when this build
// has no folder viewer to run it in; the reason has then been reported.
bool CompareFoldersFromCommandLine(frmMainMDI& frame);

// What a -D run says when there is no folder viewer to run it in.
inline constexpr const char* kNoFolderViewerMessage =
    "Folder comparison from the command line comes with the folder viewer, which this build does not have yet";
