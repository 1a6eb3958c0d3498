#include "components/gleanseek/SearchRun.h"

#include "components/gleanseek/TextEncoding.h"
#include "components/skeinmatch/DirectoryListing.h"
#include "components/skeinmatch/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gleanseek {
namespace {

// Files are read in pieces of whole lines so that a huge file needs no
// more memory than this (plus its longest line, up to kMaxLine). When a
// matcher needs UTF-8, a piece is decoded as a whole, so pieces are large
// and most files are decoded in one; otherwise lines are taken one by one
// and a small piece serves better: each worker's buffer is touched for the
// first time only up to this size, and those first touches (page faults)
// cost more than the search when buffers grow to the largest file.
constexpr std::size_t kChunk = 8u << 20;
constexpr std::size_t kSmallChunk = 256u << 10;
constexpr std::size_t kMaxLine = 64u << 20;
constexpr std::size_t kFilesPerBatch = 16;
// Each queued batch may hold its folder open; this keeps the number of
// descriptors well below the usual limit of 1024.
constexpr std::size_t kQueuedBatches = 128;

// Reading space of one worker thread, kept between files.
struct Buffers {
    std::unique_ptr<char[]> data;
    std::size_t capacity = 0;
    std::string converted;

    void reserve(std::size_t keep, std::size_t need)
    {
        if (need <= capacity)
            return;
        const std::size_t cap = std::max(need, capacity * 2);
        std::unique_ptr<char[]> bigger(new char[cap]);
        if (keep)
            std::memcpy(bigger.get(), data.get(), keep);
        data = std::move(bigger);
        capacity = cap;
    }
    // A file of hundreds of megabytes should not keep its buffer alive.
    void trim()
    {
        if (capacity > 2 * kChunk) {
            data.reset();
            capacity = 0;
        }
        if (converted.capacity() > 2 * kChunk)
            std::string().swap(converted);
    }
};

thread_local Buffers tlsBuffers;

} // namespace

void SearchOneFile(int dirfd, const char* name, const std::string& path, const TextMatcher& matcher,
                   TextMatcher::Scratch& scratch,
                   std::vector<Hit>& hits,
                   const std::function<void(std::int32_t code, const std::string& message)>& report,
                   const std::atomic<bool>& abort)
{
    skeinmatch::FileDescriptor fd(::openat(dirfd, name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY | O_NONBLOCK));
    if (fd.get() < 0) {
        if (errno != ELOOP)  // turned into a link since the listing: not ours to follow
            report(kErrorUnreadableFile, skeinmatch::DescribeError("Cannot open file", path, errno));
        return;
    }
    struct stat st;
    if (::fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode))
        return;
    const std::size_t size = static_cast<std::size_t>(st.st_size);

    Buffers& buf = tlsBuffers;
    std::vector<Hit> found;
    std::int64_t line = 1;
    std::size_t carry = 0, total = 0, bomSkip = 0;
    bool first = true;
    std::string error;
    for (;;) {
        if (abort.load(std::memory_order_relaxed))
            return;
        // Ask for exactly what the file holds, so that a small file costs one
        // read; a file that reports size 0 (a kernel file) is read to its end.
        const std::size_t chunk = matcher.NeedsUtf8() ? kChunk : kSmallChunk;
        std::size_t want = chunk;
        if (size > 0)
            want = std::min(chunk, size > total ? size - total : 0);
        buf.reserve(carry, carry + want + 1);
        std::size_t got = 0;
        int err = 0;
        if (want > 0 && !skeinmatch::ReadFull(fd.get(), buf.data.get() + carry, want, got, err)) {
            report(kErrorUnreadableFile, skeinmatch::DescribeError("Cannot read file", path, err));
            break;
        }
        total += got;
        const bool eof = got < want || want == 0 || (size > 0 && total >= size);
        char* data = buf.data.get();
        const std::size_t bytes = carry + got;
        if (first) {
            first = false;
            const auto b0 = bytes > 0 ? static_cast<unsigned char>(data[0]) : 0;
            const auto b1 = bytes > 1 ? static_cast<unsigned char>(data[1]) : 0;
            if ((b0 == 0xFF && b1 == 0xFE) || (b0 == 0xFE && b1 == 0xFF)) {
                // UTF-16 is decoded whole, so it is read on to its end; one
                // larger than a large piece is passed over like other files
                // full of NUL bytes.
                if (!eof) {
                    if (bytes >= kChunk)
                        return;
                    carry = bytes;
                    first = true;
                    continue;
                }
                buf.converted.clear();
                AppendUtf16AsUtf8(buf.converted, data + 2, bytes - 2, b0 == 0xFE);
                if (std::memchr(buf.converted.data(), 0, buf.converted.size()))
                    return;
                if (!SearchLines(matcher, scratch, buf.converted.data(), buf.converted.size(), 1, path, found, error))
                    report(kErrorPatternTooComplex, "The search text is too complex for a line of " + path + ": " + error);
                break;
            }
            if (bytes >= 3 && b0 == 0xEF && b1 == 0xBB && static_cast<unsigned char>(data[2]) == 0xBF)
                bomSkip = 3;
        }
        if (got > 0 && std::memchr(data + carry, 0, got))
            return;  // binary: whatever was found in it is dropped

        std::size_t end = bytes;
        if (!eof) {
            const void* nl = memrchr(data, '\n', bytes);
            if (nl) {
                end = static_cast<std::size_t>(static_cast<const char*>(nl) - data) + 1;
            } else if (bytes < kMaxLine) {
                carry = bytes;
                continue;
            }
        }
        const std::size_t start = std::min(bomSkip, end);
        bomSkip = 0;
        const char* text = data + start;
        std::size_t textLen = end - start;
        // Most pieces of most files cannot match; they are neither decoded
        // nor searched, only their lines counted.
        const bool mayMatch = matcher.MayMatch(text, textLen);
        if (mayMatch && matcher.NeedsUtf8() && !IsValidUtf8(text, textLen)) {
            buf.converted.clear();
            AppendWindows1252AsUtf8(buf.converted, text, textLen);
            text = buf.converted.data();
            textLen = buf.converted.size();
        }
        if (mayMatch && !SearchLines(matcher, scratch, text, textLen, line, path, found, error)) {
            report(kErrorPatternTooComplex, "The search text is too complex for a line of " + path + ": " + error);
            break;
        }
        if (eof)
            break;
        line += CountLineFeeds(data + start, end - start);
        carry = bytes - end;
        std::memmove(data, data + end, carry);
    }
    buf.trim();
    for (Hit& h : found)
        hits.push_back(std::move(h));
}

