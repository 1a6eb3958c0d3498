#pragma once
// Skeinmatch, the comparison engine. A viewer sets the two text files and
// the options, calls CompareFiles, and reads the difference records back by
// index as often as it likes; the list stays as it is until the next
// compare. Plain C++, no Qt; one instance is used from one thread at a time.
//
// File comparison in short:
//   Skeinmatch e;
//   e.setMasterFile(originalPath);
//   e.setSourceFile(modifiedPath);
//   e.setIgnoreCase(...); ...            // any of the options below
//   e.CompareFiles();                   // synchronous, complete on return
//   for (int i = 0; i < e.DifferenceCount(); ++i)
//       e.GetDifference(i, kind, lf, ll, rf, rl);
//   e.CreateFileReport(path, 1, 2);     // HTML side by side, say
//
// Records: `kind` is 'a' (97), 'd' (100) or 'c' (99); the four numbers are
// 1-based lines of the files, every line counted, ranges inclusive. An
// addition's left pair is the Original line behind which the new lines stand
// (0 at the top); a deletion's right pair is the Modified line behind which
// the lost lines stood. Records run from the top of both files to the end
// and never overlap.
//
// Files: a line ends at "\n", a "\r" before it is dropped, and a line end
// behind the last line adds no line. Bytes are compared as bytes; option
// folding understands UTF-8 and leaves anything else alone. A file that
// cannot be read leaves an empty list (see loadStatus()).

#include "components/skeinmatch/FolderCompareEngine.h"
#include "components/skeinmatch/LineDiff.h"
#include "components/skeinmatch/LineText.h"

#include <atomic>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

class Skeinmatch {
public:
    Skeinmatch();
    ~Skeinmatch();
    Skeinmatch(const Skeinmatch&) = delete;
    Skeinmatch& operator=(const Skeinmatch&) = delete;

    // ---- File comparison: what the viewer sets ----------------------------

    // Only 0 is used; kept for the viewers' calling order.
    void setCompareMode(int mode) { compareMode_ = mode; }
    void setMasterFile(const std::string& path) { masterFile_ = path; }
    void setSourceFile(const std::string& path) { sourceFile_ = path; }
    // Letters that differ only in case are equal (Unicode simple case
    // folding, so Latin, Greek, Cyrillic and the rest).
    void setIgnoreCase(bool on) { options_.ignoreCase = on; }
    // Space, tab, CR, FF, VT and no-break space take no part in comparing.
    void setIgnoreWhitespace(bool on) { options_.ignoreWhitespace = on; }
    // Empty lines (with IgnoreWhitespace also lines of blanks only) are not
    // matched and make no record; they still count in line numbers.
    void setIgnoreEmptyLines(bool on) { options_.ignoreEmptyLines = on; }
    // Stored only: the viewer always sets False.
    void setQuickCompare(bool on) { quickCompare_ = on; }
    // Records with at most three lines between them on each side are joined
    // into one change record.
    void setShowChangesInLargerSections(bool on) { options_.largerSections = on; }
    // A smaller search budget: much faster on very different inputs, the
    // result then a little larger than minimal.
    void setCompareFaster(bool on) { options_.faster = on; }
    // With UseLineBracket a mismatched line looks for its counterpart only
    // within LineBracket lines of its place (values below 1 count as 1):
    // walking both files from the top, at a mismatch the nearest pair of
    // equal lines at most LineBracket lines ahead on each side, followed by
    // two more equal pairs, resumes the matching; with none, both lines
    // count as changed. Lines that have no counterpart anywhere are left out
    // of that count.
    void setUseLineBracket(bool on) { options_.useHorizon = on; }
    void setLineBracket(int lines) { options_.horizon = lines < 1 ? 1 : lines; }

    // Report titles. Empty side titles fall back to the file names.
    void setMasterTitle(const std::string& title) { masterTitle_ = title; }
    void setSourceTitle(const std::string& title) { sourceTitle_ = title; }
    void setReportTitle(const std::string& title) { reportTitle_ = title; }

    // ---- File comparison: what the viewer reads ---------------------------

    // True while CompareFiles runs (it may be polled from another thread).
    bool CompareInProgress() const { return inProgress_.load(); }
    // Records of the last compare; 0 before any.
    int DifferenceCount() const { return static_cast<int>(records_.size()); }
    // Fills the five fields and returns true when index exists; otherwise
    // returns false and leaves them alone.
    bool GetDifference(int index, int& kind, int& leftFirst, int& leftLast, int& rightFirst,
                       int& rightLast) const;

    // Reads both files, compares, and holds the records and the two texts.
    void CompareFiles();

