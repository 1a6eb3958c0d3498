#pragma once
// Where the program keeps its files on this machine.
//
// The INI file lives in the user's configuration folder. Report defaults go to
// a data folder of the user's. The work files of a comparison (the RTF and
// plain-text copies the viewers and the engine pass around) live in a folder
// private to this process, so two running copies never overwrite each other's.

#include <QString>

// $XDG_CONFIG_HOME/Tallyvane/Tallyvane.INI (~/.config/... by default). The
// folder is made by the first write, not here.
QString iniFilePath();

// $XDG_DATA_HOME/Tallyvane (~/.local/share/... by default), made on demand.
QString dataFolder();

// A folder only this process uses (mode 0700) under $XDG_RUNTIME_DIR, or the
// system's temporary folder when there is no usable runtime folder. Made on
// the first call and removed with everything in it when the process exits
// normally or is ended by SIGTERM, SIGINT or SIGHUP. Empty if no such folder
// could be made. The first call also clears away the folders of copies that
// died without removing theirs.
QString tempFolder();

// Removes this user's work folders whose process is gone; returns how many.
int removeStaleWorkFolders();

// The work files inside tempFolder(); empty when it could not be made.
QString tempRtfPath();      // Temp.RTF: a loaded document on its way into an editor
QString rtbTempRtfPath();   // rtbTemp.RTF: editor contents saved for conversion
QString masterTextPath();   // tv_master.TXT: Original text handed to the engine
QString sourceTextPath();   // tv_source.TXT: Modified text handed to the engine
QString demoTempPath();     // DemoTemp.TXT: a find hit shown in a viewer

// The manual's first page as installed with the program (the documentation
// folder next to the program's bin folder), or empty when the program runs
// from a build folder and no installed manual is there.
QString installedManualPath();
