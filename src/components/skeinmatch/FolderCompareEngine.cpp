#include "components/skeinmatch/FolderCompareEngine.h"

#include "components/skeinmatch/FileAccess.h"
#include "components/skeinmatch/FolderWalk.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include "components/safewrite/SafeWrite.h"

namespace skeinmatch {

FolderCompareEngine::FolderCompareEngine() = default;

FolderCompareEngine::~FolderCompareEngine()
{
    stopRun();
}

#define TV_SETTING(Name, member, Type)                                                             \
    void FolderCompareEngine::set##Name(Type value)                                                     \
    {                                                                                              \
        std::lock_guard lock(settingsMutex_);                                                      \
        settings_.member = value;                                                                  \
    }

TV_SETTING(FolderOriginal, folderOriginal, const std::string&)
TV_SETTING(FolderModified, folderModified, const std::string&)
TV_SETTING(FileFilter, fileFilter, const std::string&)
TV_SETTING(ShowOnlyInMaster, showOnlyInMaster, bool)
TV_SETTING(ShowOnlyInSource, showOnlyInSource, bool)
TV_SETTING(ShowSameInBothPlaces, showSameInBothPlaces, bool)
TV_SETTING(ShowDifferentInBothPlaces, showDifferentInBothPlaces, bool)
TV_SETTING(DoSubDirectories, doSubDirectories, bool)
TV_SETTING(ContentCompare, contentCompare, bool)
TV_SETTING(IgnoreDateDifferences, ignoreDateDifferences, bool)
#undef TV_SETTING

#define TV_GETTING(Name, member, Type)                                                             \
    Type FolderCompareEngine::Name() const                                                         \
    {                                                                                              \
        std::lock_guard lock(settingsMutex_);                                                      \
        return settings_.member;                                                                   \
    }

TV_GETTING(FolderOriginal, folderOriginal, std::string)
TV_GETTING(FolderModified, folderModified, std::string)
TV_GETTING(FileFilter, fileFilter, std::string)
TV_GETTING(ShowOnlyInMaster, showOnlyInMaster, bool)
TV_GETTING(ShowOnlyInSource, showOnlyInSource, bool)
TV_GETTING(ShowSameInBothPlaces, showSameInBothPlaces, bool)
TV_GETTING(ShowDifferentInBothPlaces, showDifferentInBothPlaces, bool)
TV_GETTING(DoSubDirectories, doSubDirectories, bool)
TV_GETTING(ContentCompare, contentCompare, bool)
TV_GETTING(IgnoreDateDifferences, ignoreDateDifferences, bool)
#undef TV_GETTING

void FolderCompareEngine::setEvents(FolderCompareEvents* events)
{
    std::lock_guard lock(eventsMutex_);
    events_ = events;
}

void FolderCompareEngine::raiseStarted()
{
    std::lock_guard lock(eventsMutex_);
    if (events_)
        events_->CompareStarted();
}

void FolderCompareEngine::raiseError(std::int32_t code, const std::string& message)
{
    std::lock_guard lock(eventsMutex_);
    if (events_)
        events_->CompareError(code, message);
}

void FolderCompareEngine::raiseCompleted()
{
    std::lock_guard lock(eventsMutex_);
    if (events_)
        events_->CompareCompleted();
}

void FolderCompareEngine::StartCompare()
{
    // From inside an event handler the walk cannot wait for itself to end.
    if (background_.OnOwnThread())
        return;
    stopRun();
    records_.Clear();
    Settings snapshot;
    {
        std::lock_guard lock(settingsMutex_);
        snapshot = settings_;
    }
    run_ = std::make_unique<Run>(*this, std::move(snapshot));
    background_.Start([this] { run_->Execute(); }, [this] { raiseCompleted(); });
}

void FolderCompareEngine::AbortCompare()
{
    background_.Abort();
}

void FolderCompareEngine::stopRun()
{
    background_.Stop();
    run_.reset();
}

void FolderCompareEngine::ReleaseEngine()
{
    if (background_.OnOwnThread())
        return;
    stopRun();
    records_.Clear();
}

bool FolderCompareEngine::InProgress() const
{
    return background_.InProgress();
}

std::int32_t FolderCompareEngine::RecordCount() const
{
    const std::size_t n = records_.Count();
    return n > static_cast<std::size_t>(INT32_MAX) ? INT32_MAX : static_cast<std::int32_t>(n);
}

bool FolderCompareEngine::GetRecord(std::int32_t lIndex, FolderRecord& record) const
{
    if (lIndex < 0)
        return false;
    return records_.Get(static_cast<std::size_t>(lIndex), record);
}

bool FolderCompareEngine::GetRecord(std::int32_t lIndex, std::string& sName, std::string& sPathOriginal,
                                    std::string& sPathModified, std::int32_t& lIsFile,
                                    std::int32_t& lOnlyInModified, std::int32_t& lOnlyInOriginal,
                                    std::int32_t& lSizeCompare, std::int32_t& lDateCompare,
                                    std::int32_t& lContentStatus) const
{
    FolderRecord r;
    if (!GetRecord(lIndex, r))
        return false;
    sName = std::move(r.sName);
    sPathOriginal = std::move(r.sPathOriginal);
    sPathModified = std::move(r.sPathModified);
    lIsFile = r.lIsFile;
    lOnlyInModified = r.lOnlyInModified;
    lOnlyInOriginal = r.lOnlyInOriginal;
    lSizeCompare = r.lSizeCompare;
    lDateCompare = r.lDateCompare;
    lContentStatus = r.lContentStatus;
    return true;
}

namespace {

const char* sideText(std::int32_t v)
{
    if (v > 0)
        return "[O]>[M]";
    if (v < 0)
        return "[M]>[O]";
    return "Same";
}

} // namespace

bool FolderCompareEngine::WriteReport(const std::string& path) const
{
    safewrite::SafeOStream out(path);
    if (!out.isOpen()) {
        std::lock_guard lock(reportErrorMutex_);
        reportError_ = "Cannot create " + path + ": " + out.reason();
        return false;
    }
    out << "#\tName\tOriginal Folder\tModified Folder\tType\tFound In\tContents\tSize\tDate\n";
    const std::size_t n = records_.Count();
    FolderRecord r;
    for (std::size_t i = 0; i < n && records_.Get(i, r); ++i) {
        const bool both = !r.lOnlyInOriginal && !r.lOnlyInModified;
        std::string contents, size, date;
        if (r.lContentStatus != kContentSame && r.lContentStatus != kContentDiffers)
            contents = "Error";
        else if (both && r.lIsFile)
            contents = r.lContentStatus == kContentSame ? "Same" : "Changed";
        if (both && r.lIsFile) {
            size = sideText(r.lSizeCompare);
            date = sideText(r.lDateCompare);
        }
        out << (i + 1) << '\t' << TabCell(r.sName) << '\t' << TabCell(r.sPathOriginal) << '\t'
            << TabCell(r.sPathModified) << '\t' << (r.lIsFile ? "File" : "Folder") << '\t'
            << (both ? "Both" : r.lOnlyInOriginal ? "Original only" : "Modified only") << '\t'
            << contents << '\t' << size << '\t' << date << '\n';
    }
    if (!out.commit()) {
        std::lock_guard lock(reportErrorMutex_);
        reportError_ = "Cannot write " + path + ": " + out.reason();
        return false;
    }
    std::lock_guard lock(reportErrorMutex_);
    reportError_.clear();
    return true;
}

std::string FolderCompareEngine::LastReportError() const
{
    std::lock_guard lock(reportErrorMutex_);
    return reportError_;
}

} // namespace skeinmatch
