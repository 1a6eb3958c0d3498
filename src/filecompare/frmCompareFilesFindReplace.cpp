#include "filecompare/frmCompareFilesFindReplace.h"

#include "document/RichTextBox.h"
#include "forms/modMessageBox.h"

#include <QAction>
#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>

#include <vector>

frmCompareFilesFindReplace::frmCompareFilesFindReplace(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    setObjectName(QStringLiteral("frmCompareFilesFindReplace"));
    setWindowTitle(QStringLiteral("  Find and/or Replace"));
    setModal(false);

    auto* findLabel = new QLabel(QStringLiteral("Find:"), this);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    findLabel->setBuddy(Text1);
    auto* replaceLabel = new QLabel(QStringLiteral("Replace with:"), this);
    Text2 = new QLineEdit(this);
    Text2->setObjectName(QStringLiteral("Text2"));
    replaceLabel->setBuddy(Text2);
    Check1 = new QCheckBox(QStringLiteral("Whole Word &Only"), this);
    Check1->setObjectName(QStringLiteral("Check1"));
    Check2 = new QCheckBox(QStringLiteral("Match &Case"), this);
    Check2->setObjectName(QStringLiteral("Check2"));
    Command1 = new QPushButton(QStringLiteral("&Find Next"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setDefault(true);
    Command1->setToolTip(QStringLiteral("Find the next place (F3 in the viewer)"));
    Command2 = new QPushButton(QStringLiteral("Find And &Replace"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command2->setToolTip(QStringLiteral("Replace what is selected in the editor, then find the next place"));
    cmdReplaceAll = new QPushButton(QStringLiteral("Replace &All"), this);
    cmdReplaceAll->setObjectName(QStringLiteral("cmdReplaceAll"));
    cmdReplaceAll->setToolTip(QStringLiteral("Replace every place in the editor; one Undo takes it back"));
    cmdDone = new QPushButton(QStringLiteral("&Done"), this);
    cmdDone->setObjectName(QStringLiteral("cmdDone"));
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 12, 14, 12);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    grid->addWidget(findLabel, 0, 0);
    grid->addWidget(Text1, 0, 1);
    grid->addWidget(Command1, 0, 2);
    grid->addWidget(replaceLabel, 1, 0);
    grid->addWidget(Text2, 1, 1);
    grid->addWidget(Command2, 1, 2);
    auto* checks = new QHBoxLayout;
    checks->addWidget(Check1);
    checks->addSpacing(12);
    checks->addWidget(Check2);
    checks->addStretch(1);
    grid->addLayout(checks, 2, 1);
    grid->addWidget(cmdReplaceAll, 2, 2);
    grid->addWidget(lblStatus, 3, 1);
    grid->addWidget(cmdDone, 3, 2);
    grid->setColumnStretch(1, 1);
    Text1->setMinimumWidth(260);

    connect(Text1, &QLineEdit::textChanged, this, [this](const QString& t) { sFind = prepared(t); });
    connect(Text2, &QLineEdit::textChanged, this, [this](const QString& t) { sReplace = t; });
    connect(Check2, &QCheckBox::toggled, this, [this] {
        rebuildText();
        sFind = prepared(Text1->text());
    });
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(Command2, &QPushButton::clicked, this, &frmCompareFilesFindReplace::Command2_Click);
    connect(cmdReplaceAll, &QPushButton::clicked, this, [this] { cmdReplaceAll_Click(); });
    connect(cmdDone, &QPushButton::clicked, this, &QDialog::close);
    // F3 goes on finding while the dialog has the focus, as it does in the viewer.
    auto* again = new QAction(this);
    again->setShortcut(Qt::Key_F3);
    connect(again, &QAction::triggered, this, [this] { Command1_Click(); });
    addAction(again);
    Text1->installEventFilter(this);
    Text2->installEventFilter(this);
}

void frmCompareFilesFindReplace::SetTarget(RichTextBox* box)
{
    if (box == owner_)
        return;
    // Copied when a search needs it: a click into a large editor should not
    // cost a copy of its text.
    owner_ = box;
    sText.clear();
    textStale_ = true;
}

// --- searching ---------------------------------------------------------------------------

bool frmCompareFilesFindReplace::IsWordChar(QChar c)
{
    const ushort u = c.unicode();
    if (u < 128) {
        // Setting bit 32 folds upper case onto lower case, and the underscore
        // (95) onto 127, so it counts as part of a name.
        const ushort f = u | 32;
        return (f >= 'a' && f <= 'z') || (f >= '0' && f <= '9') || f == 127;
    }
    return c.isLetterOrNumber();
}

qint32 frmCompareFilesFindReplace::Search(const QString& text, const QString& find, qint32 from, bool wholeWord)
{
    const qint32 len = qint32(text.size());
    if (from > len)
        from = 1;
    if (from < 1)
        return from;
    qint32 start = from;
    for (;;) {
        const qint32 hit = qint32(text.indexOf(find, start - 1)) + 1;
        if (!wholeWord || hit == 0)
            return hit;
        const qint32 behind = hit + qint32(find.size());
        const bool wordBefore = hit - 1 >= 1 && IsWordChar(text.at(hit - 2));
        const bool wordAfter = behind <= len && IsWordChar(text.at(behind - 1));
        if (!wordBefore && !wordAfter)
            return hit;
        start = hit + 1;
        if (start > len)
            return start;
    }
}

QString frmCompareFilesFindReplace::prepared(const QString& s) const
{
    if (Check2->isChecked())
        return s;
    // One character for one, unlike QString::toLower, which may lengthen a
    // few letters and so shift every position behind them.
    QString r = s;
    for (QChar& c : r)
        c = c.toLower();
    return r;
}

void frmCompareFilesFindReplace::rebuildText()
{
    sText = owner_ ? prepared(owner_->Text()) : QString();
    textStale_ = false;
}

void frmCompareFilesFindReplace::selectHit(qint32 hit)
{
    owner_->setSelection(hit - 1, hit - 1 + qint32(sFind.size()));
    if (QTextEdit* view = owner_->view())
        view->ensureCursorVisible();
}

void frmCompareFilesFindReplace::Restore()
{
    if (owner_) {
        // A selection is taken as the last hit, so the search goes on behind
        // its start; a bare caret is where the search begins.
        lPosition = owner_->SelLength() > 0 ? owner_->SelStart() + 1 : owner_->SelStart();
    }
    sFind = prepared(Text1->text());
    sReplace = Text2->text();
    rebuildText();
    Text1->setFocus();
}

void frmCompareFilesFindReplace::NoShow()
{
    if (!owner_)
        return;
    if (sFind.isEmpty()) {
        const QString selected = owner_->SelText();
        if (selected.isEmpty() || selected.contains(QLatin1Char('\n'))) {
            show();
            raise();
            activateWindow();
            return;
        }
        // Find again with nothing to look for looks for what is selected.
        Text1->setText(selected);
    }
    Restore();
    Command1_Click();
}

bool frmCompareFilesFindReplace::Command1_Click()
{
    showStatus(QString());
    if (!owner_)
        return false;
    if (textStale_)
        rebuildText();
    const bool whole = Check1->isChecked();
    qint32 hit = Search(sText, sFind, lPosition + 1, whole);
    if (hit == 0) {
        hit = Search(sText, sFind, 1, whole);
        if (hit != 0)
            showStatus(QStringLiteral("Went on from the top."));
    }
    if (hit == 0) {
        MsgBox(this, QStringLiteral("Nothing found"), MsgButtons::OK, MsgIcon::Information,
               windowTitle().trimmed());
        return false;
    }
    lPosition = hit;
    selectHit(hit);
    return true;
}

// --- replacing ---------------------------------------------------------------------------

bool frmCompareFilesFindReplace::confirmEmptying()
{
    return MsgBox(this,
                  QStringLiteral("This replace leaves the editor empty. Replace anyway?\n\n"
                                 "The file on disk is not changed, and Undo (Ctrl+Z) in the editor brings the "
                                 "text back."),
                  MsgButtons::YesNo, MsgIcon::Question, windowTitle().trimmed())
           == MsgAnswer::Yes;
}

void frmCompareFilesFindReplace::Command2_Click()
{
    showStatus(QString());
    if (!owner_)
        return;
    const int length = owner_->TextLength();
    if (length > 0 && sReplace.isEmpty() && owner_->SelLength() == length && !confirmEmptying())
        return;
    owner_->setSelText(sReplace);
    // Go on behind what was put in, so a replacement that holds the search
    // text is not found again.
    lPosition = owner_->SelStart();
    rebuildText();
    emit textReplaced(owner_);
    Command1_Click();
}

int frmCompareFilesFindReplace::cmdReplaceAll_Click()
{
    showStatus(QString());
    if (!owner_)
        return 0;
    rebuildText();
    const qint32 len = qint32(sText.size());
    const qint32 n = qint32(sFind.size());
    std::vector<qint32> hits;
    if (n > 0) {
        for (qint32 from = 1; from <= len;) {
            const qint32 hit = Search(sText, sFind, from, Check1->isChecked());
            if (hit == 0 || hit > len || hit < from)
                break;
            hits.push_back(hit);
            from = hit + n;
        }
    }
    if (hits.empty()) {
        MsgBox(this, QStringLiteral("Nothing found"), MsgButtons::OK, MsgIcon::Information,
               windowTitle().trimmed());
        return 0;
    }
    const qint64 after = qint64(len) + qint64(hits.size()) * (qint64(sReplace.size()) - n);
    if (after == 0 && !confirmEmptying())
        return 0;
    {
        // One block for the document's undo history: one Undo takes all back.
        QTextCursor block(owner_->document());
        block.beginEditBlock();
        // From the last hit to the first, so the positions ahead stay valid.
        for (auto it = hits.rbegin(); it != hits.rend(); ++it) {
            owner_->setSelection(*it - 1, *it - 1 + n);
            owner_->setSelText(sReplace);
        }
        block.endEditBlock();
    }
    lPosition = 0;
    rebuildText();
    emit textReplaced(owner_);
    const int count = int(hits.size());
    showStatus(count == 1 ? QStringLiteral("Replaced 1 place.") : QStringLiteral("Replaced %1 places.").arg(count));
    return count;
}

void frmCompareFilesFindReplace::showStatus(const QString& text)
{
    lblStatus->setText(text);
}

// --- events ------------------------------------------------------------------------------

bool frmCompareFilesFindReplace::event(QEvent* e)
{
    if (e->type() == QEvent::WindowActivate || e->type() == QEvent::Show)
        Restore();
    return QDialog::event(e);
}

bool frmCompareFilesFindReplace::eventFilter(QObject* watched, QEvent* e)
{
    if (e->type() == QEvent::FocusIn) {
        // Later than the click that gave the focus, which would place the
        // caret and drop the selection again.
        if (auto* edit = qobject_cast<QLineEdit*>(watched))
            QTimer::singleShot(0, edit, &QLineEdit::selectAll);
    }
    return QDialog::eventFilter(watched, e);
}