Gleanseek::Run::Run(Gleanseek& owner, Settings settings, std::unique_ptr<TextMatcher> matcher,
                    std::shared_ptr<const DocumentTextSource> documents)
    : owner_(owner), settings_(std::move(settings)), matcher_(std::move(matcher)), documents_(std::move(documents)),
      filter_(settings_.searchFileTypes)
{
}

Gleanseek::Run::~Run() = default;

bool Gleanseek::Run::aborted() const
{
    return owner_.background_.Aborted();
}

void Gleanseek::Run::Execute()
{
    pipeline_ = std::make_unique<skeinmatch::OrderedPipeline<FileBatch>>(
        owner_.background_, skeinmatch::DiskWorkerCount(), kQueuedBatches, [this](FileBatch& b) { process(b); },
        [this](FileBatch& b) { owner_.hits_.Append(std::move(b.hits)); });
    owner_.raiseStarted();
    try {
        walk(skeinmatch::WithTrailingSlash(settings_.searchFolder));
    } catch (const std::exception& e) {
        owner_.raiseError(kErrorStopped, std::string("The search stopped early: ") + e.what());
    }
    // Every hit is delivered before the search counts as finished.
    pipeline_->Finish();
    pipeline_.reset();
}

void Gleanseek::Run::walk(const std::string& folder)
{
    if (aborted())
        return;
    std::vector<skeinmatch::DirEntry> entries;
    std::shared_ptr<const skeinmatch::DirHandle> dir;
    int err = 0;
    if (!skeinmatch::ListDirectory(folder, entries, err, &dir)) {
        owner_.raiseError(kErrorUnreadableFolder, skeinmatch::DescribeError("Cannot read folder", folder, err));
        return;
    }
    const bool everything = filter_.MatchesEverything();
    const auto freshBatch = [&] {
        FileBatch b;
        b.folder = folder;
        b.dir = dir;
        return b;
    };
    FileBatch batch = freshBatch();
    for (const skeinmatch::DirEntry& e : entries) {
        if (e.type != skeinmatch::EntryType::File || !(everything || filter_.Matches(e.name)))
            continue;
        batch.names.push_back(e.name);
        if (batch.names.size() == kFilesPerBatch) {
            if (!pipeline_->Push(std::move(batch)))
                return;
            batch = freshBatch();
        }
    }
    if (!batch.names.empty() && !pipeline_->Push(std::move(batch)))
        return;
    // The folder stays open only as long as queued batches need it.
    dir.reset();
    if (!settings_.lookInSubfolders)
        return;
    for (const skeinmatch::DirEntry& e : entries)
        if (e.type == skeinmatch::EntryType::Folder) {
            walk(folder + e.name + "/");
            if (aborted())
                return;
        }
}

void Gleanseek::Run::process(FileBatch& batch)
{
    // Match data belongs to one thread; the workers live as long as the run.
    thread_local std::unique_ptr<TextMatcher::Scratch> scratch;
    thread_local const Run* scratchOwner = nullptr;
    if (scratchOwner != this || !scratch) {
        scratch = matcher_->NewScratch();
        scratchOwner = this;
    }
    const auto report = [this](std::int32_t code, const std::string& message) { owner_.raiseError(code, message); };
    for (const std::string& name : batch.names) {
        if (aborted())
            return;
        const std::string path = batch.folder + name;
        if (settings_.supportOfficeDocs && documents_ && documents_->Handles(path)) {
            std::string text, error;
            if (!documents_->Extract(path, text, error)) {
                report(kErrorDocumentText, "Cannot read the text of " + path + (error.empty() ? "" : ": " + error));
                continue;
            }
            if (!SearchLines(*matcher_, *scratch, text.data(), text.size(), 1, path, batch.hits, error))
                report(kErrorPatternTooComplex, "The search text is too complex for a line of " + path + ": " + error);
            continue;
        }
        // By name in the open folder where possible: no path walk per file.
        if (batch.dir)
            SearchOneFile(batch.dir->fd(), name.c_str(), path, *matcher_, *scratch, batch.hits, report, owner_.background_.AbortFlag());
        else
            SearchOneFile(AT_FDCWD, path.c_str(), path, *matcher_, *scratch, batch.hits, report, owner_.background_.AbortFlag());
    }
}

} // namespace gleanseek
