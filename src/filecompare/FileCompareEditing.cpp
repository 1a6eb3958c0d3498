#include "filecompare/FileCompareEditing.h"

#include "filecompare/frmCompareFiles.h"

#include "components/safewrite/SafeWrite.h"
#include "conversion/ConverterRoutines.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "document/PrintRichText.h"
#include "document/SaveRichText.h"
#include "settings/IniStore.h"
#include "forms/modMessageBox.h"
#include "forms/modPickFile.h"
#include "forms/modUtilityForm.h"

#include <QComboBox>
#include <QFile>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>

namespace {

bool sameFile(const QString& a, const QString& b)
{
    return !a.trimmed().isEmpty() && !b.trimmed().isEmpty()
           && safewrite::sameFile(QFile::encodeName(a.trimmed()).toStdString(),
                                  QFile::encodeName(b.trimmed()).toStdString());
}

// The four margin boxes, in inches, as a tab of the print dialog. Their
// texts are kept in the viewer's INI section between prints.
class PrintMarginsTab : public QWidget {
public:
    explicit PrintMarginsTab(const QString& section) : section_(section)
    {
        setObjectName(QStringLiteral("framePrintMargins"));
        setWindowTitle(QStringLiteral("Margins"));
        auto* form = new QFormLayout(this);
        auto add = [&](QLineEdit*& box, const char* name, const QString& label) {
            box = new QLineEdit(IniReadString(gsIniFile, section_, QLatin1String(name), QStringLiteral("0.5")), this);
            box->setObjectName(QLatin1String(name));
            box->setMaximumWidth(80);
            form->addRow(label, box);
        };
        add(txtLeftMargin, "txtLeftMargin", QStringLiteral("Left:"));
        add(txtTopMargin, "txtTopMargin", QStringLiteral("Top:"));
        add(txtRightMargin, "txtRightMargin", QStringLiteral("Right:"));
        add(txtBottomMargin, "txtBottomMargin", QStringLiteral("Bottom:"));
        form->addRow(new QLabel(QStringLiteral(" (Units are Inches)"), this));
    }

    void save() const
    {
        IniWriteString(gsIniFile, section_, QStringLiteral("txtLeftMargin"), txtLeftMargin->text());
        IniWriteString(gsIniFile, section_, QStringLiteral("txtTopMargin"), txtTopMargin->text());
        IniWriteString(gsIniFile, section_, QStringLiteral("txtRightMargin"), txtRightMargin->text());
        IniWriteString(gsIniFile, section_, QStringLiteral("txtBottomMargin"), txtBottomMargin->text());
    }

    QLineEdit* txtLeftMargin = nullptr;
    QLineEdit* txtTopMargin = nullptr;
    QLineEdit* txtRightMargin = nullptr;
    QLineEdit* txtBottomMargin = nullptr;

private:
    QString section_;
};

} // namespace

namespace filecompare {

QString EditorName(qint32 lEditor)
{
    switch (lEditor) {
    case frmCompareFiles::kAIODiff: return QStringLiteral("ALL IN ONE DIFF");
    case frmCompareFiles::kOriginalDiffFinal: return QStringLiteral("ORIGINAL DIFF");
    case frmCompareFiles::kModifiedDiffFinal: return QStringLiteral("MODIFIED DIFF");
    case frmCompareFiles::kOriginal: return QStringLiteral("ORIGINAL");
    case frmCompareFiles::kModified: return QStringLiteral("MODIFIED");
    default: return QString();
    }
}

QString SaveEditorFilter()
{
    // The Word entry writes the Word format of today (.docx), which every
    // word processor opens under either name.
    return QStringLiteral("Rich Text Format(*.RTF)|*.RTF|Text (*.txt;*.C;*.cpp etc)|*.txt;*.C;*.cpp;*.frm"
                          "|MS Word (*.doc)|*.doc;*.docx|HTML (*.htm;*.html)|*.htm;*.html");
}

} // namespace filecompare

using filecompare::EditorName;

