// The result grids of the find viewer: clearing them, the two dividers, row
// heights, and the hit viewer that shows the lines around a hit.

#include "findtext/frmFindTextInFiles.h"

#include "components/gleanseek/StringToCode.h"
#include "components/gleanseek/TextEncoding.h"
#include "core/Places.h"
#include "findtext/FindHitsModel.h"
#include "forms/modMessageBox.h"

#include <QCheckBox>
#include <QFile>
#include <QFontMetrics>
#include <QHeaderView>
#include <QScrollBar>
#include <QSplitter>
#include <QTableView>
#include <QTableWidget>

#include <cstring>
#include <string>
#include <vector>

namespace {

// Lines strictly within this distance of the hit line are shown: 199 at most.
constexpr qint32 kHitWindow = 100;
// The hit line sits this many rows below the top of the view, so the lines
// just before it are in sight too.
constexpr qint32 kRowsAboveHit = 3;
// Bytes of one line kept for the hit viewer; a longer line (a one-line
// file of hundreds of megabytes) is cut so the grid stays small.
constexpr std::size_t kMaxLineBytes = 16 * 1024;
// Row heights are fitted to their text only up to this many rows: each row
// made taller costs the view time in proportion to all its rows, and 3,800
// rows took a third of a second. Rows beyond keep one line, with long texts
// shortened in the middle and shown whole in their tool tip.
constexpr int kMaxRowsSized = 1000;
// The splitters take sizes as integers; ratios are kept to this precision.
constexpr int kRatioScale = 100000;

QString displayLine(const std::string& bytes)
{
    std::string utf8;
    if (gleanseek::IsValidUtf8(bytes.data(), bytes.size()))
        utf8 = bytes;
    else
        gleanseek::AppendWindows1252AsUtf8(utf8, bytes.data(), bytes.size());
    std::string code;
    gleanseek::StringToCode(utf8, code);
    return QString::fromStdString(code);
}

} // namespace

void frmFindTextInFiles::ClearResultGrids()
{
    hitsModel_->Clear();
    if (dDividerPrimaryRatio != 1.0)
        dDividerPrimaryRatioLast = dDividerPrimaryRatio;
    dDividerPrimaryRatio = 1.0;
    fgErrorMessages->setRowCount(0);
    Change_Font(false);
    mlHitsShown = 0;
}

void frmFindTextInFiles::Form_Resize()
{
    const double upper = dDividerPrimaryRatio;
    splitPrimary_->setSizes({int(upper * kRatioScale), int((1.0 - upper) * kRatioScale)});
    splitSecondary_->setSizes(
        {int(dDividerSecondaryRatio * kRatioScale), int((1.0 - dDividerSecondaryRatio) * kRatioScale)});
}

void frmFindTextInFiles::OnSplitterMoved()
{
    const QList<int> primary = splitPrimary_->sizes();
    const QList<int> secondary = splitSecondary_->sizes();
    const int total = primary.value(0) + primary.value(1);
    const int upper = secondary.value(0) + secondary.value(1);
    if (total > 0 && primary.value(1) > 0)
        dDividerPrimaryRatio = double(primary.value(0)) / total;
    else if (total > 0)
        dDividerPrimaryRatio = 1.0;
    if (upper > 0)
        dDividerSecondaryRatio = double(secondary.value(0)) / upper;
}

void frmFindTextInFiles::SizeRowsOfMSFlexGrid(QTableView* grid, int lCol)
{
    QAbstractItemModel* model = grid->model();
    const int rows = model->rowCount();
    if (rows > kMaxRowsSized)
        return;
    const QFontMetrics fm(grid->font());
    const int colWidth = grid->columnWidth(lCol);
    grid->setUpdatesEnabled(false);
    // The last row is left as it is, as it always has been.
    for (int row = 0; row < rows - 1; ++row) {
        const QString text = model->index(row, lCol).data().toString();
        const int w = fm.horizontalAdvance(text);
        if (w <= colWidth)
            continue;
        int lines = 1;
        if (colWidth > 0) {
            lines = int(std::lround(double(w) / colWidth));
            if (w % colWidth > 0)
                lines += 1;
        }
        grid->setRowHeight(row, (fm.height() + 1) * lines);
    }
    grid->setUpdatesEnabled(true);
}

