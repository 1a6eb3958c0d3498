#include "core/modParseCommandLine.h"

#include "core/Launcher.h"
#include "core/modGlobal.h"
#include "core/modUtilityFile.h"
#include "core/modUtilityString.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace {

enum class Kind { Path, QuotelessPath, Number, Text, Flag, Manual };

struct Switch {
    char key;
    Kind kind;
    QString* text = nullptr;
    qint32* number = nullptr;
    bool* flag = nullptr;
};

// Tested in this order, the first match wins.
const Switch kSwitches[] = {
    {'M', Kind::QuotelessPath, &gsClMaster},
    {'S', Kind::QuotelessPath, &gsClSource},
    {'C', Kind::Flag, nullptr, nullptr, &gbClSubFolders},
    {'D', Kind::Flag, nullptr, nullptr, &gbClCompareFolders},
    {'T', Kind::Path, &gsClReportFile},
    {'R', Kind::Number, nullptr, &glClReportType},
    {'F', Kind::Number, nullptr, &glClReportStyle},
    {'I', Kind::Flag, nullptr, nullptr, &gbClIgnoreCase},
    {'W', Kind::Flag, nullptr, nullptr, &gbClIgnoreWhitespace},
    {'Q', Kind::Flag, nullptr, nullptr, &gbClQuickCompare},
    {'B', Kind::Flag, nullptr, nullptr, &gbClBeepWhenDone},
    {'X', Kind::Flag, nullptr, nullptr, &gbClExitWhenDone},
    {'O', Kind::Flag, nullptr, nullptr, &gbClOpenReport},
    {'E', Kind::Flag, nullptr, nullptr, &gbClRemoveBlankLines},
    {'A', Kind::Flag, nullptr, nullptr, &gbClExcelCompareFormulas},
    {'H', Kind::Flag, nullptr, nullptr, &gbClHTMLCompareSource},
    {'Y', Kind::Text, &gsClExcelSheetMaster},
    {'Z', Kind::Text, &gsClExcelSheetSource},
    {'1', Kind::Text, &gsClExcelRowsMaster},
    {'2', Kind::Text, &gsClExcelColsMaster},
    {'3', Kind::Text, &gsClExcelRowsSource},
    {'4', Kind::Text, &gsClExcelColsSource},
    {'G', Kind::Flag, nullptr, nullptr, &gbClUseExitStatus},
    {'L', Kind::Path, &gsClLogFile},
    {'V', Kind::Flag, nullptr, nullptr, &gbClVerbose},
    {'?', Kind::Manual},
};

const Switch* findSwitch(QChar key)
{
    for (const Switch& s : kSwitches)
        if (key == QLatin1Char(s.key))
            return &s;
    return nullptr;
}

bool isSwitch(const QString& arg)
{
    if (arg.size() >= 2 && arg[0] == QLatin1Char('-'))
        return true;
    // "/x" of two characters only: anything longer is a path.
    return arg.size() == 2 && arg[0] == QLatin1Char('/');
}

QString withoutQuotes(QString s)
{
    return s.remove(QLatin1Char('"'));
}

// A path not starting with "/" (quotes aside) is taken from the current
// folder; an empty one becomes the current folder itself, with its "/".
QString resolvePath(const QString& value)
{
    if (withoutQuotes(value).startsWith(QLatin1Char('/')))
        return value;
    QString base = QDir::currentPath();
    if (!base.endsWith(QLatin1Char('/')))
        base += QLatin1Char('/');
    return base + value;
}

void apply(const Switch& s, const QString& value)
{
    switch (s.kind) {
    case Kind::Path:
        *s.text = resolvePath(value);
        break;
    case Kind::QuotelessPath:
        *s.text = withoutQuotes(resolvePath(value));
        break;
    case Kind::Number: {
        // Text that is no number leaves the previous value, without a word.
        qint32 n = 0;
        if (TextToLong(value, n))
            *s.number = n;
        break;
    }
    case Kind::Text:
        *s.text = value;
        break;
    case Kind::Flag:
        *s.flag = true;
        break;
    case Kind::Manual:
        launcher().OpenManual(QString::fromLatin1(kManualTopicCommandLine));
        break;
    }
}

void presentOnStderr(const QString& message)
{
    std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
    std::fflush(stderr);
}

MessagePresenter& presenter()
{
    static MessagePresenter p = presentOnStderr;
    return p;
}

} // namespace

