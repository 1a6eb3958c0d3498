#pragma once
// Folder comparison: walks an Original and a Modified tree on worker threads
// and keeps what it finds as a numbered list of FolderRecord, which the
// viewer reads by index while the walk goes on.
//
// How the walk behaves:
// - Order: a folder's record, then its files by name, then its subfolders by
//   name, each subfolder in the same way. Names are ordered without regard to
//   case (ties by exact bytes) and matched between the trees exactly.
// - A folder present in both trees is only a heading: its record appears just
//   before the first record found inside it, and not at all when nothing
//   inside it is reported. A folder present in one tree only is one record;
//   it is not descended into.
// - FileFilter applies to files; folders are always walked.
// - Sizes are compared first; contents are compared byte by byte only when
//   ContentCompare is on and the sizes agree (different sizes mean different
//   contents either way).
// - Dates (modification times) count as equal when they are within 2 seconds
//   of each other (FAT keeps even seconds) or exactly one hour apart within
//   that tolerance (a daylight-saving shift on such volumes). lDateCompare is
//   reported whatever IgnoreDateDifferences says; that option only makes a
//   date-only difference count as "same" for the Show... filters.
// - A file counts as different when its contents or size differ, or its date
//   differs and dates are not ignored. ShowSameInBothPlaces and
//   ShowDifferentInBothPlaces pick among files in both trees, ShowOnlyIn...
//   among entries in one tree. A file or folder that could not be compared
//   (lContentStatus 2) is always reported.
// - Symbolic links are never followed (no loops, nothing outside the trees):
//   a link is compared as a file whose contents are the path it points to.
//   Sockets, pipes and device files are passed over.
// - An unreadable file gives lContentStatus 2 and a CompareError; an
//   unreadable folder gives CompareError and its record with lContentStatus 2.
// - StartCompare during a walk stops that walk and starts over with the
//   properties as they are then; the records of the stopped walk are dropped.
// - AbortCompare: records delivered so far stay; none are added after it
//   returns; InProgress turns false shortly after; CompareCompleted is not
//   raised for an aborted walk.
//
// Threads: properties, StartCompare, AbortCompare and ReleaseEngine belong to
// one controlling thread. RecordCount, GetRecord and InProgress may be called
// from any thread at any time. Events are raised on the engine's own threads,
// one at a time; a handler may read records or call AbortCompare, but must
// not call StartCompare or ReleaseEngine (such calls are refused).

#include "components/skeinmatch/AppendOnlyList.h"
#include "components/skeinmatch/BackgroundRun.h"
#include "components/skeinmatch/FolderRecord.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace skeinmatch {

// Codes passed as the first argument of CompareError.
enum : std::int32_t {
    kFolderErrorUnreadableFolder = 1,
    kFolderErrorUnreadableFile = 2,
    kFolderErrorStopped = 3,  // the walk could not go on (out of memory)
};

class FolderCompareEvents {
public:
    virtual ~FolderCompareEvents() = default;
    virtual void CompareStarted() {}
    virtual void CompareError(std::int32_t code, const std::string& message) {}
    virtual void CompareCompleted() {}
};

class FolderCompareEngine {
public:
    FolderCompareEngine();
    ~FolderCompareEngine();
    FolderCompareEngine(const FolderCompareEngine&) = delete;
    FolderCompareEngine& operator=(const FolderCompareEngine&) = delete;

    // Properties, read by value when StartCompare is called.
    void setFolderOriginal(const std::string& path);
    void setFolderModified(const std::string& path);
    void setFileFilter(const std::string& patterns);
    void setShowOnlyInMaster(bool on);
    void setShowOnlyInSource(bool on);
    void setShowSameInBothPlaces(bool on);
    void setShowDifferentInBothPlaces(bool on);
    void setDoSubDirectories(bool on);
    void setContentCompare(bool on);
    void setIgnoreDateDifferences(bool on);

    std::string FolderOriginal() const;
    std::string FolderModified() const;
    std::string FileFilter() const;
    bool ShowOnlyInMaster() const;
    bool ShowOnlyInSource() const;
    bool ShowSameInBothPlaces() const;
    bool ShowDifferentInBothPlaces() const;
    bool DoSubDirectories() const;
    bool ContentCompare() const;
    bool IgnoreDateDifferences() const;

    // Not owned; must outlive the engine or be replaced by nullptr first.
    void setEvents(FolderCompareEvents* events);

    // Returns at once; the walk goes on in the background.
    void StartCompare();
    void AbortCompare();
    void ReleaseEngine();

    bool InProgress() const;
    std::int32_t RecordCount() const;
    bool GetRecord(std::int32_t lIndex, std::string& sName, std::string& sPathOriginal,
                   std::string& sPathModified, std::int32_t& lIsFile, std::int32_t& lOnlyInModified,
                   std::int32_t& lOnlyInOriginal, std::int32_t& lSizeCompare,
                   std::int32_t& lDateCompare, std::int32_t& lContentStatus) const;
    bool GetRecord(std::int32_t lIndex, FolderRecord& record) const;

    // Tab-delimited report of the records so far: a header row, then one row
    // per record. False (with the reason in LastReportError) when the file
    // could not be written.
    bool WriteReport(const std::string& path) const;
    std::string LastReportError() const;

    struct Settings {
        std::string folderOriginal;
        std::string folderModified;
        std::string fileFilter = "*.*";
        bool showOnlyInMaster = true;
        bool showOnlyInSource = true;
        bool showSameInBothPlaces = true;
        bool showDifferentInBothPlaces = true;
        bool doSubDirectories = true;
        bool contentCompare = true;
        bool ignoreDateDifferences = false;
    };

private:
    class Run;
    friend class Run;

    void stopRun();
    void raiseStarted();
    void raiseError(std::int32_t code, const std::string& message);
    void raiseCompleted();

    mutable std::mutex settingsMutex_;
    Settings settings_;

    AppendOnlyList<FolderRecord> records_;

    std::mutex eventsMutex_;
    FolderCompareEvents* events_ = nullptr;

    std::unique_ptr<Run> run_;
    BackgroundRun background_;

    mutable std::mutex reportErrorMutex_;
    mutable std::string reportError_;
};

} // namespace skeinmatch
