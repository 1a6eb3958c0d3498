#pragma once
// The compare session of one file viewer: no widgets. It owns the options,
// the staging of a file for an editor, the run (one at a time, a request
// during a run repeated once after it, abort), the engine, the result of the
// last run and the reports. It reports through signals; the form shows them.

#include "components/skeinmatch/Skeinmatch.h"
#include "conversion/ConverterRoutines.h"
#include "filecompare/ComparisonResult.h"
#include "settings/clsCompareFileOptions.h"

#include <QObject>
#include <QString>

#include <functional>

namespace filecompare {

// Stand-ins for the platform calls the run makes, replaceable in tests.
// Lets queued events run ("let events through").
void DoEvents();
// Gives up the processor for at least ms milliseconds (0: the time slice).
void Sleep(int ms);
// The user's attention sound at the end of a run.
void Beep();

class FileCompareSession : public QObject {
    Q_OBJECT

public:
    // Report formats and styles as the engine and the INI file number them.
    enum ReportFormat : qint32 { kReportHTML = 1, kReportText = 2, kReportCSV = 3 };
    enum ReportStyle : qint32 { kStyleAllInOne = 1, kStyleSideBySide = 2 };

    explicit FileCompareSession(QObject* parent = nullptr);

    clsCompareFileOptions& options() { return options_; }
    const clsCompareFileOptions& options() const { return options_; }
    ConversionControls& conversion() { return conversion_; }

    // --- staging ---------------------------------------------------------------------
    // Turns a file into something an editor can load, in sTemp: converted or
    // copied, blank lines removed when asked. An empty answer when it
    // worked, else what went wrong (already logged).
    struct Staged {
        bool ok = false;
        bool richText = false;
    };
    Staged stageForEditor(const QString& sFile, const QString& sTemp, bool original);
    Staged stageForPane(const QString& sFile, const QString& sTemp);
    // The text an editor would hold of a staged plain-text file, read without
    // building a document (which, for a large file, takes most of a run that
    // only reports). False for rich text, an unreadable file, or a text in
    // which a document would start paragraphs the lines here do not.
    static bool PlainTextOf(const QString& staged, QString& text);

    // --- the run rule ----------------------------------------------------------------
    bool busy() const { return depth_ > 0; }
    // A run for as long as the object lives; nested ones count once.
    class Run {
    public:
        explicit Run(FileCompareSession& s);
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;
        bool outermost() const { return outermost_; }

    private:
        FileCompareSession& s_;
        bool outermost_;
    };
    // A request during a run is kept (the last one wins) and true returned:
    // it would share the engine and the work files with the run.
    bool deferIfBusy(bool reload, bool showDifference);
    // After a run: the kept request, if there is one and no abort or close
    // came in between; taking it clears it.
    bool takeRerun(bool& reload, bool& showDifference);
    void dropRerun() { rerunPending_ = false; }

    void abort();
    void clearAbort() { aborted_ = false; }
    bool aborted() const { return aborted_; }

    // --- comparing --------------------------------------------------------------------
    // The text of paragraphs first..last of one side, without the last line
    // end; given, the result holds the word-level records of every change.
    using SectionText = std::function<QString(bool original, qint32 first, qint32 last)>;
    // Compares the two texts (one paragraph a line) into a new result. A
    // step that fails gives a failed result that says what failed. An abort
    // during the word-level pass leaves the changes behind it without words.
    // The texts are let go of once written for the engine, so that a caller
    // that hands over the last references frees them before the engine
    // loads its own copies.
    const ComparisonResult& compare(QString original, QString modified, const SectionText& sections = {});
    const ComparisonResult& result() const { return result_; }
    static bool WriteWholeText(const QString& sText, const QString& sFile);
    // The word-level records of one section.
    std::vector<DiffRecord> compareWords(const QString& original, const QString& modified);

    // --- reports ----------------------------------------------------------------------
    // The titles of a report: the paths as the user sees them, and for HTML
    // the page's titles where they are filled in.
    void setReportTitles(const QString& master, const QString& source, const QString& title);
    // Writes the report of the last compare. Empty when it did, else the
    // message of the "Report Creation Error" box (which may be empty for a
    // failure that has nothing to say).
    bool writeReport(const QString& sReportFile, qint32 lReportFormat, qint32 lReportStyle, QString& message);

signals:
    // A status bar panel (1 to 5) text of a stage of the run.
    void progress(int panel, const QString& text);

private:
    clsCompareFileOptions options_;
    ConversionControls conversion_;
    Skeinmatch lines_;
    Skeinmatch words_;
    ComparisonResult result_;

    int depth_ = 0;
    bool aborted_ = false;
    bool rerunPending_ = false;
    bool rerunReload_ = false;
    bool rerunShowDifference_ = false;
};

} // namespace filecompare
