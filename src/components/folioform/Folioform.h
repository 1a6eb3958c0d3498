#pragma once
// The PDF component: the text of a PDF file, page by page in reading order,
// written as UTF-8 plain text. Pages are separated by one blank line.

#include <QString>

namespace folioform {

enum Result : int {
    Ok = 0,
    PasswordNeeded = -1,       // a password is needed, or the one given is wrong
    Unopenable = -2,           // not a PDF, damaged, unreadable, or the target cannot be written
    ExtractionForbidden = -3,  // the file forbids copying its text
    BadArguments = -99,
};

class Folioform {
public:
    // conversionType 1 (plain text) is the only form. The password is tried
    // as the user password and as the owner password.
    int ConvertPdfDocument(const QString& txtSourceFile, const QString& txtTargetFile, const QString& sPassword,
                           int conversionType);

    // The text itself, for callers that want no file; same results.
    int extractText(const QString& source, const QString& password, QString& text);
};

} // namespace folioform
