#include "conversion/ConverterRoutines.h"

#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"

#include <QGuiApplication>
#include <QInputDialog>

namespace {

void report(const QString& message)
{
    LogMessage(message, gsClLogFile, gbClVerbose);
}

QString dialogPrompt(const QString& title, const QString& prompt)
{
    // Without a real display a modal dialog would wait for ever.
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())
        || QGuiApplication::platformName() == QLatin1String("offscreen"))
        return QString();
    return QInputDialog::getText(nullptr, title, prompt, QLineEdit::Password);
}

PasswordPrompt& currentPrompt()
{
    static PasswordPrompt prompt = dialogPrompt;
    return prompt;
}

const QString kTwoBlanks = QStringLiteral("\n  ");

// A file refused by a size limit says which, so that nobody takes a huge
// or hostile file for a damaged one.
QString withLimitReason(const QString& message, const lexiform::Lexiform& lexiform)
{
    const QString& why = lexiform.lastLimitReason();
    return why.isEmpty() ? message : message + QStringLiteral(": ") + why;
}

} // namespace

PasswordPrompt setPasswordPrompt(PasswordPrompt prompt)
{
    PasswordPrompt previous = currentPrompt();
    currentPrompt() = prompt ? std::move(prompt) : PasswordPrompt(dialogPrompt);
    return previous;
}

std::optional<QString> WordDocMessage(qint32 result, const QString& txtSourceFile)
{
    switch (result) {
    case -2: return QStringLiteral("Source or Target file path is empty");
    case -3: return QStringLiteral("Source file is invalid ") + kTwoBlanks + txtSourceFile;
    case -4: return QStringLiteral("Failed to Convert");
    case -6: return QStringLiteral("Source and Target File are the same.");
    case -100: return QStringLiteral("Failed to Convert.  Check that MS Word is installed");
    default: return std::nullopt;  // 0, -5 and anything else: no word of its own
    }
}

std::optional<QString> PdfDocMessage(qint32 result, const QString& txtSourceFile)
{
    switch (result) {
    case -1: return QStringLiteral("Folioform: File is password protected or invalid ") + kTwoBlanks + txtSourceFile;
    case -2: return QStringLiteral("Folioform: File is invalid or could not open") + kTwoBlanks + txtSourceFile;
    case -3:
        return QStringLiteral("Folioform: File is password protected, or does not allow for text extraction") + kTwoBlanks
               + txtSourceFile;
    case -99: return QStringLiteral("Folioform: Invalid arguments");
    default: return std::nullopt;
    }
}

std::optional<QString> SpreadsheetMessage(qint32 result)
{
    switch (result) {
    case -2: return QStringLiteral("File path is empty");
    case -3: return QStringLiteral("File is invalid");
    case -4: return QStringLiteral("Failed to Convert");
    case -5: return QStringLiteral("Invalid sheet number specified");
    case -6: return QStringLiteral("Original and Modified Files are the same.");
    case -100: return QStringLiteral("Failed to Convert.  Check that MS Excel is installed");
    default: return std::nullopt;
    }
}

std::optional<QString> SpecialProcessingMessage(qint32 result)
{
    switch (result) {
    case -2: return QStringLiteral("SpecialProcessing: Unable to open target file");
    case -3: return QStringLiteral("SpecialProcessing: Unable to open a file for special processing");
    case -4: return QStringLiteral("SpecialProcessing: TargetFile is not valid");
    case -5: return QStringLiteral("SpecialProcessing: Extra Parameter not valid");
    case -10: return QStringLiteral("SpecialProcessing: Unknown Process Identifier");
    default: return std::nullopt;
    }
}

std::optional<QString> LexiformErrorMessage(qint32 result)
{
    switch (result) {
    case 0: return QStringLiteral("Successfully Converted");
    case -2: return QStringLiteral("Source or Target file path is empty");
    case -3: return QStringLiteral("Source file is invalid");
    case -4: return QStringLiteral("Failed to Convert");
    case -5: return QStringLiteral("Invalid sheet number specified");
    case -6: return QStringLiteral("Source and Target File are the same.");
    case -100: return QStringLiteral("Failed to Convert.  MS Word must be installed to perform this operation");
    default: return std::nullopt;
    }
}

bool ConverterWordDoc(ConversionControls& controls, const QString& txtSourceFile, const QString& txtTargetFile,
                      qint32 ConversionType)
{
    const int result = controls.Lexiform1.ConvertDocument(txtSourceFile, txtTargetFile, ConversionType);
    if (result == 0)
        return true;
    if (auto m = WordDocMessage(result, txtSourceFile))
        report(withLimitReason(*m, controls.Lexiform1));
    return false;
}

bool ConverterPDFDoc(ConversionControls& controls, const QString& txtSourceFile, const QString& txtTargetFile,
                     qint32 ConversionType)
{
    QString sPassword;
    bool asked = false;
    for (;;) {
        const int result = controls.Folioform1.ConvertPdfDocument(txtSourceFile, txtTargetFile, sPassword, ConversionType);
        if (result == 0)
            return true;
        if (result == -1 && !asked) {
            // One try at a password; what was typed counts even when empty.
            asked = true;
            sPassword = currentPrompt()(QStringLiteral("Password"),
                                        txtSourceFile + QStringLiteral("\nis password protected.\nPlease enter a valid password"));
            continue;
        }
        if (auto m = PdfDocMessage(result, txtSourceFile))
            report(*m);
        return false;
    }
}

bool ConverterExcelSpreadSheetNumber(ConversionControls& controls, const QString& txtSourceFileExcel,
                                     const QString& SheetNumber, const QString& txtTargetFileExcel,
                                     qint32 ConversionType, bool bDoFormula)
{
    const int result =
        bDoFormula ? controls.Lexiform1.ConvertSpreadsheetFormulas(txtSourceFileExcel, SheetNumber, txtTargetFileExcel, ConversionType)
                   : controls.Lexiform1.ConvertSpreadsheetValues(txtSourceFileExcel, SheetNumber, txtTargetFileExcel, ConversionType);
    if (result == 0)
        return true;
    if (auto m = SpreadsheetMessage(result))
        report(withLimitReason(*m, controls.Lexiform1));
    return false;
}

bool ConverterSpecialProcessing(ConversionControls& controls, qint32 lProcessID, const QString& txtTargetFile,
                                const QString& sExtraParam)
{
    const int result = controls.Lexiform1.SpecialProcessing(lProcessID, txtTargetFile, sExtraParam);
    if (result == 0)
        return true;
    if (auto m = SpecialProcessingMessage(result))
        report(*m);
    return false;
}

void ReportLexiformError(qint32 lResult)
{
    if (auto m = LexiformErrorMessage(lResult))
        report(*m);
}
