// A file into an editor: staged by the session as the work file Temp.RTF
// (converted, or copied as it is, and checked), then loaded by the editor's
// document, built on a worker when both editors load together.

#include "conversion/LoadPipeline.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "filecompare/CompareOptionsPage.h"
#include "core/Places.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "core/modUtilityFile.h"
#include "forms/modMessageBox.h"
#include "forms/modPickFile.h"
#include "forms/modUtilityForm.h"

#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QTextDocument>
#include <QThread>
#include <QTimer>

#include <future>
#include <memory>
#include <vector>

namespace {

const char* const kLoadFilter =
    "All Files (*.*)|*.*|Text (*.txt;*.C;*.cpp etc)|*.txt;*.C;*.cpp;*.frm|MS Word (*.doc)|*.doc|"
    "Adobe Arobat (*.PDF)|*.PDF|MS Excel (*.XLS)|*.XLS|Rich Text Format(*.RTF)|*.RTF|"
    "HTML (*.htm;*.html)|*.htm;*.html";

// Plain text (source code, spreadsheet rows padded into columns, the text
// of a PDF) is laid out in columns by its blanks: it reads as it was meant
// only in a font whose characters are all one width. It is the document's
// default font, which costs nothing to set, and which the compare hands on
// to the panes that show the same text.
void showInFixedPitch(RichTextBox* box, bool fixedPitch)
{
    QFont font = fixedPitch ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : QGuiApplication::font();
    font.setPointSizeF(QGuiApplication::font().pointSizeF());
    box->document()->setDefaultFont(font);
}

} // namespace

// A plain-text file of 100,000 lines takes a good part of a second to become
// a document, and two of them are loaded for every refresh that reloads:
// the second is staged while the first is built on a worker thread, and
// both documents are built side by side. When the side-by-side view will
// colour a copy of a plain editor, that copy is built from the same text on
// a worker of its own too, instead of after the load on this thread. A
// document is a reentrant object that nothing else sees until a box takes
// it, on this thread.
class PendingEditorLoads {
public:
    struct Built {
        std::unique_ptr<RichTextBox> box;
        std::unique_ptr<RichTextBox> copy;
        std::vector<clsParagraph> paragraphs;
        RichTextBox::FileError error;
    };

    ~PendingEditorLoads()
    {
        for (Load& l : loads_)
            if (l.built.valid())
                l.built.wait();
    }

    // Takes the staged file away from the work file the next load uses and
    // builds its document (and, when asked, a copy) on workers. False when
    // it cannot.
    bool start(const QString& sTemp, qint32 lEditor, bool withCopy)
    {
        const QString kept = sTemp + QStringLiteral(".%1").arg(lEditor);
        QFile::remove(kept);
        if (!QFile::rename(sTemp, kept))
            return false;
        QThread* home = QThread::currentThread();
        loads_.push_back({lEditor, kept, std::async(std::launch::async, [kept, home, withCopy] {
                              Built b{std::make_unique<RichTextBox>(), nullptr, {}, {}};
                              QString text;
                              if (withCopy && filecompare::FileCompareSession::PlainTextOf(kept, text)) {
                                  auto copy = RichTextBox::buildOnWorker(text, home);
                                  b.box->setText(text);
                                  b.box->walkForLayout();
                                  b.paragraphs = clsRTBDocument::ParagraphsOf(text);
                                  b.copy = copy.get();
                              } else {
                                  b.error = b.box->LoadFile(kept, RichTextBox::ByContent);
                              }
                              b.box->document()->moveToThread(home);
                              b.box->moveToThread(home);
                              return b;
                          })});
        return true;
    }

    // Each editor takes the document built for it; one that could not be
    // built is loaded here after all, with the load's own message.
    void finish(frmCompareFiles* viewer)
    {
        for (Load& l : loads_) {
            Built b = l.built.get();
            RichTextBox* box = viewer->EditorBox(l.editor);
            if (!b.error) {
                // The font first: a long document shown in one font and then
                // another is measured twice.
                showInFixedPitch(b.box.get(), true);
                box->swapDocuments(*b.box);
                if (b.copy)
                    viewer->adoptWorkCopy(l.editor, *b.copy);
                if (!b.paragraphs.empty())
                    viewer->adoptEditorIndex(l.editor, std::move(b.paragraphs));
            } else {
                viewer->EditorDocument(l.editor)->LoadFile(l.path);
                showInFixedPitch(box, true);
            }
            QFile::remove(l.path);
        }
        loads_.clear();
    }

private:
    struct Load {
        qint32 editor;
        QString path;
        std::future<Built> built;
    };
    std::vector<Load> loads_;
};

