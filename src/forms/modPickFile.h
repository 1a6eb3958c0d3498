#pragma once
// The file and folder pickers. The windows describe file types the way their
// settings and menus always have ("Text (*.txt)|*.txt|All Files|*.*"); the
// pickers turn that into the desktop's dialog. Both go through replaceable
// functions so that tests can answer them.

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>

class QWidget;

struct FilePickRequest {
    QWidget* owner = nullptr;
    QString title;
    QStringList nameFilters;  // as QFileDialog takes them, in the caller's order
    qint32 filterIndex = 1;   // 1-based; the filter to start on
    QString startFolder;      // empty: the dialog's own choice
    bool save = false;        // a save dialog rather than an open dialog
};

struct FilePickResult {
    QString path;             // empty when cancelled
    qint32 filterIndex = 1;   // the filter in use when the dialog closed
};

using FilePicker = std::function<FilePickResult(const FilePickRequest&)>;
using FolderPicker = std::function<QString(QWidget* owner, const QString& title, const QString& startFolder)>;

// Turns "Description|patterns|Description|patterns" into dialog filters. A
// pattern "*.*" means every file; patterns match either case, since the
// filters were written for a file system that ignores it.
QStringList NameFiltersFromPipeList(const QString& filter);

// Asks for a file. A title with "save" in it, in any case, asks for a file to
// save to; any other for one to open. filterIndex (1-based) is where the
// dialog starts and receives the filter the user chose. Returns "" when
// cancelled.
QString PickFile(QWidget* owner, const QString& title, const QString& filter, qint32& filterIndex,
                 const QString& startFolder = QString());

// Asks for a folder, starting at startFolder (a trailing "/" is dropped).
// Returns "" when cancelled.
QString PickFolder(QWidget* owner, const QString& startFolder);

// The caption the folder picker shows.
inline constexpr const char* kPickFolderTitle = "Pre-selecting folder using the folder's string.";

// Replace the dialogs; return the previous ones. Empty functions restore the
// desktop's dialogs.
FilePicker setFilePicker(FilePicker picker);
FolderPicker setFolderPicker(FolderPicker picker);
