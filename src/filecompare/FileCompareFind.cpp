// Find and replace in the viewer: one dialog for all its editors, aimed at
// the editor the user last clicked; F3 finds again without it.

#include "filecompare/frmCompareFiles.h"
#include "filecompare/frmCompareFilesFindReplace.h"

#include <QAction>
#include <QMenu>

void frmCompareFiles::wireFindAndReplace()
{
    findReplace_ = new frmCompareFilesFindReplace(this);
    findReplace_->SetTarget(EditorBox(mlActiveEditor));
    // A replace in an editor is an edit like any other; one in a diff pane
    // changes only what is shown.
    connect(findReplace_, &frmCompareFilesFindReplace::textReplaced, this, [this](RichTextBox* box) {
        if (box == rtbOriginal || box == rtbModified)
            MarkDiffViewStale();
    });
    tbFindAndReplace->setEnabled(true);
    connect(tbFindAndReplace, &QAction::triggered, this, &frmCompareFiles::mnuFindAndReplace_Click);
    if (auto* entry = mnuEdit->findChild<QAction*>(QStringLiteral("mnuFindAndReplace"))) {
        entry->setEnabled(true);
        connect(entry, &QAction::triggered, this, &frmCompareFiles::mnuFindAndReplace_Click);
    }
    auto* again = new QAction(this);
    again->setObjectName(QStringLiteral("actFindAgain"));
    again->setShortcut(Qt::Key_F3);
    again->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(again, &QAction::triggered, this, &frmCompareFiles::FindAgain);
    addAction(again);
}

void frmCompareFiles::mnuFindAndReplace_Click()
{
    findReplace_->SetTarget(EditorBox(mlActiveEditor));
    findReplace_->show();
    findReplace_->raise();
    findReplace_->activateWindow();
}

void frmCompareFiles::FindAgain()
{
    findReplace_->SetTarget(EditorBox(mlActiveEditor));
    findReplace_->NoShow();
}