void frmFindTextInFiles::ShowHit(int hitRow)
{
    if (hitRow < 0)
        return;
    FindHit hit;
    if (!session_->GetHit(hitRow, hit))
        return;
    setWindowTitle(QStringLiteral("FILE: ") + hit.sFile + QStringLiteral(" LINE: ") + QString::number(hit.lLine)
                   + QStringLiteral(" COL: ") + QString::number(hit.lCol) + QStringLiteral(" ITEM: ") + hit.sItem);
    QString file = hit.sFile;
    if (session_->Options().bSupportOfficeDocs) {
        const QString text = demoTempPath();
        if (!text.isEmpty() && session_->ExtractText(file, text))
            file = text;
    }
    WriteFileToMSFlexGrid(fgFileWithHit, file, hit.lLine);
    SizeRowsOfMSFlexGrid(fgFileWithHit, 0);
}

bool frmFindTextInFiles::WriteFileToMSFlexGrid(QTableWidget* grid, const QString& sFile, qint32 lLine)
{
    grid->setRowCount(0);
    mlMarkedRow = -1;
    auto fail = [&] {
        MsgBox(this,
               QStringLiteral("File Name:  ") + sFile + QStringLiteral("  Not Found or can't open!\n\n")
                   + QStringLiteral("It may be a binary file.\n\n")
                   + QStringLiteral("For office docs make sure to check SUPPORT OFFICE DOCS in search options"));
        return false;
    };
    QFile file(sFile);
    if (!file.open(QIODevice::ReadOnly))
        return fail();

    std::vector<QString> shown;
    qint32 noted = kRowsAboveHit;
    qint32 lineNumber = 1;
    std::string current;
    bool cut = false;
    auto endLine = [&] {
        if (lineNumber > lLine - kHitWindow && lineNumber < lLine + kHitWindow) {
            if (!current.empty() && current.back() == '\r' && !cut)
                current.pop_back();
            if (cut)
                current += "...";
            shown.push_back(displayLine(current));
            if (lineNumber == lLine)
                noted = qint32(shown.size()) - 1;
        }
        current.clear();
        cut = false;
        ++lineNumber;
    };
    std::vector<char> buffer(1 << 20);
    bool sawBytes = false;
    while (true) {
        const qint64 got = file.read(buffer.data(), qint64(buffer.size()));
        if (got < 0) {
            // The rows read so far stay, as with any failed read.
            grid->setRowCount(int(shown.size()));
            for (int r = 0; r < int(shown.size()); ++r)
                grid->setItem(r, 0, new QTableWidgetItem(shown[size_t(r)]));
            return fail();
        }
        if (got == 0)
            break;
        sawBytes = true;
        const char* p = buffer.data();
        const char* end = p + got;
        while (p < end) {
            const char* nl = static_cast<const char*>(memchr(p, '\n', size_t(end - p)));
            const char* stop = nl ? nl : end;
            // Only lines inside the window are kept; the rest are skipped
            // without copying.
            if (lineNumber > lLine - kHitWindow && lineNumber < lLine + kHitWindow && !cut) {
                const std::size_t room = kMaxLineBytes - std::min(kMaxLineBytes, current.size());
                const std::size_t take = std::min(room, std::size_t(stop - p));
                current.append(p, take);
                if (take < std::size_t(stop - p))
                    cut = true;
            }
            if (!nl)
                break;
            endLine();
            if (lineNumber >= lLine + kHitWindow)
                break;
            p = nl + 1;
        }
        if (lineNumber >= lLine + kHitWindow)
            break;
    }
    // A last line without a line end is a line too.
    if (sawBytes && (!current.empty() || cut) && lineNumber < lLine + kHitWindow)
        endLine();

    grid->setUpdatesEnabled(false);
    grid->setRowCount(int(shown.size()));
    for (int r = 0; r < int(shown.size()); ++r)
        grid->setItem(r, 0, new QTableWidgetItem(shown[size_t(r)]));
    grid->setUpdatesEnabled(true);
    if (noted >= grid->rowCount())
        return fail();

    mlMarkedRow = noted;
    mlTopRow = noted < kRowsAboveHit ? 0 : noted - kRowsAboveHit;
    QTableWidgetItem* item = grid->item(noted, 0);
    QFont bold = grid->font();
    bold.setBold(true);
    item->setFont(bold);
    item->setBackground(Qt::white);
    item->setForeground(Qt::red);
    // The hit row is current, for the keys, but not selected: a selection's
    // colours would hide the marking.
    grid->setCurrentCell(noted, 0, QItemSelectionModel::NoUpdate);
    grid->clearSelection();
    grid->verticalScrollBar()->setValue(mlTopRow);
    return true;
}

QStringList frmFindTextInFiles::FileWithHitRows() const
{
    QStringList rows;
    for (int r = 0; r < fgFileWithHit->rowCount(); ++r)
        rows << fgFileWithHit->item(r, 0)->text();
    return rows;
}

int frmFindTextInFiles::FileWithHitTopRow() const
{
    return fgFileWithHit->verticalScrollBar()->value();
}