    // Writes a report of the last compare (compares first if there was
    // none). type 1 HTML (style 1 all in one, 2 side by side), 2 unified
    // diff text, 3 comma delimited. Returns 0 when written; -1 aborted,
    // -2 other failure, -3 Original unreadable, -4 Modified unreadable,
    // -5 the file could not be created.
    int CreateFileReport(const std::string& file, int type, int style);
    // Why the last report failed (a full disk, a report onto a compared
    // file), empty when it did not or when there is nothing more to say.
    const std::string& reportError() const { return reportError_; }

    // ---- Beyond the viewer's contract -------------------------------------

    // Compares two texts from memory, as CompareFiles would compare files
    // holding them.
    void compareTexts(std::string_view original, std::string_view modified);

    // 0 after a good compare; -3 or -4 when the Original or the Modified
    // could not be read, -2 when memory ran out; loadError() says why.
    int loadStatus() const { return loadStatus_; }
    const std::string& loadError() const { return loadError_; }

    const std::vector<skeinmatch::DiffRecord>& records() const { return records_; }
    // The records as a patch needs them: where only one file lacks the line
    // end behind its last line, the last lines count as changed.
    std::vector<skeinmatch::DiffRecord> patchRecords() const;
    const skeinmatch::LineText& originalText() const { return original_; }
    const skeinmatch::LineText& modifiedText() const { return modified_; }

    const std::string& masterFile() const { return masterFile_; }
    const std::string& sourceFile() const { return sourceFile_; }
    int compareMode() const { return compareMode_; }
    bool quickCompare() const { return quickCompare_; }
    const skeinmatch::DiffOptions& options() const { return options_; }

    // Lets tests compare on one thread only.
    void setParallel(bool on) { parallel_ = on; }

    // ---- Folder comparison ------------------------------------------------
    // The walk runs on threads of its own; FolderCompareEngine.h tells how it
    // behaves and which calls may come from which thread.

    void setFolderOriginal(const std::string& path) { folders_.setFolderOriginal(path); }
    void setFolderModified(const std::string& path) { folders_.setFolderModified(path); }
    void setFileFilter(const std::string& patterns) { folders_.setFileFilter(patterns); }
    void setShowOnlyInMaster(bool on) { folders_.setShowOnlyInMaster(on); }
    void setShowOnlyInSource(bool on) { folders_.setShowOnlyInSource(on); }
    void setShowSameInBothPlaces(bool on) { folders_.setShowSameInBothPlaces(on); }
    void setShowDifferentInBothPlaces(bool on) { folders_.setShowDifferentInBothPlaces(on); }
    void setDoSubDirectories(bool on) { folders_.setDoSubDirectories(on); }
    void setContentCompare(bool on) { folders_.setContentCompare(on); }
    void setIgnoreDateDifferences(bool on) { folders_.setIgnoreDateDifferences(on); }
    void setFolderEvents(skeinmatch::FolderCompareEvents* events) { folders_.setEvents(events); }

    void StartCompare() { folders_.StartCompare(); }
    void AbortCompare() { folders_.AbortCompare(); }
    void ReleaseEngine() { folders_.ReleaseEngine(); }
    bool InProgress() const { return folders_.InProgress(); }
    int RecordCount() const { return folders_.RecordCount(); }
    bool GetRecord(int lIndex, std::string& sName, std::string& sPathOriginal, std::string& sPathModified,
                   int& lIsFile, int& lOnlyInModified, int& lOnlyInOriginal, int& lSizeCompare, int& lDateCompare,
                   int& lContentStatus) const
    {
        return folders_.GetRecord(lIndex, sName, sPathOriginal, sPathModified, lIsFile, lOnlyInModified,
                                  lOnlyInOriginal, lSizeCompare, lDateCompare, lContentStatus);
    }
    bool GetRecord(int lIndex, skeinmatch::FolderRecord& record) const { return folders_.GetRecord(lIndex, record); }
    // The tab-delimited folder report; false when it could not be written.
    bool WriteReport(const std::string& path) const { return folders_.WriteReport(path); }
    skeinmatch::FolderCompareEngine& folders() { return folders_; }

private:
    void runCompare();

    std::string masterFile_, sourceFile_;
    std::string masterTitle_, sourceTitle_, reportTitle_;
    int compareMode_ = 0;
    bool quickCompare_ = false;
    skeinmatch::DiffOptions options_;
    bool parallel_ = true;

    std::atomic<bool> inProgress_{false};
    bool compared_ = false;
    int loadStatus_ = 0;
    std::string loadError_;
    std::string reportError_;
    std::time_t originalTime_ = 0, modifiedTime_ = 0;
    skeinmatch::LineText original_, modified_;
    std::vector<skeinmatch::DiffRecord> records_;

    skeinmatch::FolderCompareEngine folders_;
};
