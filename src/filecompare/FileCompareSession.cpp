// The compare session: staging, the run rule, the engine and the result.

#include "filecompare/FileCompareSession.h"

#include "components/lexiform/FileBytes.h"
#include "components/lexiform/PlainTextReader.h"
#include "components/lexiform/RtfReader.h"
#include "conversion/LoadPipeline.h"
#include "core/Places.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "filecompare/WordBounds.h"

#include <QApplication>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <future>
#include <string_view>
#include <utility>

namespace filecompare {

void DoEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void Sleep(int ms)
{
    if (ms <= 0)
        QThread::yieldCurrentThread();
    else
        QThread::msleep(ulong(ms));
}

void Beep()
{
    QApplication::beep();
}

namespace {

void report(const QString& message)
{
    LogMessage(message, gsClLogFile, gbClVerbose);
}

// What the editor would be given: refused when it is no text at all, as a
// program, an image or an archive copied as it stands: NUL bytes in the
// first part without a wide-text byte order mark.
bool stagedFileIsBinary(const QString& staged)
{
    QFile f(staged);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = f.read(64 * 1024);
    if (head.startsWith("\xFF\xFE") || head.startsWith("\xFE\xFF") || head.startsWith(QByteArray("\x00\x00\xFE\xFF", 4)))
        return false;
    return head.contains('\0');
}

bool stagedFileIsRichText(const QString& staged)
{
    QFile f(staged);
    return f.open(QIODevice::ReadOnly) && f.read(5) == "{\\rtf";
}

std::string_view view(const QByteArray& b)
{
    return {b.constData(), size_t(b.size())};
}

// Word-level passes let events through this often, so that Abort is heard
// on a pair with thousands of changes without a round trip per section.
constexpr int kChangesBetweenEvents = 32;
// How often the window handles events while the engine compares the lines:
// often enough that it repaints and its Abort button answers at once (the
// pass of the words is skipped after an abort; the lines are seen through).
constexpr std::chrono::milliseconds kEventsEvery{30};

} // namespace

FileCompareSession::FileCompareSession(QObject* parent)
    : QObject(parent)
{
    if (gsMasterTextFile.isEmpty())
        gsMasterTextFile = masterTextPath();
    if (gsSourceTextFile.isEmpty())
        gsSourceTextFile = sourceTextPath();
}

// --- staging ---------------------------------------------------------------------------

FileCompareSession::Staged FileCompareSession::stageForEditor(const QString& sFile, const QString& sTemp,
                                                              bool original)
{
    if (sFile.isEmpty()) {
        report(QStringLiteral("Unable to load file. Filename empty"));
        return {};
    }
    if (!::ConvertFileIfNecessary(conversion_, sFile, sTemp, ConversionOptionsFrom(options_), original))
        return {};
    // A file chosen in the picker is remembered like one typed in.
    (original ? options_.sFileOriginal : options_.sFileModified) = sFile;
    RemoveBlankLinesAfterLoad(conversion_, sFile, sTemp, ConversionOptionsFrom(options_));
    if (stagedFileIsBinary(sTemp)) {
        report(QStringLiteral("LoadFileIntoEditor(): Unable to load file: it holds no text.\n\n") + sFile);
        return {};
    }
    return {true, stagedFileIsRichText(sTemp)};
}

FileCompareSession::Staged FileCompareSession::stageForPane(const QString& sFile, const QString& sTemp)
{
    if (sFile.isEmpty()) {
        report(QStringLiteral("Unable to load file. Filename empty"));
        return {};
    }
    if (!StageFileForDiffPane(conversion_, sFile, sTemp, ConversionOptionsFrom(options_)))
        return {};
    if (stagedFileIsBinary(sTemp)) {
        report(QStringLiteral("LoadFileIntoEditor(): Unable to load file: it holds no text.\n\n") + sFile);
        return {};
    }
    return {true, stagedFileIsRichText(sTemp)};
}

bool FileCompareSession::PlainTextOf(const QString& staged, QString& text)
{
    QFile f(staged);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    QByteArray bytes = f.readAll();
    if (f.error() != QFile::NoError || lexiform::looksLikeRtf(bytes))
        return false;
    QString s = lexiform::decodeText(bytes);
    bytes = QByteArray();
    // As an editor takes plain text: every line end a line feed.
    if (s.contains(QLatin1Char('\r'))) {
        s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    // A document also breaks paragraphs at these, and its text then shows a
    // line feed where the file has them: such a file takes the document's
    // road, so that what is compared is what the editor would hold.
    for (const QChar c : {QChar(QChar::ParagraphSeparator), QChar(0xFDD0), QChar(0xFDD1)})
        if (s.contains(c))
            return false;
    text = std::move(s);
    return true;
}

// --- the run rule ------------------------------------------------------------------------

FileCompareSession::Run::Run(FileCompareSession& s)
    : s_(s)
    , outermost_(s.depth_++ == 0)
{
}

FileCompareSession::Run::~Run()
{
    --s_.depth_;
}

bool FileCompareSession::deferIfBusy(bool reload, bool showDifference)
{
    if (depth_ == 0) {
        rerunPending_ = false;
        return false;
    }
    rerunPending_ = true;
    rerunReload_ = reload;
    rerunShowDifference_ = showDifference;
    return true;
}

bool FileCompareSession::takeRerun(bool& reload, bool& showDifference)
{
    const bool take = rerunPending_ && !aborted_;
    rerunPending_ = false;
    reload = rerunReload_;
    showDifference = rerunShowDifference_;
    return take;
}

void FileCompareSession::abort()
{
    aborted_ = true;
    // A pending repeat of the run is dropped with it: the user asked to stop.
    rerunPending_ = false;
}

// --- comparing ----------------------------------------------------------------------------

bool FileCompareSession::WriteWholeText(const QString& sText, const QString& sFile)
{
    // One paragraph is one line. A text that ends in a line end already
    // ends its last line: another would add an empty line that is in
    // neither document, and every report would show it.
    QFile f(sFile);
    if (sFile.isEmpty() || !f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    // In pieces: a long text is not held a second time, as UTF-8, whole.
    // A piece ends before a high surrogate, so that no character is split.
    constexpr qsizetype kPiece = 1 << 20;
    for (qsizetype at = 0; at < sText.size();) {
        qsizetype n = std::min(kPiece, sText.size() - at);
        if (at + n < sText.size() && sText.at(at + n - 1).isHighSurrogate())
            --n;
        const QByteArray bytes = QStringView(sText).mid(at, n).toUtf8();
        if (f.write(bytes) != bytes.size())
            return false;
        at += n;
    }
    if (!sText.endsWith(QLatin1Char('\n')) && !sText.endsWith(QLatin1Char('\r')) && f.write("\r\n", 2) != 2)
        return false;
    return f.flush();
}

const ComparisonResult& FileCompareSession::compare(QString original, QString modified, const SectionText& sections)
{
    emit progress(3, QStringLiteral("Compare In Process..."));
    Skeinmatch& e = lines_;
    // A work file that could not be written would leave the engine comparing
    // what an earlier run wrote there, or nothing: the run stops instead.
    QString failure;
    if (!WriteWholeText(std::exchange(original, QString()), gsMasterTextFile))
        failure = QStringLiteral("Unable to write the Original's text for comparison: ") + gsMasterTextFile;
    else if (!WriteWholeText(std::exchange(modified, QString()), gsSourceTextFile))
        failure = QStringLiteral("Unable to write the Modified's text for comparison: ") + gsSourceTextFile;
    if (!failure.isEmpty()) {
        // The records of an earlier run must not pass for this one's.
        e.compareTexts({}, {});
        result_ = ComparisonResult::failed(failure);
        return result_;
    }
    const clsCompareFileOptions& o = options_;
    e.setMasterFile(QFile::encodeName(gsMasterTextFile).toStdString());
    e.setSourceFile(QFile::encodeName(gsSourceTextFile).toStdString());
    e.setIgnoreCase(o.bIgnoreCase.Data());
    e.setIgnoreEmptyLines(o.bIgnoreEmptyLines.Data());
    e.setIgnoreWhitespace(o.bIgnoreWhitespace.Data());
    e.setQuickCompare(false);
    e.setCompareFaster(o.bCompareFaster.Data());
    e.setShowChangesInLargerSections(o.bShowChangesInLargerSections.Data());
    e.setUseLineBracket(o.bUseLineBracket.Data());
    e.setLineBracket(o.lLineBracket.Data());
    e.setCompareMode(0);
    // The engine works on its own copies of the two texts, on a worker: a
    // long pair takes seconds, and the window keeps answering meanwhile (a
    // run holds back input other than its abort, as it does while it
    // renders). Nothing here touches the engine until it is done.
    auto lines = std::async(std::launch::async, [&e] { e.CompareFiles(); });
    while (lines.wait_for(kEventsEvery) != std::future_status::ready)
        DoEvents();
    lines.get();
    switch (e.loadStatus()) {
    case 0: break;
    case -3: failure = QStringLiteral("Unable to load master file for comparison"); break;
    case -4: failure = QStringLiteral("Unable to load source file for comparison"); break;
    default: failure = QStringLiteral("The comparison ran out of memory"); break;
    }
    if (!failure.isEmpty()) {
        if (!e.loadError().empty())
            failure += QStringLiteral(" (") + QString::fromStdString(e.loadError()) + QLatin1Char(')');
        result_ = ComparisonResult::failed(failure);
        return result_;
    }

    result_ = ComparisonResult();
    const int n = e.DifferenceCount();
    int sinceEvents = 0;
    for (int i = 0; i < n; ++i) {
        Difference d;
        if (!e.GetDifference(i, d.kind, d.lf, d.ll, d.rf, d.rl))
            break;
        if (d.kind == kKindChange && sections && !aborted_) {
            d.words = compareWords(sections(true, d.lf, d.ll), sections(false, d.rf, d.rl));
            if (++sinceEvents == kChangesBetweenEvents) {
                sinceEvents = 0;
                DoEvents();
            }
        }
        result_.append(std::move(d));
    }
    return result_;
}

std::vector<DiffRecord> FileCompareSession::compareWords(const QString& original, const QString& modified)
{
    // The words of a change are compared in memory: no work files to write
    // and read back for every section.
    Skeinmatch& e = words_;
    e.setIgnoreCase(options_.bIgnoreCase.Data());
    // An empty line of a word list is a line end of the text and must count.
    e.setIgnoreEmptyLines(false);
    e.setIgnoreWhitespace(options_.bIgnoreWhitespace.Data());
    e.setCompareMode(0);
    e.compareTexts(view(WordLines(original)), view(WordLines(modified)));
    std::vector<DiffRecord> out;
    out.reserve(size_t(e.DifferenceCount()));
    for (int i = 0; i < e.DifferenceCount(); ++i) {
        DiffRecord r;
        if (e.GetDifference(i, r.kind, r.lf, r.ll, r.rf, r.rl))
            out.push_back(r);
    }
    return out;
}

// --- reports --------------------------------------------------------------------------------

void FileCompareSession::setReportTitles(const QString& master, const QString& source, const QString& title)
{
    lines_.setReportTitle(title.toStdString());
    lines_.setMasterTitle(master.toStdString());
    lines_.setSourceTitle(source.toStdString());
}

bool FileCompareSession::writeReport(const QString& sReportFile, qint32 lReportFormat, qint32 lReportStyle,
                                     QString& message)
{
    message.clear();
    if (!result_.ok()) {
        message = result_.failure();
        return false;
    }
    // A report written over a document being compared would destroy it.
    const bool ontoInput = lexiform::sameFile(sReportFile, options_.sFileOriginal.Data())
        || lexiform::sameFile(sReportFile, options_.sFileModified.Data());
    const int r = ontoInput
        ? -5
        : lines_.CreateFileReport(QFile::encodeName(sReportFile).toStdString(), lReportFormat, lReportStyle);
    if (r >= 0)
        return true;
    switch (r) {
    case -1: message = QStringLiteral("Compare was aborted, no report can be generated"); break;
    case -3: message = QStringLiteral("Unable to load master file for comparison"); break;
    case -4: message = QStringLiteral("Unable to load source file for comparison"); break;
    case -5:
        message = QStringLiteral("Unable to create target file: ") + sReportFile
            + QStringLiteral("\r\n\r\nCheck to make sure path exists in the 'Report Options' tab");
        // A full disk or an input named as the report needs saying too.
        if (ontoInput)
            message += QStringLiteral("\r\n\r\nThe report would overwrite a file being compared");
        else if (!lines_.reportError().empty())
            message += QStringLiteral("\r\n\r\n") + QString::fromStdString(lines_.reportError());
        break;
    default: break;
    }
    return false;
}

} // namespace filecompare