bool frmCompareFiles::LoadOriginalFile(const QString& sFile)
{
    return loadSideFile(sFile, kOriginal, moFileOptions.sFileOriginal, mruOriginal, cbSelectOriginal);
}

bool frmCompareFiles::LoadModifiedFile(const QString& sFile)
{
    return loadSideFile(sFile, kModified, moFileOptions.sFileModified, mruModified, cbSelectModified);
}

bool frmCompareFiles::loadSideFile(const QString& sFile, qint32 lEditor, clsVarString& lastFile, clsMRU& mru,
                                   QComboBox* combo)
{
    if (!FileExistsOnDisk(sFile)) {
        MsgBox(this, QStringLiteral("File does not exist:\n\n") + sFile, MsgButtons::OK, MsgIcon::Information,
               QStringLiteral("Error"));
        return false;
    }
    lastFile = sFile;
    mru.AddUniqueItemToCollection(sFile);
    if (!LoadFileIntoEditor(sFile, lEditor))
        return false;
    FillComboFromMRU(combo, mru);
    RefreshButtonStates();
    UpdateWindowCaption();
    return true;
}

bool frmCompareFiles::LoadFileIntoEditor(const QString& sFile, qint32 lEditor)
{
    filecompare::BusyCursor busy;
    filecompare::DoEvents();
    const QString sTemp = tempRtfPath();
    const bool editor = lEditor == kOriginal || lEditor == kModified;
    const filecompare::FileCompareSession::Staged staged =
        editor ? session_.stageForEditor(sFile, sTemp, lEditor == kOriginal) : session_.stageForPane(sFile, sTemp);
    if (!staged.ok)
        return false;
    if (editor) {
        (lEditor == kOriginal ? mruOriginal : mruModified).AddUniqueItemToCollection(sFile);
        std::optional<QString>& held = heldText_[lEditor == kOriginal ? 0 : 1];
        held.reset();
        QString text;
        if (textOnlyLoads_ && !staged.richText && filecompare::FileCompareSession::PlainTextOf(sTemp, text)) {
            held = std::move(text);
            (lEditor == kOriginal ? mbOriginalDirty : mbModifiedDirty) = true;
            return true;
        }
    }
    RichTextBox* box = EditorBox(lEditor);
    clsRTBDocument* doc = EditorDocument(lEditor);
    if (!box || !doc)
        return false;
    if (!staged.richText && pendingLoads_ && editor && pendingLoads_->start(sTemp, lEditor, SideBySideShowing())) {
        // Built on a worker; the editor takes it when both files are staged.
    } else {
        // The box's load replaces its document only when the file could be
        // read, so a failure leaves what the editor held.
        doc->LoadFile(sTemp);
        showInFixedPitch(box, !staged.richText);
    }
    if (lEditor == kOriginal)
        mbOriginalDirty = true;
    else if (lEditor == kModified)
        mbModifiedDirty = true;
    if (editor && ready_ && !keepAutoRefresh_) {
        // Whoever loads by hand takes automatic refresh off.
        OptionsPage()->SetAutoRefresh(false);
    }
    return true;
}

// --- both editors at once ----------------------------------------------------------------

bool frmCompareFiles::LoadModifiedThenOriginal(const QString& sModified, const QString& sOriginal)
{
    PendingEditorLoads pending;
    pendingLoads_ = &pending;
    bool loaded = false;
    try {
        loaded = LoadModifiedFile(sModified) && LoadOriginalFile(sOriginal);
    } catch (...) {
        pendingLoads_ = nullptr;
        throw;
    }
    pendingLoads_ = nullptr;
    // A Modified file that loaded stays loaded when the Original fails, as
    // it would one after the other.
    pending.finish(this);
    return loaded;
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
