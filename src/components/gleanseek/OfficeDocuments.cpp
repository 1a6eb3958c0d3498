// The text of office documents for the search, from the program's own
// document readers: word processor files as their plain text (what the file
// comparison shows), workbooks as comma separated rows sheet after sheet,
// PDF files in reading order.

#include "components/folioform/Folioform.h"
#include "components/gleanseek/Gleanseek.h"
#include "components/lexiform/CsvText.h"
#include "components/lexiform/DocumentWriters.h"
#include "components/lexiform/Lexiform.h"
#include "components/lexiform/OdsReader.h"
#include "components/lexiform/XlsReader.h"
#include "components/lexiform/XlsxReader.h"

#include <QString>
#include <mutex>

namespace gleanseek {
namespace {

enum class Kind { None, Word, Workbook, Pdf };

std::string lowerExtension(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return {};
    std::string ext = path.substr(dot + 1);
    for (char& c : ext)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + 32);
    return ext;
}

Kind kindOf(const std::string& path)
{
    const std::string ext = lowerExtension(path);
    for (const char* e : {"doc", "docx", "docm", "dot", "dotx", "dotm", "odt", "ott", "rtf", "wpd", "wps"})
        if (ext == e)
            return Kind::Word;
    for (const char* e : {"xls", "xlsx", "xlsm", "ods"})
        if (ext == e)
            return Kind::Workbook;
    return ext == "pdf" ? Kind::Pdf : Kind::None;
}

class OfficeDocuments final : public DocumentTextSource {
public:
    bool Handles(const std::string& path) const override { return kindOf(path) != Kind::None; }

    bool Extract(const std::string& path, std::string& text, std::string& error) const override
    {
        const QString source = QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
        switch (kindOf(path)) {
        case Kind::Word: return word(source, text, error);
        case Kind::Workbook: return workbook(source, lowerExtension(path), text, error);
        case Kind::Pdf: return pdf(source, text, error);
        case Kind::None: break;
        }
        error = "not a document";
        return false;
    }

private:
    static bool word(const QString& source, std::string& text, std::string& error)
    {
        lexiform::Lexiform reader;
        lexiform::Document doc;
        const int rc = reader.readDocument(source, doc);
        if (rc != lexiform::Ok) {
            error = rc == lexiform::ProgramMissing ? "the program that reads this kind of document is not installed"
                                                   : "not a readable document";
            return false;
        }
        text = lexiform::writePlainText(doc).toStdString();
        return true;
    }

    static bool workbook(const QString& source, const std::string& ext, std::string& text, std::string& error)
    {
        lexiform::SheetRequest request;
        request.sheets.all = true;
        lexiform::WorkbookContent content;
        const int rc = ext == "ods"   ? lexiform::readOds(source, request, content)
                       : ext == "xls" ? lexiform::readXls(source, request, content)
                                      : lexiform::readXlsx(source, request, content);
        if (rc != lexiform::Ok) {
            error = "not a readable workbook";
            return false;
        }
        QString out;
        for (const lexiform::SheetTable& sheet : content.sheets) {
            if (content.sheets.size() > 1)
                out += QStringLiteral("=== Sheet %1: %2 ===\n").arg(sheet.number).arg(sheet.name);
            for (const QStringList& row : sheet.rows)
                out += lexiform::csvLine(row) + QLatin1Char('\n');
        }
        text = out.toStdString();
        return true;
    }

    static bool pdf(const QString& source, std::string& text, std::string& error)
    {
        // The PDF library keeps process-wide state of its own; one document
        // at a time is the safe way to share it between search threads.
        static std::mutex pdfMutex;
        std::lock_guard lock(pdfMutex);
        folioform::Folioform reader;
        QString content;
        switch (reader.extractText(source, QString(), content)) {
        case folioform::Ok: text = content.toStdString(); return true;
        case folioform::PasswordNeeded: error = "the document is protected by a password"; return false;
        case folioform::ExtractionForbidden: error = "the document does not allow copying its text"; return false;
        default: error = "not a readable PDF document"; return false;
        }
    }
};

} // namespace

std::shared_ptr<const DocumentTextSource> DefaultDocumentTextSource()
{
    static const std::shared_ptr<const DocumentTextSource> source = std::make_shared<OfficeDocuments>();
    return source;
}

} // namespace gleanseek
