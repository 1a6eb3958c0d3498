// tv-folder-compare [-c] [-s] [-l] [-f PATTERNS] ORIGINAL MODIFIED
// Compares two folder trees (always with subfolders) and prints the number
// of records. -c compares contents, -s also reports equal files, -l lists
// the records, -f limits the files to the patterns.

#include "components/skeinmatch/FolderCompareEngine.h"

#include <condition_variable>
#include <mutex>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

namespace {

// Waits for the end without polling, so that the waiting costs the walk no
// processor time.
struct Events : skeinmatch::FolderCompareEvents {
    std::mutex m;
    std::condition_variable cv;
    bool done = false;
    void CompareError(std::int32_t, const std::string& message) override
    {
        std::fprintf(stderr, "%s\n", message.c_str());
    }
    void CompareCompleted() override
    {
        std::lock_guard l(m);
        done = true;
        cv.notify_all();
    }
};

} // namespace

int main(int argc, char** argv)
{
    bool content = false, same = false, list = false;
    std::string filter = "*.*";
    int i = 1;
    for (; i < argc && argv[i][0] == '-'; ++i) {
        if (!std::strcmp(argv[i], "-c"))
            content = true;
        else if (!std::strcmp(argv[i], "-s"))
            same = true;
        else if (!std::strcmp(argv[i], "-l"))
            list = true;
        else if (!std::strcmp(argv[i], "-f") && i + 1 < argc)
            filter = argv[++i];
        else
            break;
    }
    if (argc - i != 2) {
        std::fprintf(stderr, "usage: %s [-c] [-s] [-l] [-f PATTERNS] ORIGINAL MODIFIED\n", argv[0]);
        return 2;
    }
    skeinmatch::FolderCompareEngine e;
    e.setFolderOriginal(argv[i]);
    e.setFolderModified(argv[i + 1]);
    e.setFileFilter(filter);
    e.setContentCompare(content);
    e.setShowSameInBothPlaces(same);
    e.setDoSubDirectories(true);
    Events events;
    e.setEvents(&events);
    e.StartCompare();
    {
        std::unique_lock l(events.m);
        events.cv.wait(l, [&] { return events.done; });
    }
    while (e.InProgress())
        std::this_thread::yield();
    int headings = 0;
    skeinmatch::FolderRecord r;
    for (int n = 0; e.GetRecord(n, r); ++n) {
        const bool both = !r.lOnlyInOriginal && !r.lOnlyInModified;
        if (!r.lIsFile && both && r.lContentStatus == skeinmatch::kContentSame)
            ++headings;
        if (list)
            std::printf("%s%s\t%s\t%d%d%d\n", r.lIsFile ? r.sPathOriginal.c_str() : "", r.sName.c_str(),
                        r.lOnlyInOriginal ? "<" : r.lOnlyInModified ? ">" : "=", r.lSizeCompare, r.lDateCompare,
                        r.lContentStatus);
    }
    std::printf("%d records, %d of them folder headings\n", e.RecordCount(), headings);
    return 0;
}
