#pragma once
// The viewer's side of the conversion components: thin routines that call
// Lexiform and Folioform and turn their negative results into the messages
// users see, reported through LogMessage with the log file and verbosity of
// the command line (gsClLogFile, gbClVerbose).

#include "components/folioform/Folioform.h"
#include "components/lexiform/Lexiform.h"

#include <QString>
#include <functional>
#include <optional>

// The two conversion controls of one file viewer. Lexiform remembers the
// files of its last spreadsheet conversion, so each viewer keeps its own.
struct ConversionControls {
    lexiform::Lexiform Lexiform1;
    folioform::Folioform Folioform1;
};

// Asks the user for a password: (title, prompt) -> what was typed; an empty
// text after Cancel.
using PasswordPrompt = std::function<QString(const QString& title, const QString& prompt)>;

// Installs the prompt ConverterPDFDoc uses and returns the previous one; an
// empty function restores the default, an input dialog when a display is
// there and no question at all (an empty answer) on the offscreen platform.
PasswordPrompt setPasswordPrompt(PasswordPrompt prompt);

// ConvertDocument; true when it answered 0.
bool ConverterWordDoc(ConversionControls& controls, const QString& txtSourceFile, const QString& txtTargetFile,
                      qint32 ConversionType);

// ConvertPdfDocument with one chance at a password; true when it answered 0.
bool ConverterPDFDoc(ConversionControls& controls, const QString& txtSourceFile, const QString& txtTargetFile,
                     qint32 ConversionType);

// ConvertSpreadsheetFormulas when bDoFormula, else ConvertSpreadsheetValues;
// true when it answered 0.
bool ConverterExcelSpreadSheetNumber(ConversionControls& controls, const QString& txtSourceFileExcel,
                                     const QString& SheetNumber, const QString& txtTargetFileExcel,
                                     qint32 ConversionType, bool bDoFormula);

// SpecialProcessing; true when it answered 0.
bool ConverterSpecialProcessing(ConversionControls& controls, qint32 lProcessID, const QString& txtTargetFile,
                                const QString& sExtraParam);

// The message of a ConvertDocument result met while saving.
void ReportLexiformError(qint32 lResult);

// The message each routine reports for a result, or none. ConverterPDFDoc's
// -1 message is the one after the password round.
std::optional<QString> WordDocMessage(qint32 result, const QString& txtSourceFile);
std::optional<QString> PdfDocMessage(qint32 result, const QString& txtSourceFile);
std::optional<QString> SpreadsheetMessage(qint32 result);
std::optional<QString> SpecialProcessingMessage(qint32 result);
std::optional<QString> LexiformErrorMessage(qint32 result);
