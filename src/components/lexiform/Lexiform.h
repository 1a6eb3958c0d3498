#pragma once
// The document conversion component: word processor, web and spreadsheet
// files in, rich text, plain text, HTML, DOCX or comma separated text out.
// Every operation answers with a result code (LexiformResult.h) and never
// throws; a source file is only ever read.
//
// The object remembers the comma separated files of its last spreadsheet
// conversion, which SpecialProcessing then works on. Use one object per
// viewer, from one thread.

#include "components/lexiform/LexiformResult.h"
#include "components/lexiform/RichTextModel.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class QTemporaryDir;

namespace lexiform {

class Lexiform {
public:
    Lexiform();
    ~Lexiform();
    Lexiform(const Lexiform&) = delete;
    Lexiform& operator=(const Lexiform&) = delete;

    // Reads txtSourceFile (DOCX, ODT, RTF, HTML, text, legacy word processor
    // files through external programs) and writes txtTargetFile as
    // conversionType says: 0 DOCX, 2 plain text (UTF-8), 6 RTF, 8 HTML.
    int ConvertDocument(const QString& txtSourceFile, const QString& txtTargetFile, int conversionType);

    // The listed sheets of a workbook (XLSX, ODS, XLS, or a CSV/TSV file as
    // its one sheet) as comma separated text. One sheet is written to the
    // target itself; several are kept as pieces until SP_CONCATENATE_ALL.
    int ConvertSpreadsheetValues(const QString& txtSourceFileExcel, const QString& sheetNumber,
                                 const QString& txtTargetFileExcel, int conversionType);
    int ConvertSpreadsheetFormulas(const QString& txtSourceFileExcel, const QString& sheetNumber,
                                   const QString& txtTargetFileExcel, int conversionType);

    // Post-processing of comma separated text; see ProcessId. An empty
    // txtTargetFile means the files of the last spreadsheet conversion.
    int SpecialProcessing(int lProcessID, const QString& txtTargetFile, const QString& sExtraParam);

    // Limits against hostile files, and the time an external program may take.
    void setReadLimits(const ReadLimits& limits)
    {
        limits_ = limits;
        limits_.limitReason = &lastLimitReason_;
    }
    // Why the last source was refused when a limit refused it (its result
    // is SourceInvalid), in words for the user; empty otherwise.
    const QString& lastLimitReason() const { return lastLimitReason_; }
    const ReadLimits& readLimits() const { return limits_; }
    void setExternalTimeoutMs(int ms) { externalTimeoutMs_ = ms; }

    // The files the last spreadsheet conversion left for SpecialProcessing.
    QStringList lastSpreadsheetFiles() const;

    // The document model of any file ConvertDocument reads; Ok or a result code.
    int readDocument(const QString& source, Document& doc);

private:
    struct Piece {
        QString path;
        int sheetNumber = 0;
        QString sheetName;
        // The cells as last written, so that the steps that follow one
        // another need not parse the file again; used only while the file
        // still has the size and time it had when written.
        std::vector<QStringList> cells;
        qint64 writtenSize = -1;
        qint64 writtenTime = 0;
    };
    bool loadPiece(Piece& piece);
    bool storePiece(Piece& piece, std::vector<QStringList>&& cells);

    int convertSpreadsheet(const QString& source, const QString& sheetList, const QString& target, int type, bool formulas);
    int processPieces(int id, const QString& extra);
    int concatenate(const QString& target, const QString& extra);
    QString pieceFolder();

    QString lastLimitReason_;
    ReadLimits limits_{.limitReason = &lastLimitReason_};
    int externalTimeoutMs_ = 60000;
    std::vector<Piece> pieces_;
    std::unique_ptr<QTemporaryDir> pieceDir_;
};

} // namespace lexiform
