#include "components/lexiform/XlsReader.h"

#include "components/lexiform/ChildProcess.h"
#include "components/lexiform/CsvText.h"
#include "components/lexiform/ExternalPrograms.h"
#include "components/lexiform/NumberFormat.h"
#include "components/lexiform/XlsFrames.h"

#include <QFile>
#include <QFileInfo>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <unistd.h>

#ifndef TALLYVANE_XLS_READER_FROM_BIN
#define TALLYVANE_XLS_READER_FROM_BIN "../libexec/tallyvane/tallyvane-xls-reader"
#endif

namespace lexiform {

namespace {

namespace frames = xlsframes;

// A reader that has neither finished nor died by then is stuck (waiting on
// something, since its CPU time is limited too); the largest workbooks take
// seconds.
constexpr int readerTimeoutMs = 120'000;
// The output allowed for a file of N bytes: 64 MiB plus 64 N. A cell record
// takes at least ten bytes of the file and its frame seven plus its text, so
// only strings shared by many cells come near it.
constexpr long long outputAllowanceBytes = 64LL << 20;
constexpr long long outputRatio = 64;

void setReason(const SheetRequest& request, const QString& reason)
{
    if (request.limits.limitReason)
        *request.limits.limitReason = reason;
}

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

class Cursor {
public:
    explicit Cursor(std::string_view data) : data_(data) {}
    bool atEnd() const { return pos_ == data_.size(); }
    template <typename T> bool get(T& v)
    {
        if (data_.size() - pos_ < sizeof v)
            return false;
        std::memcpy(&v, data_.data() + pos_, sizeof v);
        pos_ += sizeof v;
        return true;
    }
    bool text(QString& s)
    {
        std::uint32_t n = 0;
        if (!get(n) || data_.size() - pos_ < n)
            return false;
        s = QString::fromUtf8(data_.data() + pos_, qsizetype(n));
        pos_ += n;
        return true;
    }

private:
    std::string_view data_;
    std::size_t pos_ = 0;
};

// The sheets the reader is to send, as it reads them: "*" or "1-3,5".
std::string sheetArgument(const RangeList& sheets)
{
    if (sheets.all)
        return "*";
    std::string arg;
    for (const NumberRange& r : sheets.ranges) {
        if (r.last < 1)
            continue;
        if (!arg.empty())
            arg += ',';
        arg += std::to_string(std::max(1LL, r.first)) + '-' + std::to_string(r.last);
    }
    return arg.empty() ? "0-0" : arg;
}

// Runs the reader on `path`; Ok with its whole output, else SourceInvalid
// (with the reason when it is more than "FreeXL refused the file").
int runReader(const QString& reader, const QString& path, const SheetRequest& request, std::string& output)
{
    const long long allowed = outputAllowanceBytes + outputRatio * std::max<qint64>(0, QFileInfo(path).size());
    const QStringList arguments = {QFileInfo(path).absoluteFilePath(),
                                   QString::fromStdString(sheetArgument(request.sheets))};
    ChildRun run = runChild(reader, arguments, readerTimeoutMs, allowed);
    if (run.succeeded()) {
        output = std::move(run.output);
        return Ok;
    }
    // Exit status 1 is FreeXL refusing the file: invalid, as any reader says.
    if (run.end == ChildRun::Exited && run.code != frames::ExitInvalid)
        setReason(request, QStringLiteral("the .xls reader failed with exit status %1").arg(run.code));
    else if (run.end != ChildRun::Exited)
        setReason(request, run.failure(QStringLiteral("the .xls reader")));
    return SourceInvalid;
}

} // namespace

QString xlsReaderPath()
{
    const QString given = qEnvironmentVariable("TALLYVANE_XLS_READER");
    if (!given.isEmpty())
        return given;
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec)
        return QString();
    const std::filesystem::path dir = self.parent_path();
    for (const std::filesystem::path& candidate :
         {dir / frames::ReaderName, dir.parent_path() / frames::ReaderName, dir / TALLYVANE_XLS_READER_FROM_BIN}) {
        if (std::filesystem::is_regular_file(candidate, ec) && ::access(candidate.c_str(), X_OK) == 0)
            return QFile::decodeName(candidate.lexically_normal().c_str());
    }
    return QString();
}

int decodeXlsFrames(std::string_view data, const SheetRequest& request, const XlsNoValue& noValue,
                    WorkbookContent& out)
{
    out = {};
    const auto malformed = [&] {
        setReason(request, QStringLiteral("the .xls reader's output is not a whole workbook"));
        return SourceInvalid;
    };
    Cursor in(data);
    char tag = 0;
    std::uint32_t count = 0;
    if (!in.get(tag) || tag != frames::Book || !in.get(count) || count > 65535)
        return malformed();
    out.sheetCount = int(count);
    const std::vector<long long> wanted = request.sheets.select(count);
    std::size_t next = 0;
    std::optional<SheetBuilder> builder;
    SheetTable table;
    const auto closeSheet = [&] {
        if (!builder)
            return true;
        table.rows = builder->take();
        if (builder->overLimit())
            return false;
        out.sheets.push_back(std::move(table));
        table = {};
        builder.reset();
        return true;
    };
    for (;;) {
        if (!in.get(tag))
            return malformed();
        if (tag == frames::End) {
            if (!in.atEnd() || next != wanted.size())
                return malformed();
            return closeSheet() ? Ok : SourceInvalid;
        }
        if (tag == frames::Sheet) {
            std::uint32_t number = 0;
            if (!closeSheet())
                return SourceInvalid;
            if (!in.get(number) || next >= wanted.size() || number != wanted[next] || !in.text(table.name))
                return malformed();
            ++next;
            table.number = int(number);
            builder.emplace(request.limits.maxCells, request.limits.limitReason);
            continue;
        }
        std::uint32_t row = 0;
        std::uint16_t column = 0;
        if (!builder || !in.get(row) || !in.get(column))
            return malformed();
        QString text;
        if (tag == frames::Text) {
            if (!in.text(text))
                return malformed();
        } else if (tag == frames::Integer) {
            std::int64_t v = 0;
            if (!in.get(v))
                return malformed();
            text = QString::number(v);
        } else if (tag == frames::Double) {
            double v = 0;
            if (!in.get(v))
                return malformed();
            text = formatGeneral(v);
        } else if (tag == frames::NoValue) {
            if (noValue)
                text = noValue(table.number - 1, row, column);
        } else {
            return malformed();
        }
        if (!builder->set(row, column, text))
            return SourceInvalid;
    }
}

int readXls(const QString& path, const SheetRequest& request, WorkbookContent& out)
{
    out = {};
    const QString reader = xlsReaderPath();
    if (reader.isEmpty()) {
        setReason(request,
                  QStringLiteral("%1, which reads .xls files, is not installed").arg(QLatin1String(frames::ReaderName)));
        return SourceInvalid;
    }
    std::string output;
    const int rc = runReader(reader, path, request, output);
    if (rc != Ok)
        return rc;
    FormulaResults formulas(path, 60000);
    return decodeXlsFrames(output, request,
                           [&](int sheet, unsigned int row, unsigned short column) {
                               return formulas.cell(sheet, row, column);
                           },
                           out);
}

} // namespace lexiform
