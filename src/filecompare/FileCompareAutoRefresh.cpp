// Automatic refresh in the viewer: a stale view is compared again on the
// timer, and while it is on, a file saved by another program comes back into
// its editor and is compared, as long as the user has not edited that editor.

#include "filecompare/frmCompareFiles.h"
#include "filecompare/AutoRefresh.h"
#include "forms/modMessageBox.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QTextDocument>
#include <QTimer>

namespace {

// How long a file event waits for a run in progress before it tries again.
constexpr int kBusyRetryMs = 500;

} // namespace

void frmCompareFiles::timerRefresh_Timer()
{
    if (!ready_)
        return;
    RefreshDisplay(moFileOptions.bReloadOnRefresh.Data(), false);
}

void frmCompareFiles::watchSelectedFiles()
{
    autoRefresh_->watchFiles(cbSelectOriginal->currentText(), cbSelectModified->currentText());
}

void frmCompareFiles::WatchedFilesChanged(bool bOriginal, bool bModified)
{
    if (!ready_ || !moFileOptions.bRefreshGUI.Data())
        return;
    if (IsBusy()) {
        // Loading into an editor in the middle of a run would pull the text
        // from under it; the file is looked at again when the run is over.
        QTimer::singleShot(kBusyRetryMs, this, [this, bOriginal, bModified] {
            WatchedFilesChanged(bOriginal, bModified);
        });
        return;
    }
    QStringList kept;
    bool reloaded = false;
    auto side = [&](bool changed, qint32 editor, QComboBox* combo, const QString& name) {
        if (!changed)
            return;
        // Edits since the last load are the user's work: a file from disk
        // must not silently replace them.
        RichTextBox* box = EditorBox(editor);
        if (box->document()->isUndoAvailable()) {
            kept << name;
            return;
        }
        keepAutoRefresh_ = true;
        const bool ok = editor == kOriginal ? LoadOriginalFile(combo->currentText())
                                            : LoadModifiedFile(combo->currentText());
        keepAutoRefresh_ = false;
        reloaded = reloaded || ok;
    };
    side(bOriginal, kOriginal, cbSelectOriginal, QStringLiteral("Original"));
    side(bModified, kModified, cbSelectModified, QStringLiteral("Modified"));
    if (reloaded)
        RefreshDisplay(false, false);
    if (!kept.isEmpty())
        SetPanelText(3, QStringLiteral("The %1 file changed on disk; the editor keeps your edits. Reload it to see "
                                       "the file.")
                            .arg(kept.join(QStringLiteral(" and "))));
}

void frmCompareFiles::WatchedFileMissing(int side, const QString& sPath)
{
    if (!ready_)
        return;
    const QString name = side == filecompare::AutoRefresh::kOriginal ? QStringLiteral("Original")
                                                                      : QStringLiteral("Modified");
    const QString text = QStringLiteral("The %1 file is no longer there:\n%2\n\nIt was deleted, moved or renamed. "
                                        "The editor keeps its text, and the comparison shows the editors until "
                                        "the file is back.")
                             .arg(name, QDir::toNativeSeparators(sPath));
    SetPanelText(3, QStringLiteral("The %1 file is no longer there: %2").arg(name, sPath));
    MsgBox(this, text, MsgButtons::OK, MsgIcon::Exclamation, QStringLiteral("File Missing"));
}
