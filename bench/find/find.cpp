// tv-find [-i] [-w] [-p] [-d] [-l] [-t TYPES] TEXT FOLDER
// Finds TEXT in the files under FOLDER and prints the number of hits.
// -i ignores case, -w whole words only, -p TEXT is a pattern (? * [] ^ $ \),
// -d searches office documents in their text, -l lists the hits,
// -t limits the files to the patterns.

#include "components/gleanseek/Gleanseek.h"

#include <condition_variable>
#include <mutex>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

namespace {

// Waits for the end without polling, so that the waiting costs the search
// no processor time.
struct Events : gleanseek::GleanseekEvents {
    std::mutex m;
    std::condition_variable cv;
    bool done = false;
    void SearchError(std::int32_t code, const std::string& message) override
    {
        std::fprintf(stderr, "%d %s\n", code, message.c_str());
    }
    void SearchCompleted() override
    {
        std::lock_guard l(m);
        done = true;
        cv.notify_all();
    }
    void wait(const gleanseek::Gleanseek& g)
    {
        std::unique_lock l(m);
        cv.wait(l, [&] { return done || !g.InProgress(); });
        l.unlock();
        while (g.InProgress())
            std::this_thread::yield();
    }
};

} // namespace

int main(int argc, char** argv)
{
    gleanseek::Gleanseek g;
    Events events;
    g.setEvents(&events);
    bool list = false, ignoreCase = false;
    int i = 1;
    for (; i < argc && argv[i][0] == '-'; ++i) {
        if (!std::strcmp(argv[i], "-i"))
            ignoreCase = true;
        else if (!std::strcmp(argv[i], "-w"))
            g.setWholeWordOnly(true);
        else if (!std::strcmp(argv[i], "-p"))
            g.setRegularExpression(true);
        else if (!std::strcmp(argv[i], "-d"))
            g.setSupportOfficeDocs(true);
        else if (!std::strcmp(argv[i], "-l"))
            list = true;
        else if (!std::strcmp(argv[i], "-t") && i + 1 < argc)
            g.setSearchFileTypes(argv[++i]);
        else
            break;
    }
    if (argc - i != 2) {
        std::fprintf(stderr, "usage: %s [-i] [-w] [-p] [-d] [-l] [-t TYPES] TEXT FOLDER\n", argv[0]);
        return 2;
    }
    g.setCaseSensitive(!ignoreCase);
    g.setSearchText(argv[i]);
    g.setSearchFolder(argv[i + 1]);
    g.StartSearch();
    events.wait(g);
    if (list) {
        gleanseek::Hit h;
        for (int n = 0; g.GetHit(n, h); ++n)
            std::printf("%s:%d:%d:%s\n", h.sFile.c_str(), h.lLine, h.lCol, h.sItem.c_str());
    }
    std::printf("%d hits\n", g.HitCount());
    return 0;
}
