#pragma once
// The command line: switches into the globals of modGlobal.h, validation of
// the two paths, and LogMessage, the one way batch messages leave the program.
//
// A switch is an argument "-L" (one letter, digit or "?", any case; "/L" of
// exactly two characters works too). A switch that takes a value uses what is
// attached to it ("-R2", "-M/home/a.txt") or else the next argument whole.
// Flags ignore anything attached. Unknown letters are ignored without a word.
// Other arguments are positional: two of them name the Original and the
// Modified file when -M and -S are not both given. "--" ends the switches.

#include <QString>
#include <QStringList>

#include <functional>

// Resets the switch globals, reads args (without the program name), applies
// the positional form, then validates both paths, Source before Master,
// reporting each bad one through LogMessage. True when both paths are usable.
// An empty list gives false and no message: that is an interactive start.
bool ParseCommandLine(const QStringList& args);

// Writes message as the only line of logFile (when not empty, emptying it
// first) and, when verbose, presents it (see setMessagePresenter). A log file
// that cannot be written is passed over.
void LogMessage(const QString& message, const QString& logFile, bool verbose);

// How a verbose message reaches the user. The default writes it to stderr;
// the windowed program installs one that shows a message box when a display
// exists. Returns the previous presenter; an empty function restores the
// default.
using MessagePresenter = std::function<void(const QString& message)>;
MessagePresenter setMessagePresenter(MessagePresenter presenter);

// --help and --version are answered before anything else starts.
enum class InfoRequest { None, Help, Version };
InfoRequest HelpOrVersionRequested(const QStringList& args);
QString UsageText();
QString VersionText();
