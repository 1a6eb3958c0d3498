#pragma once
// Find and replace in one of the viewer's editors: a modeless dialog shared
// by all the editors of a viewer, aimed at whichever editor the user last
// clicked. It changes only the editor's text, never a file; saving is the
// user's own step.
//
// The search works on a copy of the editor's text, prepared once (lower case
// unless Match Case is on) and rebuilt when the case switch changes, after a
// replace and whenever the dialog is activated. Lower-casing here maps one
// character to one, so a hit's position in the copy is its position in the
// editor.

#include <QDialog>
#include <QPointer>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class RichTextBox;

class frmCompareFilesFindReplace : public QDialog {
    Q_OBJECT

public:
    explicit frmCompareFilesFindReplace(QWidget* parent = nullptr);

    // The editor searched (OwnerTxtBox).
    void SetTarget(RichTextBox* box);
    RichTextBox* Target() const { return owner_; }

    // Takes up the editor's caret and the remembered fields.
    void Restore();
    // Find again without showing the dialog; shows it when there is nothing
    // to look for (no find text and no selection).
    void NoShow();
    // Find Next: from behind the last hit, wrapping to the top once. False
    // and "Nothing found" when there is no hit.
    bool Command1_Click();
    // Replaces what is selected (at the caret when nothing is), then finds
    // the next hit.
    void Command2_Click();
    // Every hit, in one step that one Undo takes back. The number replaced.
    int cmdReplaceAll_Click();

    QString FindText() const { return sFind; }

    // The 1-based position of find in text from position from (1-based), or
    // 0. A whole-word search skips hits that touch a word character; when it
    // runs off the end it gives Len + 1, which selects nothing at the end.
    static qint32 Search(const QString& text, const QString& find, qint32 from, bool wholeWord);
    // Letters, digits and the underscore; a hyphen or other punctuation is
    // no part of a word.
    static bool IsWordChar(QChar c);

signals:
    // A replace changed the text of the editor.
    void textReplaced(RichTextBox* box);

protected:
    bool event(QEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    QString prepared(const QString& s) const;
    void rebuildText();
    void selectHit(qint32 hit);
    bool confirmEmptying();
    void showStatus(const QString& text);

    QPointer<RichTextBox> owner_;
    QString sFind;
    QString sReplace;
    QString sText;
    qint32 lPosition = 0;
    bool textStale_ = true;

    QLineEdit* Text1 = nullptr;
    QLineEdit* Text2 = nullptr;
    QCheckBox* Check1 = nullptr;
    QCheckBox* Check2 = nullptr;
    QPushButton* Command1 = nullptr;
    QPushButton* Command2 = nullptr;
    QPushButton* cmdReplaceAll = nullptr;
    QPushButton* cmdDone = nullptr;
    QLabel* lblStatus = nullptr;
};
