// Spreadsheet conversion and the comma separated post-processing steps of
// the Lexiform component.

#include "components/lexiform/Lexiform.h"

#include "components/lexiform/CsvProcessing.h"
#include "components/lexiform/ExternalPrograms.h"
#include "components/lexiform/FileBytes.h"
#include "components/lexiform/OdsReader.h"
#include "components/lexiform/PlainTextReader.h"
#include "components/lexiform/XlsReader.h"
#include "components/lexiform/XlsxReader.h"
#include "components/lexiform/ZipPackage.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace lexiform {

namespace {

enum class SheetKind { Unknown, Xlsx, Ods, Xls, Csv, Tsv };

SheetKind sniffSpreadsheet(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return SheetKind::Unknown;
    const QByteArray head = f.read(8);
    f.close();
    const QString lower = QFileInfo(path).fileName().toLower();
    if (head.startsWith("PK\x03\x04")) {
        ZipPackage zip;
        if (!zip.open(path))
            return SheetKind::Unknown;
        if (zip.contains(QStringLiteral("content.xml")) && !zip.contains(QStringLiteral("xl/workbook.xml"))) {
            QByteArray mime;
            zip.read(QStringLiteral("mimetype"), mime);
            return mime.contains("spreadsheet") || mime.isEmpty() ? SheetKind::Ods : SheetKind::Unknown;
        }
        return SheetKind::Xlsx;  // the reader finds the workbook through the package relationships
    }
    if (head.startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") || head.startsWith("\x09\x08") || head.startsWith("\x09\x04"))
        return SheetKind::Xls;
    if (lower.endsWith(QLatin1String(".tsv")) || lower.endsWith(QLatin1String(".tab")))
        return SheetKind::Tsv;
    if (lower.endsWith(QLatin1String(".csv")) || lower.endsWith(QLatin1String(".txt")))
        return SheetKind::Csv;
    return SheetKind::Unknown;
}

// Formulas of a binary workbook need a program that understands them: the
// office suite turns the file into XLSX, which is then read natively.
int readXlsFormulas(const QString& path, const SheetRequest& request, int timeoutMs, WorkbookContent& out)
{
    QTemporaryDir dir;
    if (!dir.isValid())
        return ConversionFailed;
    QString converted;
    int rc = convertWithOfficeSuite(path, QStringLiteral("xlsx"), dir.path(), timeoutMs, converted);
    if (rc != Ok)
        return rc;
    return readXlsx(converted, request, out);
}

int readDelimited(const QString& path, QChar separator, const SheetRequest& request, WorkbookContent& out)
{
    QByteArray bytes;
    if (!readFileBytes(path, bytes))
        return SourceInvalid;
    out.sheetCount = 1;
    if (!request.sheets.contains(1))
        return Ok;
    SheetTable table;
    table.number = 1;
    table.name = QFileInfo(path).completeBaseName();
    for (CsvRecord& r : parseCsv(decodeText(bytes), separator))
        table.rows.push_back(std::move(r));
    out.sheets.push_back(std::move(table));
    return Ok;
}

bool writeCsv(const QString& path, const std::vector<CsvRecord>& records)
{
    return writeFileBytes(path, csvText(records).toUtf8());
}

bool readCsvFile(const QString& path, std::vector<CsvRecord>& records)
{
    QByteArray bytes;
    if (!readFileBytes(path, bytes))
        return false;
    records = parseCsv(QString::fromUtf8(bytes));
    return true;
}

} // namespace

Lexiform::Lexiform() = default;
Lexiform::~Lexiform() = default;

QStringList Lexiform::lastSpreadsheetFiles() const
{
    QStringList files;
    for (const Piece& p : pieces_)
        files << p.path;
    return files;
}

QString Lexiform::pieceFolder()
{
    if (!pieceDir_ || !pieceDir_->isValid())
        pieceDir_ = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/lexiform-XXXXXX"));
    return pieceDir_->isValid() ? pieceDir_->path() : QString();
}

int Lexiform::ConvertSpreadsheetValues(const QString& source, const QString& sheetNumber, const QString& target, int type)
{
    return convertSpreadsheet(source, sheetNumber, target, type, false);
}

int Lexiform::ConvertSpreadsheetFormulas(const QString& source, const QString& sheetNumber, const QString& target, int type)
{
    return convertSpreadsheet(source, sheetNumber, target, type, true);
}

int Lexiform::convertSpreadsheet(const QString& source, const QString& sheetList, const QString& target, int type,
                                 bool formulas)
{
    pieces_.clear();
    lastLimitReason_.clear();
    if (source.isEmpty() || target.isEmpty())
        return PathEmpty;
    if (sameFile(source, target))
        return SameFile;
    if (type != TypeRichText)
        return ConversionFailed;  // comma separated text is the only form a sheet is written in
    QFileInfo info(source);
    if (!info.isFile() || !info.isReadable())
        return SourceInvalid;
    auto list = parseRangeList(sheetList, true);
    if (!list)
        return InvalidSheet;

    SheetRequest request;
    request.sheets = *list;
    request.formulas = formulas;
    request.limits = limits_;
    WorkbookContent book;
    int rc = SourceInvalid;
    switch (sniffSpreadsheet(source)) {
    case SheetKind::Xlsx: rc = readXlsx(source, request, book); break;
    case SheetKind::Ods: rc = readOds(source, request, book); break;
    case SheetKind::Xls:
        rc = formulas ? readXlsFormulas(source, request, externalTimeoutMs_, book) : readXls(source, request, book);
        break;
    case SheetKind::Csv: rc = readDelimited(source, QLatin1Char(','), request, book); break;
    case SheetKind::Tsv: rc = readDelimited(source, QLatin1Char('\t'), request, book); break;
    case SheetKind::Unknown: rc = SourceInvalid; break;
    }
    if (rc != Ok)
        return rc;
    if (book.sheets.empty())
        return InvalidSheet;

    const QString folder = book.sheets.size() == 1 ? QString() : pieceFolder();
    if (book.sheets.size() > 1 && folder.isEmpty())
        return ConversionFailed;
    for (SheetTable& sheet : book.sheets) {
        Piece piece;
        piece.path = book.sheets.size() == 1 ? target : folder + QStringLiteral("/sheet-%1.csv").arg(sheet.number);
        piece.sheetNumber = sheet.number;
        piece.sheetName = sheet.name;
        if (!storePiece(piece, std::move(sheet.rows))) {
            pieces_.clear();
            return ConversionFailed;
        }
        pieces_.push_back(std::move(piece));
    }
    return Ok;
}

int Lexiform::SpecialProcessing(int id, const QString& target, const QString& extra)
{
    switch (id) {
    case SP_CONCATENATE_ALL:
        return concatenate(target, extra);
    case SP_CROP_CSV_TO_COLUMNS:
    case SP_CROP_CSV_TO_ROWS:
    case SP_PAD_CSV_FILE_WITH_SPACES:
    case SP_TRIM_CSV_FILE:
        if (!target.isEmpty()) {
            // A named file is processed on its own, outside the remembered set.
            std::vector<Piece> saved = std::move(pieces_);
            Piece named;
            named.path = target;
            pieces_.clear();
            pieces_.push_back(std::move(named));
            int rc = processPieces(id, extra);
            pieces_ = std::move(saved);
            return rc;
        }
        return processPieces(id, extra);
    case SP_REMOVE_BLANK_LINES_CSV: {
        if (target.isEmpty())
            return SpTargetInvalid;
        std::vector<CsvRecord> records;
        if (!readCsvFile(target, records))
            return SpCannotOpenFile;
        removeBlankRecords(records);
        return writeCsv(target, records) ? SpOk : SpCannotOpenTarget;
    }
    case SP_REMOVE_BLANK_LINES: {
        if (target.isEmpty())
            return SpTargetInvalid;
        QByteArray bytes;
        if (!readFileBytes(target, bytes))
            return SpCannotOpenFile;
        return writeFileBytes(target, removeBlankLinesFromDocument(bytes)) ? SpOk : SpCannotOpenTarget;
    }
    default:
        return SpUnknownProcess;
    }
}

int Lexiform::processPieces(int id, const QString& extra)
{
    std::optional<RangeList> list;
    if (id == SP_CROP_CSV_TO_COLUMNS || id == SP_CROP_CSV_TO_ROWS) {
        list = parseRangeList(extra, false);
        if (!list)
            return SpExtraParamInvalid;
    }
    if (pieces_.empty())
        return SpCannotOpenFile;
    if (id == SP_PAD_CSV_FILE_WITH_SPACES) {
        // A column is as wide as its widest cell in any of the sheets.
        std::vector<std::vector<CsvRecord>*> sheets;
        for (Piece& piece : pieces_) {
            if (!loadPiece(piece))
                return SpCannotOpenFile;
            sheets.push_back(&piece.cells);
        }
        padCells(sheets);
        for (Piece& piece : pieces_) {
            std::vector<CsvRecord> records = std::move(piece.cells);
            if (!storePiece(piece, std::move(records)))
                return SpCannotOpenTarget;
        }
        return SpOk;
    }
    for (Piece& piece : pieces_) {
        if (!loadPiece(piece))
            return SpCannotOpenFile;
        std::vector<CsvRecord> records = std::move(piece.cells);
        switch (id) {
        case SP_CROP_CSV_TO_COLUMNS: cropColumns(records, *list); break;
        case SP_CROP_CSV_TO_ROWS: cropRows(records, *list); break;
        case SP_TRIM_CSV_FILE: trimCells(records); break;
        default: break;
        }
        if (!storePiece(piece, std::move(records)))
            return SpCannotOpenTarget;
    }
    return SpOk;
}

bool Lexiform::storePiece(Piece& piece, std::vector<QStringList>&& cells)
{
    piece.writtenSize = -1;
    if (!writeCsv(piece.path, cells))
        return false;
    const QFileInfo info(piece.path);
    piece.cells = std::move(cells);
    piece.writtenSize = info.size();
    piece.writtenTime = info.lastModified().toMSecsSinceEpoch();
    return true;
}

bool Lexiform::loadPiece(Piece& piece)
{
    const QFileInfo info(piece.path);
    if (piece.writtenSize >= 0 && info.exists() && info.size() == piece.writtenSize
        && info.lastModified().toMSecsSinceEpoch() == piece.writtenTime)
        return true;
    piece.writtenSize = -1;
    return readCsvFile(piece.path, piece.cells);
}

int Lexiform::concatenate(const QString& target, const QString& extra)
{
    if (target.isEmpty())
        return SpTargetInvalid;
    // "0": a line naming each sheet before its rows; "1": the rows alone.
    const QString mode = extra.trimmed();
    if (!mode.isEmpty() && mode != QLatin1String("0") && mode != QLatin1String("1"))
        return SpExtraParamInvalid;
    if (pieces_.empty())
        return SpCannotOpenFile;
    if (pieces_.size() == 1) {
        // One sheet was already written to its target; joining it with
        // nothing leaves it as it is, elsewhere it is copied.
        if (sameFile(pieces_.front().path, target))
            return SpOk;
        QByteArray bytes;
        if (!readFileBytes(pieces_.front().path, bytes))
            return SpCannotOpenFile;
        return writeFileBytes(target, bytes) ? SpOk : SpCannotOpenTarget;
    }
    QByteArray joined;
    for (const Piece& piece : pieces_) {
        QByteArray bytes;
        if (!readFileBytes(piece.path, bytes))
            return SpCannotOpenFile;
        if (mode != QLatin1String("1"))
            joined += QStringLiteral("=== Sheet %1: %2 ===\n").arg(piece.sheetNumber).arg(piece.sheetName).toUtf8();
        joined += bytes;
        if (!bytes.isEmpty() && !bytes.endsWith('\n'))
            joined += '\n';
    }
    return writeFileBytes(target, joined) ? SpOk : SpCannotOpenTarget;
}

} // namespace lexiform
