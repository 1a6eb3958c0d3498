#include "components/lexiform/XlsReader.h"

#include "components/lexiform/CsvText.h"
#include "components/lexiform/ExternalPrograms.h"
#include "components/lexiform/NumberFormat.h"

#include <QFile>
#include <QFileInfo>
#include <freexl.h>

namespace lexiform {

namespace {

class FreeXlHandle {
public:
    ~FreeXlHandle()
    {
        if (handle)
            freexl_close(handle);
    }
    const void* handle = nullptr;
};

// FreeXL leaves formula cells empty, their cached results unread. catdoc's
// xls2csv does read them, so its text fills the cells FreeXL could not;
// sheets come separated by form feeds, rows in order.
class FormulaResults {
public:
    FormulaResults(const QString& path, int timeoutMs) : path_(path), timeoutMs_(timeoutMs) {}

    QString cell(int sheet, unsigned int row, unsigned short column)
    {
        if (!loaded_) {
            loaded_ = true;
            QByteArray out;
            if (runTextProgram(QStringLiteral("xls2csv"),
                               {QStringLiteral("-d"), QStringLiteral("utf-8"), QFileInfo(path_).absoluteFilePath()},
                               timeoutMs_, out) == Ok) {
                for (const QString& sheetText : QString::fromUtf8(out).split(QLatin1Char('\f')))
                    sheets_.push_back(parseCsv(sheetText));
            }
        }
        if (sheet < 0 || std::size_t(sheet) >= sheets_.size() || row >= sheets_[std::size_t(sheet)].size())
            return QString();
        const CsvRecord& r = sheets_[std::size_t(sheet)][row];
        return column < r.size() ? r[column] : QString();
    }

private:
    QString path_;
    int timeoutMs_;
    bool loaded_ = false;
    std::vector<std::vector<CsvRecord>> sheets_;
};

} // namespace

int readXls(const QString& path, const SheetRequest& request, WorkbookContent& out)
{
    out = {};
    FreeXlHandle xl;
    if (freexl_open(QFile::encodeName(path).constData(), &xl.handle) != FREEXL_OK || !xl.handle)
        return SourceInvalid;
    unsigned int count = 0;
    if (freexl_get_info(xl.handle, FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK)
        return SourceInvalid;
    out.sheetCount = int(count);
    FormulaResults formulas(path, 60000);
    for (long long number : request.sheets.select(count)) {
        const unsigned short index = static_cast<unsigned short>(number - 1);
        SheetTable table;
        table.number = int(number);
        const char* name = nullptr;
        if (freexl_get_worksheet_name(xl.handle, index, &name) == FREEXL_OK && name)
            table.name = QString::fromUtf8(name);
        if (freexl_select_active_worksheet(xl.handle, index) != FREEXL_OK)
            return SourceInvalid;
        unsigned int rows = 0;
        unsigned short columns = 0;
        if (freexl_worksheet_dimensions(xl.handle, &rows, &columns) != FREEXL_OK)
            return SourceInvalid;
        SheetBuilder builder(request.limits.maxCells, request.limits.limitReason);
        for (unsigned int r = 0; r < rows; ++r) {
            for (unsigned short c = 0; c < columns; ++c) {
                FreeXL_CellValue cell;
                if (freexl_get_cell_value(xl.handle, r, c, &cell) != FREEXL_OK)
                    continue;
                QString text;
                switch (cell.type) {
                case FREEXL_CELL_INT:
                    text = QString::number(cell.value.int_value);
                    break;
                case FREEXL_CELL_DOUBLE:
                    text = formatGeneral(cell.value.double_value);
                    break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                case FREEXL_CELL_DATE:
                case FREEXL_CELL_DATETIME:
                case FREEXL_CELL_TIME:
                    text = QString::fromUtf8(cell.value.text_value);
                    break;
                default:
                    text = formulas.cell(index, r, c);
                    break;
                }
                if (!builder.set(r, c, text))
                    return SourceInvalid;
            }
        }
        table.rows = builder.take();
        if (builder.overLimit())
            return SourceInvalid;
        out.sheets.push_back(std::move(table));
    }
    return Ok;
}

} // namespace lexiform
