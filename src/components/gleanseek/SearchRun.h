#pragma once
// The body of one search: the walker that lists folders and the per-file
// search that worker threads carry out.

#include "components/gleanseek/Gleanseek.h"
#include "components/skeinmatch/DirectoryListing.h"
#include "components/skeinmatch/FileNamePattern.h"
#include "components/skeinmatch/OrderedPipeline.h"

#include <memory>
#include <string>
#include <vector>

namespace gleanseek {

// Files of one folder, in walk order.
struct FileBatch {
    std::string folder;                     // ends in '/'
    std::shared_ptr<const skeinmatch::DirHandle> dir;  // may be null
    std::vector<std::string> names;
    std::vector<Hit> hits;  // filled by a worker
};

// Searches one file as the engine does (encoding, binary test, large files in
// pieces) and appends its hits. The file is `name` in the open folder
// `dirfd` (AT_FDCWD: `name` is a path); `path` is its full path, for hits
// and messages. Errors go to `report`.
void SearchOneFile(int dirfd, const char* name, const std::string& path, const TextMatcher& matcher,
                   TextMatcher::Scratch& scratch,
                   std::vector<Hit>& hits,
                   const std::function<void(std::int32_t code, const std::string& message)>& report,
                   const std::atomic<bool>& abort);

class Gleanseek::Run {
public:
    Run(Gleanseek& owner, Settings settings, std::unique_ptr<TextMatcher> matcher,
        std::shared_ptr<const DocumentTextSource> documents);
    ~Run();
    void Execute();

private:
    bool aborted() const;
    void walk(const std::string& folder);
    void process(FileBatch& batch);

    Gleanseek& owner_;
    const Settings settings_;
    const std::unique_ptr<TextMatcher> matcher_;
    const std::shared_ptr<const DocumentTextSource> documents_;
    const skeinmatch::FileNamePattern filter_;
    std::unique_ptr<skeinmatch::OrderedPipeline<FileBatch>> pipeline_;
};

} // namespace gleanseek
