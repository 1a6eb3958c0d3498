#include "components/skeinmatch/FolderWalk.h"

#include "components/skeinmatch/DirectoryListing.h"
#include "components/skeinmatch/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace skeinmatch {
namespace {

// Small enough that a folder of thousands of files is shared out among the
// workers, large enough that queueing costs nothing next to the stat calls.
constexpr std::size_t kItemsPerBatch = 64;
// Each queued batch may hold its folders open; this keeps the number of
// descriptors well below the usual limit of 1024.
constexpr std::size_t kQueuedBatches = 64;
constexpr std::size_t kBlock = 256 * 1024;

template <class T>
std::int32_t sign(T a, T b)
{
    return a > b ? 1 : a < b ? -1 : 0;
}

bool readLink(int dirfd, const char* name, std::string& target, int& err)
{
    char buf[PATH_MAX + 1];
    const ssize_t n = ::readlinkat(dirfd, name, buf, sizeof buf);
    if (n < 0) {
        err = errno;
        return false;
    }
    target.assign(buf, static_cast<std::size_t>(n));
    return true;
}

} // namespace

std::int32_t CompareFileContents(const FileRef& a, const FileRef& b, std::uint64_t size,
                                 const std::atomic<bool>& abort, std::string& error)
{
    FileDescriptor fa(::openat(a.dirfd, a.name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (fa.get() < 0) {
        error = DescribeError("Cannot open file", a.path, errno);
        return kContentUnreadable;
    }
    FileDescriptor fb(::openat(b.dirfd, b.name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (fb.get() < 0) {
        error = DescribeError("Cannot open file", b.path, errno);
        return kContentUnreadable;
    }
    // One pair of buffers per worker thread, kept for the thread's life.
    thread_local std::unique_ptr<char[]> bufA(new char[kBlock]);
    thread_local std::unique_ptr<char[]> bufB(new char[kBlock]);
    // Both files have `size` bytes (the caller compared the sizes), so each
    // block is one read of a known length and no read is spent on finding
    // the end.
    std::uint64_t left = size;
    while (left > 0) {
        const std::size_t want = left < kBlock ? static_cast<std::size_t>(left) : kBlock;
        std::size_t ga = 0, gb = 0;
        int err = 0;
        if (!ReadFull(fa.get(), bufA.get(), want, ga, err)) {
            error = DescribeError("Cannot read file", a.path, err);
            return kContentUnreadable;
        }
        if (!ReadFull(fb.get(), bufB.get(), want, gb, err)) {
            error = DescribeError("Cannot read file", b.path, err);
            return kContentUnreadable;
        }
        // A file that shrank while being read is not the same as one that
        // did not.
        if (ga != want || gb != want || std::memcmp(bufA.get(), bufB.get(), want) != 0)
            return kContentDiffers;
        left -= want;
        if (abort.load(std::memory_order_relaxed))
            break;
    }
    return kContentSame;
}

std::int32_t CompareModificationTimes(std::int64_t aSec, std::int64_t aNsec, std::int64_t bSec, std::int64_t bNsec)
{
    constexpr __int128 kSecond = 1'000'000'000;
    constexpr __int128 kTolerance = 2 * kSecond;
    constexpr __int128 kHour = 3600 * kSecond;
    const __int128 d = (static_cast<__int128>(aSec) - bSec) * kSecond + (static_cast<__int128>(aNsec) - bNsec);
    const __int128 ad = d < 0 ? -d : d;
    if (ad <= kTolerance)
        return 0;
    const __int128 offHour = ad > kHour ? ad - kHour : kHour - ad;
    if (offHour <= kTolerance)
        return 0;
    return d > 0 ? 1 : -1;
}

FolderCompareEngine::Run::Run(FolderCompareEngine& engine, Settings settings)
    : engine_(engine), settings_(std::move(settings)), filter_(settings_.fileFilter)
{
}

bool FolderCompareEngine::Run::aborted() const
{
    return engine_.background_.Aborted();
}

void FolderCompareEngine::Run::Execute()
{
    pipeline_ = std::make_unique<OrderedPipeline<FolderBatch>>(
        engine_.background_, DiskWorkerCount(), kQueuedBatches, [this](FolderBatch& b) { process(b); },
        [this](FolderBatch& b) { publish(b); });
    engine_.raiseStarted();
    try {
        walk(std::make_shared<const std::string>(WithTrailingSlash(settings_.folderOriginal)),
             std::make_shared<const std::string>(WithTrailingSlash(settings_.folderModified)),
             LastComponent(settings_.folderOriginal), 0);
    } catch (const std::exception& e) {
        engine_.raiseError(kFolderErrorStopped, std::string("The comparison stopped early: ") + e.what());
    }
    // Every record is delivered before the walk counts as finished.
    pipeline_->Finish();
    pipeline_.reset();
}

bool FolderCompareEngine::Run::walk(std::shared_ptr<const std::string> pathO,
                                     std::shared_ptr<const std::string> pathM, const std::string& name,
                                     int depth)
{
    if (aborted())
        return false;
    std::vector<DirEntry> listO, listM;
    int errO = 0, errM = 0;
    std::shared_ptr<const DirHandle> dirO, dirM;
    const bool okO = ListDirectory(*pathO, listO, errO, &dirO);
    const bool okM = ListDirectory(*pathM, listM, errM, &dirM);

    FolderBatch batch;
    batch.depth = depth;
    batch.opensFolder = true;
    batch.pathOriginal = pathO;
    batch.pathModified = pathM;
    batch.dirOriginal = dirO;
    batch.dirModified = dirM;
    batch.folder.sName = name;
    batch.folder.sPathOriginal = *pathO;
    batch.folder.sPathModified = *pathM;
    if (!okO || !okM) {
        if (!okO)
            engine_.raiseError(kFolderErrorUnreadableFolder, DescribeError("Cannot read folder", *pathO, errO));
        if (!okM)
            engine_.raiseError(kFolderErrorUnreadableFolder, DescribeError("Cannot read folder", *pathM, errM));
        batch.folder.lContentStatus = kContentUnreadable;
        batch.folderForced = true;
        return pipeline_->Push(std::move(batch));
    }

    // Both listings are in NameOrder, so one pass pairs equal names.
    struct Pair {
        const DirEntry* o;
        const DirEntry* m;
    };
    std::vector<Pair> merged;
    merged.reserve(std::max(listO.size(), listM.size()));
    std::size_t i = 0, j = 0;
    while (i < listO.size() || j < listM.size()) {
        if (j == listM.size()) {
            merged.push_back({&listO[i++], nullptr});
        } else if (i == listO.size()) {
            merged.push_back({nullptr, &listM[j++]});
        } else if (listO[i].name == listM[j].name) {
            merged.push_back({&listO[i++], &listM[j++]});
        } else if (NameOrder()(listO[i].key, listO[i].name, listM[j].key, listM[j].name)) {
            merged.push_back({&listO[i++], nullptr});
        } else {
            merged.push_back({nullptr, &listM[j++]});
        }
    }

    const auto isFile = [](const DirEntry* e) {
        return e && (e->type == EntryType::File || e->type == EntryType::Link);
    };
    const auto isFolder = [](const DirEntry* e) { return e && e->type == EntryType::Folder; };
    const bool everything = filter_.Empty() || filter_.MatchesEverything();
    const auto freshBatch = [&] {
        FolderBatch b;
        b.depth = depth;
        b.pathOriginal = pathO;
        b.pathModified = pathM;
        b.dirOriginal = dirO;
        b.dirModified = dirM;
        return b;
    };

    for (const Pair& p : merged) {
        const bool fO = isFile(p.o), fM = isFile(p.m);
        if (!fO && !fM)
            continue;
        const std::string& n = fO ? p.o->name : p.m->name;
        if (!everything && !filter_.Matches(n))
            continue;
        batch.items.push_back({n, fO, fM, true});
        if (batch.items.size() == kItemsPerBatch) {
            if (!pipeline_->Push(std::move(batch)))
                return false;
            batch = freshBatch();
        }
    }
    // Sent even when empty: the folder's record must be known before the
    // records of its subfolders.
    if (!pipeline_->Push(std::move(batch)))
        return false;

    FolderBatch leaves = freshBatch();
    for (const Pair& p : merged) {
        const bool dO = isFolder(p.o), dM = isFolder(p.m);
        if (dO && dM) {
            if (!settings_.doSubDirectories)
                continue;
            if (!leaves.items.empty()) {
                if (!pipeline_->Push(std::move(leaves)))
                    return false;
                leaves = freshBatch();
            }
            const std::string& n = p.o->name;
            if (!walk(std::make_shared<const std::string>(*pathO + n + "/"),
                      std::make_shared<const std::string>(*pathM + n + "/"), n, depth + 1))
                return false;
        } else if (dO || dM) {
            leaves.items.push_back({dO ? p.o->name : p.m->name, dO, dM, false});
        }
    }
    if (!leaves.items.empty() && !pipeline_->Push(std::move(leaves)))
        return false;
    return !aborted();
}

void FolderCompareEngine::Run::process(FolderBatch& batch)
{
    batch.found.clear();
    for (const FolderItem& item : batch.items) {
        if (aborted())
            return;
        FolderRecord r;
        r.sName = item.name;
        r.lIsFile = item.isFile ? 1 : 0;
        if (item.isFile) {
            r.sPathOriginal = *batch.pathOriginal;
            r.sPathModified = *batch.pathModified;
        } else {
            r.sPathOriginal = *batch.pathOriginal + item.name + "/";
            r.sPathModified = *batch.pathModified + item.name + "/";
        }
        bool show;
        if (item.inOriginal && item.inModified) {
            compareBoth(batch, item, r);
            const bool failed = r.lContentStatus != kContentSame && r.lContentStatus != kContentDiffers;
            const bool different = r.lContentStatus != kContentSame || r.lSizeCompare != 0 ||
                                   (r.lDateCompare != 0 && !settings_.ignoreDateDifferences);
            show = failed || (different ? settings_.showDifferentInBothPlaces : settings_.showSameInBothPlaces);
        } else {
            r.lOnlyInOriginal = item.inOriginal ? 1 : 0;
            r.lOnlyInModified = item.inModified ? 1 : 0;
            show = item.inOriginal ? settings_.showOnlyInMaster : settings_.showOnlyInSource;
        }
        if (show)
            batch.found.push_back(std::move(r));
    }
}

void FolderCompareEngine::Run::compareBoth(const FolderBatch& batch, const FolderItem& item, FolderRecord& r)
{
    const std::string fo = *batch.pathOriginal + item.name;
    const std::string fm = *batch.pathModified + item.name;
    // By name in the open folders where possible: no path walk per call.
    const FileRef ro = batch.dirOriginal ? FileRef{batch.dirOriginal->fd(), item.name.c_str(), fo}
                                         : FileRef{AT_FDCWD, fo.c_str(), fo};
    const FileRef rm = batch.dirModified ? FileRef{batch.dirModified->fd(), item.name.c_str(), fm}
                                         : FileRef{AT_FDCWD, fm.c_str(), fm};
    const auto statOne = [&](const FileRef& f, struct stat& st) {
        if (::fstatat(f.dirfd, f.name, &st, AT_SYMLINK_NOFOLLOW) != 0) {
            engine_.raiseError(kFolderErrorUnreadableFile, DescribeError("Cannot read file", f.path, errno));
            return false;
        }
        if (!S_ISREG(st.st_mode) && !S_ISLNK(st.st_mode)) {
            engine_.raiseError(kFolderErrorUnreadableFile, "File changed during the comparison: " + f.path);
            return false;
        }
        return true;
    };
    struct stat so, sm;
    if (!statOne(ro, so) || !statOne(rm, sm)) {
        r.lContentStatus = kContentUnreadable;
        return;
    }
    r.lSizeCompare = sign(so.st_size, sm.st_size);
    r.lDateCompare = CompareModificationTimes(so.st_mtim.tv_sec, so.st_mtim.tv_nsec, sm.st_mtim.tv_sec,
                                              sm.st_mtim.tv_nsec);
    const bool linkO = S_ISLNK(so.st_mode), linkM = S_ISLNK(sm.st_mode);
    if (linkO != linkM || r.lSizeCompare != 0) {
        r.lContentStatus = kContentDiffers;
    } else if (!settings_.contentCompare) {
        r.lContentStatus = kContentSame;
    } else if (linkO) {
        std::string to, tm;
        int err = 0;
        if (!readLink(ro.dirfd, ro.name, to, err) || !readLink(rm.dirfd, rm.name, tm, err)) {
            engine_.raiseError(kFolderErrorUnreadableFile, DescribeError("Cannot read link", to.empty() ? fo : fm, err));
            r.lContentStatus = kContentUnreadable;
        } else {
            r.lContentStatus = to == tm ? kContentSame : kContentDiffers;
        }
    } else if (so.st_dev == sm.st_dev && so.st_ino == sm.st_ino) {
        r.lContentStatus = kContentSame;
    } else {
        std::string error;
        r.lContentStatus =
            CompareFileContents(ro, rm, static_cast<std::uint64_t>(so.st_size), engine_.background_.AbortFlag(), error);
        if (r.lContentStatus == kContentUnreadable)
            engine_.raiseError(kFolderErrorUnreadableFile, error);
    }
}

void FolderCompareEngine::Run::publish(FolderBatch& batch)
{
    std::vector<FolderRecord> out;
    const auto deliverOpenFolders = [&] {
        for (Open& o : open_)
            if (!o.delivered) {
                out.push_back(o.record);
                o.delivered = true;
            }
    };
    if (batch.opensFolder) {
        while (!open_.empty() && open_.back().depth >= batch.depth)
            open_.pop_back();
        open_.push_back({batch.depth, std::move(batch.folder), false});
        if (batch.folderForced)
            deliverOpenFolders();
    } else {
        while (!open_.empty() && open_.back().depth > batch.depth)
            open_.pop_back();
    }
    for (FolderRecord& r : batch.found) {
        deliverOpenFolders();
        out.push_back(std::move(r));
    }
    engine_.records_.Append(std::move(out));
}

} // namespace skeinmatch