bool frmCompareFiles::SaveActiveEditorAs()
{
    const qint32 editor = mlActiveEditor;
    RichTextBox* box = EditorBox(editor);
    if (!box)
        return false;
    const QString sName = EditorName(editor);
    const QString target = PickFile(this, QStringLiteral("Save ") + sName + QStringLiteral(" Editor As"),
                                    filecompare::SaveEditorFilter(), lLastSelectedFileFilterIndex);
    if (target.isEmpty())
        return false;

    // The files being compared are the user's own; replacing one with what
    // an editor holds (colours of a diff pane, a converted Word file as
    // text) is allowed, but only as a choice made knowingly.
    const QString original = cbSelectOriginal->currentText();
    const QString modified = cbSelectModified->currentText();
    const bool isOriginal = sameFile(target, original);
    if (isOriginal || sameFile(target, modified)) {
        const QString question = target + QStringLiteral("\nis the ") + (isOriginal ? QStringLiteral("Original") : QStringLiteral("Modified"))
                                 + QStringLiteral(" document of this comparison.\n\nReplace it with what the ")
                                 + sName + QStringLiteral(" editor holds?");
        if (MsgBox(this, question, MsgButtons::YesNo, MsgIcon::Question, QStringLiteral("Save ") + sName
                                                                            + QStringLiteral(" Editor As"))
            != MsgAnswer::Yes)
            return false;
    }

    const tv::SaveOutcome outcome =
        tv::SaveDocumentAs(*box->document(), target, tv::SaveFormatOfFilterIndex(lLastSelectedFileFilterIndex));
    if (!outcome) {
        QString message = LexiformErrorMessage(outcome.result).value_or(QStringLiteral("Failed to Convert"));
        if (!outcome.reason.isEmpty())
            message += QStringLiteral("\n  ") + target + QStringLiteral("\n  ") + outcome.reason
                       + QStringLiteral("; the file was not changed.");
        LogMessage(message, gsClLogFile, gbClVerbose);
        RefreshButtonStates();
        return false;
    }
    if (editor == frmCompareFiles::kOriginal) {
        mruOriginal.AddUniqueItemToCollection(target);
        FillComboFromMRU(cbSelectOriginal, mruOriginal);
    } else if (editor == frmCompareFiles::kModified) {
        mruModified.AddUniqueItemToCollection(target);
        FillComboFromMRU(cbSelectModified, mruModified);
    }
    RefreshButtonStates();
    return true;
}

void frmCompareFiles::PrintActiveEditor()
{
    RichTextBox* box = EditorBox(mlActiveEditor);
    if (!box)
        return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(QStringLiteral("Print ") + EditorName(mlActiveEditor) + QStringLiteral(" Editor"));
    auto* margins = new PrintMarginsTab(sDescription);
    dialog.setOptionTabs({margins});
    if (dialog.exec() != QDialog::Accepted)
        return;
    margins->save();
    const QString why = tv::PrintRTF(*box->document(), printer, tv::MarginTwips(margins->txtLeftMargin->text()),
                                     tv::MarginTwips(margins->txtTopMargin->text()),
                                     tv::MarginTwips(margins->txtRightMargin->text()),
                                     tv::MarginTwips(margins->txtBottomMargin->text()));
    if (!why.isEmpty())
        MsgBox(this, why, MsgButtons::OK, MsgIcon::Exclamation, QStringLiteral("Print"));
}

void frmCompareFiles::SwapOriginalAndModified()
{
    if (IsBusy())
        return;
    // The documents change boxes whole, formats and all; nothing is
    // converted or read again.
    rtbOriginal->swapDocuments(*rtbModified);
    const QString original = cbSelectOriginal->currentText();
    const QString modified = cbSelectModified->currentText();
    mruOriginal.AddUniqueItemToCollection(modified);
    mruModified.AddUniqueItemToCollection(original);
    FillComboFromMRU(cbSelectOriginal, mruOriginal);
    FillComboFromMRU(cbSelectModified, mruModified);
    cbSelectOriginal->setEditText(modified);
    cbSelectModified->setEditText(original);
    moFileOptions.sFileOriginal = modified;
    moFileOptions.sFileModified = original;
    // What the all-in-one pane showed belongs to the old order.
    rtbAIODiff->setTextRTF(RichText());
    RefreshButtonStates();
    RefreshDisplay(moFileOptions.bReloadOnRefresh.Data(), true);
}
