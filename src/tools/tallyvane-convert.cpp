// tallyvane-convert: the conversion components on the command line, for
// scripts and measurement. A spreadsheet takes the same road as in the file
// viewer (sheets to comma separated text, trimmed, padded, cropped, joined),
// a PDF goes to text, anything else through the document converter.

#include "components/folioform/Folioform.h"
#include "components/lexiform/Lexiform.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>
#include <cstdio>
#include <cstdlib>

namespace {

const char* const kUsage =
    "usage: tallyvane-convert SOURCE TARGET [--type 0|2|6|8] [--sheets LIST] [--formulas]\n"
    "                         [--rows LIST] [--cols LIST] [--password P]\n"
    "       tallyvane-convert --help | --version\n"
    "\n"
    "  Word processor and web documents (DOCX, ODT, RTF, HTML, DOC, WPD, ...) are\n"
    "  written as --type 0 DOCX, 2 plain text (the default), 6 RTF or 8 HTML.\n"
    "  Workbooks (XLSX, XLS, ODS, CSV, TSV) become comma separated text: --sheets\n"
    "  picks sheets (\"1-2, 12, *\", default 1), --formulas shows formulas instead\n"
    "  of values, --rows and --cols keep only the listed rows and columns.\n"
    "  PDF files become plain text; --password opens a protected one.\n"
    "\n"
    "Exit status: 0 on success, else the converter's result code without its sign\n"
    "(3 invalid source, 5 invalid sheet list, 100 a needed program is missing,\n"
    "...), with a message on standard error; 64 for a wrong command line.\n";

// The result's message, and which limit refused the source when one did.
QString withReason(const QString& message, const lexiform::Lexiform& lx)
{
    return lx.lastLimitReason().isEmpty() ? message : message + QStringLiteral(": ") + lx.lastLimitReason();
}

int fail(int code, const QString& message)
{
    std::fprintf(stderr, "tallyvane-convert: %s\n", message.toLocal8Bit().constData());
    return std::abs(code);
}

QString lexiformText(int code)
{
    switch (code) {
    case -2: return QStringLiteral("Source or Target file path is empty");
    case -3: return QStringLiteral("Source file is invalid");
    case -4: return QStringLiteral("Failed to Convert");
    case -5: return QStringLiteral("Invalid sheet number specified");
    case -6: return QStringLiteral("Source and Target File are the same.");
    case -100: return QStringLiteral("Failed to Convert: the program this file needs is not installed");
    default: return QStringLiteral("Failed to Convert (result %1)").arg(code);
    }
}

QString processText(int code)
{
    switch (code) {
    case -2: return QStringLiteral("SpecialProcessing: Unable to open target file");
    case -3: return QStringLiteral("SpecialProcessing: Unable to open a file for special processing");
    case -4: return QStringLiteral("SpecialProcessing: TargetFile is not valid");
    case -5: return QStringLiteral("SpecialProcessing: Extra Parameter not valid");
    default: return QStringLiteral("SpecialProcessing failed (result %1)").arg(code);
    }
}

QString pdfText(int code)
{
    switch (code) {
    case -1: return QStringLiteral("Folioform: File is password protected or invalid");
    case -2: return QStringLiteral("Folioform: File is invalid or could not open");
    case -3: return QStringLiteral("Folioform: File is password protected, or does not allow for text extraction");
    case -99: return QStringLiteral("Folioform: Invalid arguments");
    default: return QStringLiteral("Folioform failed (result %1)").arg(code);
    }
}

bool isSpreadsheet(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return path.contains(QLatin1String(".XLS"), Qt::CaseInsensitive) || path.contains(QLatin1String(".ODS"), Qt::CaseInsensitive)
           || suffix == QLatin1String("csv") || suffix == QLatin1String("tsv");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    QStringList positional;
    int type = 2;
    QString sheets = QStringLiteral("1"), rows, cols, password;
    bool formulas = false, useRows = false, useCols = false;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString a = args[i];
        auto value = [&](QString& out) {
            if (i + 1 >= args.size())
                return false;
            out = args[++i];
            return true;
        };
        if (a == QLatin1String("--help") || a == QLatin1String("-h")) {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (a == QLatin1String("--version")) {
            std::printf("tallyvane-convert %s\n", TALLYVANE_VERSION);
            return 0;
        } else if (a == QLatin1String("--type")) {
            QString t;
            bool ok = false;
            if (!value(t) || (type = t.toInt(&ok), !ok) || (type != 0 && type != 2 && type != 6 && type != 8))
                return fail(64, QStringLiteral("--type takes 0, 2, 6 or 8"));
        } else if (a == QLatin1String("--sheets")) {
            if (!value(sheets))
                return fail(64, QStringLiteral("--sheets needs a list"));
        } else if (a == QLatin1String("--rows")) {
            if (!value(rows))
                return fail(64, QStringLiteral("--rows needs a list"));
            useRows = true;
        } else if (a == QLatin1String("--cols")) {
            if (!value(cols))
                return fail(64, QStringLiteral("--cols needs a list"));
            useCols = true;
        } else if (a == QLatin1String("--password")) {
            if (!value(password))
                return fail(64, QStringLiteral("--password needs a value"));
        } else if (a == QLatin1String("--formulas")) {
            formulas = true;
        } else if (a.startsWith(QLatin1String("--"))) {
            return fail(64, QStringLiteral("unknown option %1\n%2").arg(a, QString::fromLatin1(kUsage)));
        } else {
            positional << a;
        }
    }
    if (positional.size() != 2)
        return fail(64, QString::fromLatin1(kUsage));
    const QString source = QFileInfo(positional[0]).absoluteFilePath();
    const QString target = QFileInfo(positional[1]).absoluteFilePath();

    if (isSpreadsheet(source)) {
        lexiform::Lexiform lx;
        int rc = formulas ? lx.ConvertSpreadsheetFormulas(source, sheets, target, 6)
                          : lx.ConvertSpreadsheetValues(source, sheets, target, 6);
        if (rc != 0)
            return fail(rc, withReason(lexiformText(rc), lx));
        struct Step {
            bool run;
            int id;
            QString target, extra;
        };
        const bool join = sheets.contains(QLatin1Char('*')) || sheets.contains(QLatin1Char('-')) || sheets.contains(QLatin1Char(','));
        const Step steps[] = {
            {true, lexiform::SP_TRIM_CSV_FILE, {}, {}},
            {true, lexiform::SP_PAD_CSV_FILE_WITH_SPACES, {}, {}},
            {useRows, lexiform::SP_CROP_CSV_TO_ROWS, {}, rows},
            {useCols, lexiform::SP_CROP_CSV_TO_COLUMNS, {}, cols},
            {join, lexiform::SP_CONCATENATE_ALL, target, QStringLiteral("0")},
        };
        for (const Step& s : steps) {
            if (!s.run)
                continue;
            rc = lx.SpecialProcessing(s.id, s.target, s.extra);
            if (rc != 0)
                return fail(rc, processText(rc));
        }
        return 0;
    }
    if (source.contains(QLatin1String(".PDF"), Qt::CaseInsensitive)) {
        folioform::Folioform pdf;
        const int rc = pdf.ConvertPdfDocument(source, target, password, 1);
        return rc == 0 ? 0 : fail(rc, pdfText(rc));
    }
    lexiform::Lexiform lx;
    const int rc = lx.ConvertDocument(source, target, type);
    return rc == 0 ? 0 : fail(rc, withReason(lexiformText(rc), lx));
}
