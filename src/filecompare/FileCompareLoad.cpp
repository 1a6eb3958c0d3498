// The road of a file into an editor: staged as the work file Temp.RTF by the
// conversion routines (converted, or copied as it is), checked, then loaded
// by the editor's document.

#include "conversion/LoadPipeline.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "shell/core/Places.h"
#include "shell/core/modGlobal.h"
#include "shell/core/modParseCommandLine.h"
#include "shell/core/modUtilityFile.h"
#include "shell/modMessageBox.h"
#include "shell/modPickFile.h"
#include "shell/modUtilityForm.h"

#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QTextCursor>
#include <QTextDocument>
#include <QTimer>

namespace {

const char* const kLoadFilter =
    "All Files (*.*)|*.*|Text (*.txt;*.C;*.cpp etc)|*.txt;*.C;*.cpp;*.frm|MS Word (*.doc)|*.doc|"
    "Adobe Arobat (*.PDF)|*.PDF|MS Excel (*.XLS)|*.XLS|Rich Text Format(*.RTF)|*.RTF|"
    "HTML (*.htm;*.html)|*.htm;*.html";

void report(const QString& message)
{
    LogMessage(message, gsClLogFile, gbClVerbose);
}

// What the editor would be given: refused when it is no text at all, as a
// program, an image or an archive copied as it stands: NUL bytes in the
// first part without a wide-text byte order mark.
bool stagedFileIsBinary(const QString& staged)
{
    QFile f(staged);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = f.read(64 * 1024);
    if (head.startsWith("\xFF\xFE") || head.startsWith("\xFE\xFF") || head.startsWith(QByteArray("\x00\x00\xFE\xFF", 4)))
        return false;
    return head.contains('\0');
}

bool stagedFileIsRichText(const QString& staged)
{
    QFile f(staged);
    return f.open(QIODevice::ReadOnly) && f.read(5) == "{\\rtf";
}

// Plain text (source code, spreadsheet rows padded into columns, the text
// of a PDF) is laid out in columns by its blanks: it reads as it was meant
// only in a font whose characters are all one width.
void showInFixedPitch(RichTextBox* box)
{
    QTextCharFormat fixed;
    fixed.setFontFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
    fixed.setFontFixedPitch(true);
    QTextCursor all(box->document());
    all.select(QTextCursor::Document);
    all.mergeCharFormat(fixed);
    QFont font = box->document()->defaultFont();
    font.setFamilies(fixed.fontFamilies().toStringList());
    font.setFixedPitch(true);
    box->document()->setDefaultFont(font);
}

} // namespace

bool frmCompareFiles::LoadOriginalFile(const QString& sFile)
{
    if (!FileExistsOnDisk(sFile)) {
        MsgBox(this, QStringLiteral("File does not exist:\n\n") + sFile, MsgButtons::OK, MsgIcon::Information,
               QStringLiteral("Error"));
        return false;
    }
    moFileOptions.sFileOriginal = sFile;
    mruOriginal.AddUniqueItemToCollection(sFile);
    if (!LoadFileIntoEditor(sFile, kOriginal))
        return false;
    FillComboFromMRU(cbSelectOriginal, mruOriginal);
    RefreshButtonStates();
    UpdateWindowCaption();
    return true;
}

bool frmCompareFiles::LoadModifiedFile(const QString& sFile)
{
    if (!FileExistsOnDisk(sFile)) {
        MsgBox(this, QStringLiteral("File does not exist:\n\n") + sFile, MsgButtons::OK, MsgIcon::Information,
               QStringLiteral("Error"));
        return false;
    }
    moFileOptions.sFileModified = sFile;
    mruModified.AddUniqueItemToCollection(sFile);
    if (!LoadFileIntoEditor(sFile, kModified))
        return false;
    FillComboFromMRU(cbSelectModified, mruModified);
    RefreshButtonStates();
    UpdateWindowCaption();
    return true;
}

bool frmCompareFiles::LoadFileIntoEditor(const QString& sFile, qint32 lEditor)
{
    filecompare::BusyCursor busy;
    filecompare::DoEvents();
    if (sFile.isEmpty()) {
        report(QStringLiteral("Unable to load file. Filename empty"));
        return false;
    }
    const QString sTemp = tempRtfPath();
    if (lEditor == kOriginal || lEditor == kModified) {
        const bool original = lEditor == kOriginal;
        if (!ConvertFileIfNecessary(sFile, sTemp, moFileOptions, original))
            return false;
        // A file chosen in the picker is remembered like one typed in.
        (original ? moFileOptions.sFileOriginal : moFileOptions.sFileModified) = sFile;
        (original ? mruOriginal : mruModified).AddUniqueItemToCollection(sFile);
    } else if (!StageFileForDiffPane(mConversionControls, sFile, sTemp, ConversionOptionsFrom(moFileOptions))) {
        return false;
    }
    if (lEditor == kOriginal || lEditor == kModified)
        RemoveBlankLinesAfterLoad(mConversionControls, sFile, sTemp, ConversionOptionsFrom(moFileOptions));
    if (stagedFileIsBinary(sTemp)) {
        report(QStringLiteral("LoadFileIntoEditor(): Unable to load file: it holds no text.\n\n") + sFile);
        return false;
    }
    RichTextBox* box = EditorBox(lEditor);
    clsRTBDocument* doc = EditorDocument(lEditor);
    if (!box || !doc)
        return false;
    // The box's load replaces its document only when the file could be read,
    // so a failure leaves what the editor held.
    doc->LoadFile(sTemp);
    if (stagedFileIsRichText(sTemp))
        box->document()->setDefaultFont(QGuiApplication::font());
    else
        showInFixedPitch(box);
    if (lEditor == kOriginal)
        mbOriginalDirty = true;
    else if (lEditor == kModified)
        mbModifiedDirty = true;
    if (lEditor == kOriginal || lEditor == kModified) {
        // Whoever loads by hand takes automatic refresh off.
        moFileOptions.bRefreshGUI = false;
        if (timerRefresh)
            timerRefresh->stop();
    }
    return true;
}

bool frmCompareFiles::ConvertFileIfNecessary(const QString& sFile, const QString& File_cnvt,
                                             clsCompareFileOptions& options, bool bIsOriginalFile)
{
    return ::ConvertFileIfNecessary(mConversionControls, sFile, File_cnvt, ConversionOptionsFrom(options),
                                    bIsOriginalFile);
}

void frmCompareFiles::PickFileForEditor(qint32 lEditor)
{
    QString start;
    if (lEditor == kOriginal)
        start = QFileInfo(cbSelectOriginal->currentText()).absolutePath();
    else if (lEditor == kModified)
        start = QFileInfo(cbSelectModified->currentText()).absolutePath();
    const QString path = PickFile(this, QStringLiteral("Load File"), QLatin1String(kLoadFilter),
                                  lLastSelectedFileFilterIndex, start);
    if (path.isEmpty())
        return;
    if (!LoadFileIntoEditor(path, lEditor))
        return;
    // The combo box shows what the editor holds, so that a refresh that
    // reloads takes the same file.
    if (lEditor == kOriginal)
        FillComboFromMRU(cbSelectOriginal, mruOriginal);
    else if (lEditor == kModified)
        FillComboFromMRU(cbSelectModified, mruModified);
    RefreshButtonStates();
    UpdateWindowCaption();
}
