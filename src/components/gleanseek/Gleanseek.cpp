#include "components/gleanseek/Gleanseek.h"

#include "components/gleanseek/SearchRun.h"
#include "components/skeinmatch/FileAccess.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include "components/safewrite/SafeWrite.h"
#include <sys/stat.h>

namespace gleanseek {

Gleanseek::Gleanseek() : documents_(DefaultDocumentTextSource()) {}

Gleanseek::~Gleanseek()
{
    stopRun();
}

#define TV_PROPERTY(Name, member, Type, In)                                                        \
    Type Gleanseek::Name() const                                                                   \
    {                                                                                              \
        std::lock_guard lock(settingsMutex_);                                                      \
        return settings_.member;                                                                   \
    }                                                                                              \
    void Gleanseek::set##Name(In value)                                                                 \
    {                                                                                              \
        std::lock_guard lock(settingsMutex_);                                                      \
        settings_.member = value;                                                                  \
    }

TV_PROPERTY(CaseSensitive, caseSensitive, bool, bool)
TV_PROPERTY(LookInSubfolders, lookInSubfolders, bool, bool)
TV_PROPERTY(WholeWordOnly, wholeWordOnly, bool, bool)
TV_PROPERTY(RegularExpression, regularExpression, bool, bool)
TV_PROPERTY(SupportOfficeDocs, supportOfficeDocs, bool, bool)
TV_PROPERTY(SearchFolder, searchFolder, std::string, const std::string&)
TV_PROPERTY(SearchFileTypes, searchFileTypes, std::string, const std::string&)
TV_PROPERTY(SearchText, searchText, std::string, const std::string&)
TV_PROPERTY(EngineMode, engineMode, std::int32_t, std::int32_t)
#undef TV_PROPERTY

void Gleanseek::setEvents(GleanseekEvents* events)
{
    std::lock_guard lock(eventsMutex_);
    events_ = events;
}

void Gleanseek::setDocumentTextSource(std::shared_ptr<const DocumentTextSource> source)
{
    std::lock_guard lock(settingsMutex_);
    documents_ = std::move(source);
}

void Gleanseek::raiseStarted()
{
    std::lock_guard lock(eventsMutex_);
    if (events_)
        events_->SearchStarted();
}

void Gleanseek::raiseCompleted()
{
    std::lock_guard lock(eventsMutex_);
    if (events_)
        events_->SearchCompleted();
}

void Gleanseek::raiseError(std::int32_t code, const std::string& message)
{
    std::lock_guard lock(eventsMutex_);
    if (events_)
        events_->SearchError(code, message);
}

std::int32_t Gleanseek::HitCount() const
{
    const std::size_t n = hits_.Count();
    return n > static_cast<std::size_t>(INT32_MAX) ? INT32_MAX : static_cast<std::int32_t>(n);
}

bool Gleanseek::InProgress() const
{
    return background_.InProgress();
}

void Gleanseek::StartSearch()
{
    if (background_.OnOwnThread())
        return;
    stopRun();
    hits_.Clear();

    Settings s;
    std::shared_ptr<const DocumentTextSource> documents;
    {
        std::lock_guard lock(settingsMutex_);
        s = settings_;
        documents = documents_;
    }

    // Everything wrong with the request is told at once, so that one round
    // of corrections is enough.
    bool refused = false;
    std::unique_ptr<TextMatcher> matcher;
    if (s.searchText.empty()) {
        raiseError(kErrorSearchText, "Search string is empty");
        refused = true;
    } else {
        std::string why;
        matcher = TextMatcher::Create({s.searchText, s.caseSensitive, s.wholeWordOnly, s.regularExpression}, why);
        if (!matcher) {
            raiseError(kErrorSearchText, "Search string is not valid (" + why + "):");
            refused = true;
        }
    }
    struct stat st;
    if (s.searchFolder.empty()) {
        raiseError(kErrorFolder, "Folder not specified");
        refused = true;
    } else if (::stat(s.searchFolder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) {
        raiseError(kErrorFolder, "Folder does not exist: " + s.searchFolder);
        refused = true;
    }
    const skeinmatch::FileNamePattern types(s.searchFileTypes);
    if (types.Empty()) {
        raiseError(kErrorFileTypes, "No file type given:");
        refused = true;
    } else {
        for (const std::u32string& p : types.Patterns())
            if (p.find(U'/') != std::u32string::npos) {
                raiseError(kErrorFileTypes, "A file type is a name pattern, not a path:");
                refused = true;
                break;
            }
    }
    if (refused)
        return;

    run_ = std::make_unique<Run>(*this, std::move(s), std::move(matcher), std::move(documents));
    background_.Start([this] { run_->Execute(); }, [this] { raiseCompleted(); });
}

void Gleanseek::AbortSearch()
{
    background_.Abort();
}

void Gleanseek::stopRun()
{
    background_.Stop();
    run_.reset();
}

bool Gleanseek::GetHit(std::int32_t lIndex, Hit& hit) const
{
    if (lIndex < 0)
        return false;
    return hits_.Get(static_cast<std::size_t>(lIndex), hit);
}

bool Gleanseek::GetHit(std::int32_t lIndex, std::string& sFile, std::int32_t& lLine, std::int32_t& lCol,
                       std::string& sItem) const
{
    Hit h;
    if (!GetHit(lIndex, h))
        return false;
    sFile = std::move(h.sFile);
    lLine = h.lLine;
    lCol = h.lCol;
    sItem = std::move(h.sItem);
    return true;
}

bool Gleanseek::WriteReport(const std::string& path) const
{
    safewrite::SafeOStream out(path);
    const auto fail = [&](const char* what) {
        std::lock_guard lock(reportErrorMutex_);
        reportError_ = std::string(what) + " " + path + ": " + out.reason();
        return false;
    };
    if (!out.isOpen())
        return fail("Cannot create");
    out << "#\tFile\tLine\tCol\tItem Found\n";
    const std::size_t n = hits_.Count();
    Hit h;
    for (std::size_t i = 0; i < n && hits_.Get(i, h); ++i)
        out << (i + 1) << '\t' << skeinmatch::TabCell(h.sFile) << '\t' << h.lLine << '\t' << h.lCol << '\t'
            << skeinmatch::TabCell(h.sItem) << '\n';
    if (!out.commit())
        return fail("Cannot write");
    std::lock_guard lock(reportErrorMutex_);
    reportError_.clear();
    return true;
}

std::string Gleanseek::LastReportError() const
{
    std::lock_guard lock(reportErrorMutex_);
    return reportError_;
}

bool Gleanseek::ExtractText(const std::string& path, const std::string& textPath)
{
    std::shared_ptr<const DocumentTextSource> documents;
    {
        std::lock_guard lock(settingsMutex_);
        documents = documents_;
    }
    if (!documents || !documents->Handles(path))
        return false;
    std::string text, error;
    if (!documents->Extract(path, text, error))
        return false;
    std::ofstream out(textPath, std::ios::binary | std::ios::trunc);
    if (!out)
        return false;
    out << text;
    out.flush();
    return static_cast<bool>(out);
}

} // namespace gleanseek
