#pragma once
// What the folder comparison from the command line needs of the folder
// viewer. The viewer that the frame makes for its folder kind implements
// this next to ViewerForm; the batch driver finds it there and does nothing
// else with the viewer.

#include <QString>
#include <QtGlobal>

class FolderBatchViewer {
public:
    virtual ~FolderBatchViewer() = default;

    // The two folders, as if typed into the viewer's selection boxes.
    virtual void SetBatchFolders(const QString& sOriginal, const QString& sModified) = 0;
    // The only two folder options the command line sets; every other one
    // stays as the viewer restored it.
    virtual void SetBatchOptions(bool bBeepWhenDone, bool bDoSubDirectories) = 0;
    // Pushes the option object into the screen controls.
    virtual void RefreshCompareOptionsGUI() = 0;
    // Brings the comparison page to the front.
    virtual void ShowComparePage() = 0;
    // Starts the folder comparison and returns at once.
    virtual void RefreshDiffViewer() = 0;
    // True while the comparison control works; safe to ask from the waiting
    // driver, which lets no events through.
    virtual bool CompareInProgress() const = 0;
    // The folder report of the last comparison; false when it could not be
    // written.
    virtual bool WriteReport(const QString& sPath) = 0;
    // The number of finding records of the last comparison.
    virtual qint32 RecordCount() const = 0;
};
