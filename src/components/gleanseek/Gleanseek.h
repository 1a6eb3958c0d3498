#pragma once
// Find text in the files of a folder. StartSearch returns at once; worker
// threads walk the folder and search the files, and the hits collect in a
// numbered list that the viewer reads by index while the search goes on.
//
// How the search behaves:
// - Order: the files of a folder by name (without regard to case), then its
//   subfolders by name, each in the same way; within a file, by line. The
//   order does not depend on which thread finished first.
// - One hit per matching line, at the first match in it (with "whole word
//   only", the first match that is a whole word). lLine and lCol count from
//   1; lCol counts characters. sItem is the line's text with tabs turned to
//   blanks (see MakeItem for long lines).
// - Text files are read as UTF-8 when valid, else as Windows-1252; files with
//   a UTF-16 byte order mark are decoded; a UTF-8 byte order mark is skipped.
//   Any other file holding a NUL byte is binary and is passed over silently.
// - SearchFileTypes: blank-separated wildcards, any case; "*.*" is every file.
// - Symbolic links are not followed, neither to files nor to folders.
// - SupportOfficeDocs: Word, OpenDocument, Excel and PDF files are searched
//   in the text their document reader extracts (line numbers are those of
//   that text, which ExtractText writes out for the viewer).
// - StartSearch during a search stops it and starts over; the hits of the
//   stopped search are dropped. After AbortSearch returns no hit is added and
//   SearchCompleted is not raised.
//
// Errors (SearchError's code and message):
//   507 the search text is empty or not a valid pattern; 508 the folder is
//   not given or does not exist; 509 no file type is given. These three
//   refuse the search: it does not start. Found during the search, and the
//   search goes on: 510 a folder cannot be read, 511 a file cannot be read,
//   512 a document's text cannot be extracted, 513 the pattern was too
//   complex for a line of a file (that file is left); 514 the search could
//   not go on (out of memory) and ends with what it found.
//
// Threads: properties, StartSearch, AbortSearch and ExtractText belong to one
// controlling thread. HitCount, GetHit and InProgress may be called from any
// thread at any time. Events come on the engine's threads (or, for 507 to
// 509, on the thread calling StartSearch), one at a time; a handler may read
// hits or call AbortSearch but not StartSearch (which is then refused).

#include "components/gleanseek/TextSearch.h"
#include "components/skeinmatch/AppendOnlyList.h"
#include "components/skeinmatch/BackgroundRun.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace gleanseek {

enum : std::int32_t {
    kErrorSearchText = 507,
    kErrorFolder = 508,
    kErrorFileTypes = 509,
    kErrorUnreadableFolder = 510,
    kErrorUnreadableFile = 511,
    kErrorDocumentText = 512,
    kErrorPatternTooComplex = 513,
    kErrorStopped = 514,
};

class GleanseekEvents {
public:
    virtual ~GleanseekEvents() = default;
    virtual void SearchStarted() {}
    virtual void SearchCompleted() {}
    virtual void SearchError(std::int32_t code, const std::string& message) {}
};

// Where the text of office documents comes from. Must be safe to call from
// several threads at once.
class DocumentTextSource {
public:
    virtual ~DocumentTextSource() = default;
    // True for the files this source reads (by their extension).
    virtual bool Handles(const std::string& path) const = 0;
    // The document's text as UTF-8, paragraphs (or rows) one per line.
    virtual bool Extract(const std::string& path, std::string& utf8Text, std::string& error) const = 0;
};

// The source backed by the program's document readers; null when none is
// built in.
std::shared_ptr<const DocumentTextSource> DefaultDocumentTextSource();

class Gleanseek {
public:
    Gleanseek();
    ~Gleanseek();
    Gleanseek(const Gleanseek&) = delete;
    Gleanseek& operator=(const Gleanseek&) = delete;

    std::int32_t HitCount() const;
    bool InProgress() const;

    bool CaseSensitive() const;
    void setCaseSensitive(bool on);
    bool LookInSubfolders() const;
    void setLookInSubfolders(bool on);
    bool WholeWordOnly() const;
    void setWholeWordOnly(bool on);
    bool RegularExpression() const;
    void setRegularExpression(bool on);
    bool SupportOfficeDocs() const;
    void setSupportOfficeDocs(bool on);
    std::string SearchFolder() const;
    void setSearchFolder(const std::string& folder);
    std::string SearchFileTypes() const;
    void setSearchFileTypes(const std::string& patterns);
    std::string SearchText() const;
    void setSearchText(const std::string& text);
    // Kept for the viewer, which sets 2; it selects nothing.
    std::int32_t EngineMode() const;
    void setEngineMode(std::int32_t mode);

    // Not owned; must outlive the engine or be replaced by nullptr first.
    void setEvents(GleanseekEvents* events);
    void setDocumentTextSource(std::shared_ptr<const DocumentTextSource> source);

    void StartSearch();
    void AbortSearch();

    bool GetHit(std::int32_t lIndex, std::string& sFile, std::int32_t& lLine, std::int32_t& lCol,
                std::string& sItem) const;
    bool GetHit(std::int32_t lIndex, Hit& hit) const;

    // Tab-delimited report of the hits so far: a header row, one row per hit.
    bool WriteReport(const std::string& path) const;
    std::string LastReportError() const;

    // Writes the text of a Word, OpenDocument, Excel or PDF file to
    // `textPath` as UTF-8; false (and nothing written) for other files or
    // when the text cannot be had.
    bool ExtractText(const std::string& path, const std::string& textPath);

    struct Settings {
        bool caseSensitive = false;
        bool lookInSubfolders = true;
        bool wholeWordOnly = false;
        bool regularExpression = false;
        bool supportOfficeDocs = false;
        std::string searchFolder;
        std::string searchFileTypes = "*.*";
        std::string searchText;
        std::int32_t engineMode = 0;
    };

private:
    class Run;
    friend class Run;

    void stopRun();
    void raiseStarted();
    void raiseCompleted();
    void raiseError(std::int32_t code, const std::string& message);

    mutable std::mutex settingsMutex_;
    Settings settings_;
    std::shared_ptr<const DocumentTextSource> documents_;

    skeinmatch::AppendOnlyList<Hit> hits_;

    std::mutex eventsMutex_;
    GleanseekEvents* events_ = nullptr;

    std::unique_ptr<Run> run_;
    skeinmatch::BackgroundRun background_;

    mutable std::mutex reportErrorMutex_;
    mutable std::string reportError_;
};

} // namespace gleanseek
