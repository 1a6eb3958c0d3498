#include "components/lexiform/ExternalPrograms.h"

#include "components/lexiform/ChildProcess.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

namespace lexiform {

QString findProgram(const QString& name)
{
    return QStandardPaths::findExecutable(name);
}

namespace {

struct Outcome {
    bool started = false;
    bool finished = false;
    int exitCode = -1;
    QByteArray output;
};

// What a converter prints is text of the document: far below this even for
// the largest, but a damaged file must not make it fill the memory.
constexpr long long maxProgramOutput = 1LL << 30;

Outcome run(const QString& program, const QStringList& arguments, int timeoutMs)
{
    Outcome o;
    ChildRun child = runChild(program, arguments, timeoutMs, maxProgramOutput);
    o.started = child.end != ChildRun::NotStarted;
    o.finished = child.end == ChildRun::Exited;
    o.exitCode = child.code;
    o.output = QByteArray::fromStdString(child.output);
    return o;
}

} // namespace

int runTextProgram(const QString& name, const QStringList& arguments, int timeoutMs, QByteArray& output)
{
    output.clear();
    const QString program = findProgram(name);
    if (program.isEmpty())
        return ProgramMissing;
    Outcome o = run(program, arguments, timeoutMs);
    if (!o.finished || o.exitCode != 0 || o.output.trimmed().isEmpty())
        return SourceInvalid;
    output = o.output;
    return Ok;
}

int convertWithOfficeSuite(const QString& source, const QString& format, const QString& outFolder, int timeoutMs,
                           QString& produced)
{
    produced.clear();
    QString program = findProgram(QStringLiteral("soffice"));
    if (program.isEmpty())
        program = findProgram(QStringLiteral("libreoffice"));
    if (program.isEmpty())
        return ProgramMissing;
    // A private profile, so that a suite the user has open is neither
    // disturbed nor able to swallow the request.
    QTemporaryDir profile;
    if (!profile.isValid())
        return ConversionFailed;
    const QStringList args = {QStringLiteral("--headless"),
                              QStringLiteral("--norestore"),
                              QStringLiteral("-env:UserInstallation=") + QUrl::fromLocalFile(profile.path()).toString(),
                              QStringLiteral("--convert-to"),
                              format,
                              QStringLiteral("--outdir"),
                              outFolder,
                              QFileInfo(source).absoluteFilePath()};
    Outcome o = run(program, args, timeoutMs);
    const QString expected = QDir(outFolder).filePath(QFileInfo(source).completeBaseName() + QLatin1Char('.')
                                                      + format.section(QLatin1Char(':'), 0, 0));
    if (!o.finished || o.exitCode != 0 || !QFileInfo::exists(expected))
        return SourceInvalid;
    produced = expected;
    return Ok;
}

int legacyDocumentText(const QString& source, const QString& kind, int timeoutMs, QString& text)
{
    text.clear();
    struct Tool {
        QString name;
        QStringList args;
    };
    std::vector<Tool> tools;
    const QString file = QFileInfo(source).absoluteFilePath();
    if (kind == QLatin1String("doc")) {
        tools.push_back({QStringLiteral("antiword"), {QStringLiteral("-w"), QStringLiteral("0"), QStringLiteral("-m"),
                                                      QStringLiteral("UTF-8.txt"), file}});
        tools.push_back({QStringLiteral("catdoc"), {QStringLiteral("-d"), QStringLiteral("utf-8"), QStringLiteral("-w"), file}});
    } else if (kind == QLatin1String("wpd")) {
        tools.push_back({QStringLiteral("wpd2text"), {file}});
    } else if (kind == QLatin1String("wps")) {
        tools.push_back({QStringLiteral("wps2text"), {file}});
    } else if (kind == QLatin1String("mcw")) {
        tools.push_back({QStringLiteral("mwaw2text"), {file}});
    }
    bool anyPresent = false;
    for (const Tool& t : tools) {
        QByteArray out;
        int rc = runTextProgram(t.name, t.args, timeoutMs, out);
        if (rc == ProgramMissing)
            continue;
        anyPresent = true;
        if (rc == Ok) {
            text = QString::fromUtf8(out);
            return Ok;
        }
    }
    QTemporaryDir dir;
    QString produced;
    int rc = dir.isValid() ? convertWithOfficeSuite(source, QStringLiteral("txt:Text (encoded):UTF8"), dir.path(),
                                                    timeoutMs * 2, produced)
                           : ConversionFailed;
    if (rc == Ok) {
        QFile f(produced);
        if (f.open(QIODevice::ReadOnly)) {
            QByteArray bytes = f.readAll();
            if (bytes.startsWith("\xEF\xBB\xBF"))
                bytes.remove(0, 3);
            text = QString::fromUtf8(bytes);
            return Ok;
        }
        return ConversionFailed;
    }
    if (rc == ProgramMissing)
        return anyPresent ? SourceInvalid : ProgramMissing;
    return rc;
}

} // namespace lexiform
