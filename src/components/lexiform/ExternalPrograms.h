#pragma once
// Conversions that lean on programs outside the component: legacy Word
// (antiword, catdoc), WordPerfect, Works and old Mac Word (libwpd, libwps,
// libmwaw tools), and, last of all, an office suite if one is installed.
// Programs run with an argument list (never through a shell), with a time
// limit, and their absence is reported as ProgramMissing.

#include "components/lexiform/LexiformResult.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace lexiform {

// Full path of a program on PATH, or empty.
QString findProgram(const QString& name);

// Runs a program that writes text on its standard output. Ok with the
// output when it ends with status 0 inside the time limit and printed
// something; ProgramMissing when it is not installed; SourceInvalid
// otherwise.
int runTextProgram(const QString& name, const QStringList& arguments, int timeoutMs, QByteArray& output);

// Has the office suite write `source` as `format` ("odt", "xlsx", "txt")
// into `outFolder`; `produced` is the file it wrote.
int convertWithOfficeSuite(const QString& source, const QString& format, const QString& outFolder, int timeoutMs,
                           QString& produced);

// Plain text of a legacy word processor file through the programs that read
// its kind, each tried in turn: `.doc` antiword then catdoc, `.wpd`
// wpd2text, `.wps` wps2text, `.mcw` mwaw2text. ProgramMissing only when none
// of them is installed.
int legacyDocumentText(const QString& source, const QString& kind, int timeoutMs, QString& text);

} // namespace lexiform