bool ParseCommandLine(const QStringList& args)
{
    ResetCommandLineGlobals();

    QStringList positional;
    bool switchesEnded = false;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (switchesEnded || !isSwitch(arg)) {
            positional << arg;
            continue;
        }
        if (arg == QLatin1String("--")) {
            switchesEnded = true;
            continue;
        }
        const Switch* s = findSwitch(arg[1].toUpper());
        if (!s)
            continue;
        QString value;
        const bool takesValue = s->kind == Kind::Path || s->kind == Kind::QuotelessPath
            || s->kind == Kind::Number || s->kind == Kind::Text;
        if (takesValue) {
            const QString attached = arg.mid(2);
            if (!attached.isEmpty())
                value = TrimBlanks(attached);
            else if (i + 1 < args.size())
                value = args[++i];
        }
        apply(*s, value);
    }

    bool usable = false;
    if (!TrimBlanks(gsClMaster).isEmpty() && !TrimBlanks(gsClSource).isEmpty()) {
        usable = true;
    } else if (positional.size() == 2) {
        gsClMaster = withoutQuotes(resolvePath(withoutQuotes(positional[0])));
        gsClSource = withoutQuotes(resolvePath(withoutQuotes(positional[1])));
        usable = !TrimBlanks(gsClMaster).isEmpty() && !TrimBlanks(gsClSource).isEmpty();
        // Two folders are a folder comparison, as `git difftool --dir-diff`
        // hands them over.
        if (usable && FolderExistsOnDisk(gsClMaster) && FolderExistsOnDisk(gsClSource))
            gbClCompareFolders = true;
    }

    // Both paths are always tested, Source first, so one parse can report two
    // problems; -V and -L given anywhere on the line already apply here.
    if (gbClCompareFolders) {
        gsClSource = withoutQuotes(gsClSource);
        if (!FolderExistsOnDisk(gsClSource)) {
            LogMessage(QStringLiteral("Invalid Source folder specified"), gsClLogFile, gbClVerbose);
            usable = false;
        }
        gsClMaster = withoutQuotes(gsClMaster);
        if (!FolderExistsOnDisk(gsClMaster)) {
            LogMessage(QStringLiteral("Invalid Master folder specified"), gsClLogFile, gbClVerbose);
            usable = false;
        }
    } else {
        if (!FileExistsOnDisk(gsClSource)) {
            LogMessage(QStringLiteral("Invalid Source file specified"), gsClLogFile, gbClVerbose);
            usable = false;
        }
        if (!FileExistsOnDisk(gsClMaster)) {
            LogMessage(QStringLiteral("Invalid Master file specified"), gsClLogFile, gbClVerbose);
            usable = false;
        }
    }
    return usable;
}

void LogMessage(const QString& message, const QString& logFile, bool verbose)
{
    if (!logFile.isEmpty()) {
        QFile log(logFile);
        if (log.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            log.write(message.toUtf8());
            log.write("\n");
        }
    }
    if (verbose) {
        const MessagePresenter& p = presenter();
        p(message);
    }
}

MessagePresenter setMessagePresenter(MessagePresenter p)
{
    MessagePresenter previous = presenter();
    presenter() = p ? std::move(p) : MessagePresenter(presentOnStderr);
    return previous;
}

InfoRequest HelpOrVersionRequested(const QStringList& args)
{
    for (const QString& arg : args) {
        if (arg == QLatin1String("--"))
            break;
        if (arg == QLatin1String("--help"))
            return InfoRequest::Help;
        if (arg == QLatin1String("--version"))
            return InfoRequest::Version;
    }
    return InfoRequest::None;
}

QString VersionText()
{
    return QStringLiteral("tallyvane %1").arg(QStringLiteral(TALLYVANE_VERSION));
}

QString UsageText()
{
    return QStringLiteral(
        "Usage: tallyvane [ORIGINAL MODIFIED] [options]\n"
        "       tallyvane -M ORIGINAL -S MODIFIED [options]\n"
        "       tallyvane -D -M FOLDER -S FOLDER [options]\n"
        "\n"
        "Without arguments the viewers open as they were left. With two files (or,\n"
        "with -D, two folders) one comparison runs; a report may be written and,\n"
        "with -X, the program ends when it is done.\n"
        "\n"
        "A switch is one letter in any case. Its value may be attached (-R2,\n"
        "-M/home/me/a.txt) or be the next argument (-R 2). Relative paths are taken\n"
        "from the current folder.\n"
        "\n"
        "  -M PATH    Original (master) file or folder\n"
        "  -S PATH    Modified (source) file or folder\n"
        "  -D         compare folders instead of files\n"
        "  -C         folders: look in subfolders too\n"
        "  -T PATH    write a report to PATH\n"
        "  -R N       report type: 1 HTML (default), 2 text, 3 comma delimited\n"
        "  -F N       report and view style: 1 all in one, 2 side by side (default)\n"
        "  -I         ignore case differences\n"
        "  -W         ignore whitespace\n"
        "  -Q         quick compare (binary)\n"
        "  -E         remove blank lines before comparing\n"
        "  -A         spreadsheets: compare formulas rather than values\n"
        "  -H         HTML: compare the source rather than the text\n"
        "  -Y TEXT    sheets of the Original spreadsheet, e.g. \"1-2, 12, *\" (default 1)\n"
        "  -Z TEXT    sheets of the Modified spreadsheet (default 1)\n"
        "  -1 TEXT    rows of the Original to compare, e.g. \"1, 12, 30-50\"\n"
        "  -2 TEXT    columns of the Original to compare\n"
        "  -3 TEXT    rows of the Modified to compare\n"
        "  -4 TEXT    columns of the Modified to compare\n"
        "  -B         beep when done\n"
        "  -O         open the report when it is written\n"
        "  -X         end the program when the comparison is done\n"
        "  -G         with -X and -D: exit status is the number of findings\n"
        "  -L PATH    keep the last message in the log file PATH\n"
        "  -V         show messages (in a message box, or on standard error\n"
        "             when there is no display)\n"
        "  -?         open the manual at the command line\n"
        "  --help     show this text and exit\n"
        "  --version  show the version and exit\n");
}
