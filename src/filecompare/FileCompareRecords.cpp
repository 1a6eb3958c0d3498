// The filtered views and their buttons.

#include "filecompare/FileCompareFormats.h"
#include "filecompare/frmCompareFiles.h"

#include <QRadioButton>
#include <QTextEdit>

void frmCompareFiles::rbShowAll_Click()
{
    rtbAdditions->view()->hide();
    rtbChanges->view()->hide();
    rtbDeletions->view()->hide();
    if (!SideBySideShowing())
        rtbAIODiff->view()->setFocus();
    else
        rtbOriginal->view()->setFocus();
    UpdateStatusBar();
}

void frmCompareFiles::rbShowAdditions_Click()
{
    rtbAdditions->view()->show();
    rtbAdditions->view()->raise();
    rtbAdditions->view()->setFocus();
    SetPanelText(3, QStringLiteral("Number of additions: ") + QString::number(Result().additions()));
}

void frmCompareFiles::rbShowChanges_Click()
{
    rtbChanges->view()->show();
    rtbChanges->view()->raise();
    rtbChanges->view()->setFocus();
    SetPanelText(3, QStringLiteral("Number of changes: ") + QString::number(Result().changes()));
}

void frmCompareFiles::rbShowDeletions_Click()
{
    rtbDeletions->view()->show();
    rtbDeletions->view()->raise();
    rtbDeletions->view()->setFocus();
    SetPanelText(3, QStringLiteral("Number of deletions: ") + QString::number(Result().deletions()));
}
