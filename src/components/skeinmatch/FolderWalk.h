#pragma once
// The body of one folder comparison run: the walker that lists both trees
// and the per-file comparison that worker threads carry out.

#include "components/skeinmatch/DirectoryListing.h"
#include "components/skeinmatch/FileNamePattern.h"
#include "components/skeinmatch/FolderCompareEngine.h"
#include "components/skeinmatch/OrderedPipeline.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace skeinmatch {

// A file as a name in an open folder (or, with AT_FDCWD, as a path), with
// its full path for messages.
struct FileRef {
    int dirfd;
    const char* name;
    const std::string& path;
};

// Compares two regular files of `size` bytes each, byte by byte. Returns
// kContentSame, kContentDiffers, or kContentUnreadable with a message. Gives
// up early (as "same") when `abort` becomes true.
std::int32_t CompareFileContents(const FileRef& a, const FileRef& b, std::uint64_t size,
                                 const std::atomic<bool>& abort, std::string& error);

// The date rule: 0 when the two modification times count as equal,
// otherwise the sign of (a - b).
std::int32_t CompareModificationTimes(std::int64_t aSec, std::int64_t aNsec, std::int64_t bSec, std::int64_t bNsec);

struct FolderItem {
    std::string name;
    bool inOriginal = false;
    bool inModified = false;
    bool isFile = true;
};

// Consecutive entries of one folder, in walk order. `depth` is the depth of
// the folder they belong to (the root is 0).
struct FolderBatch {
    int depth = 0;
    bool opensFolder = false;   // first batch of a folder: carries its record
    bool folderForced = false;  // the folder could not be read: always report it
    FolderRecord folder;
    std::shared_ptr<const std::string> pathOriginal, pathModified;  // end in '/'
    std::shared_ptr<const DirHandle> dirOriginal, dirModified;      // may be null
    std::vector<FolderItem> items;
    std::vector<FolderRecord> found;  // filled by a worker: the records to report
};

class FolderCompareEngine::Run {
public:
    Run(FolderCompareEngine& engine, Settings settings);
    void Execute();

private:
    struct Open {
        int depth;
        FolderRecord record;
        bool delivered;
    };

    bool walk(std::shared_ptr<const std::string> pathO, std::shared_ptr<const std::string> pathM,
              const std::string& name, int depth);
    void process(FolderBatch& batch);
    void compareBoth(const FolderBatch& batch, const FolderItem& item, FolderRecord& r);
    void publish(FolderBatch& batch);
    bool aborted() const;

    FolderCompareEngine& engine_;
    const Settings settings_;
    const FileNamePattern filter_;
    std::unique_ptr<OrderedPipeline<FolderBatch>> pipeline_;

    // Folders whose record waits for the first finding inside them; touched
    // only by publish(), which runs under the engine's publish mutex.
    std::vector<Open> open_;
};

} // namespace skeinmatch
