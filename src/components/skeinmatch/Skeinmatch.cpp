#include "components/skeinmatch/Skeinmatch.h"

#include "components/skeinmatch/RunBoth.h"

#include <cstdint>
#include <new>
#include <sys/stat.h>

using skeinmatch::LineText;

namespace {

// Clears the busy flag however the compare ends.
struct BusyFlag {
    std::atomic<bool>& flag;
    explicit BusyFlag(std::atomic<bool>& f) : flag(f) { flag = true; }
    ~BusyFlag() { flag = false; }
};

std::time_t modificationTime(const std::string& path)
{
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0)
        return st.st_mtime;
    return std::time(nullptr);
}

std::uint64_t fileSize(const std::string& path)
{
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode))
        return static_cast<std::uint64_t>(st.st_size);
    return 0;
}

} // namespace

Skeinmatch::Skeinmatch() = default;
Skeinmatch::~Skeinmatch() = default;

bool Skeinmatch::GetDifference(int index, int& kind, int& leftFirst, int& leftLast,
                               int& rightFirst, int& rightLast) const
{
    if (index < 0 || index >= static_cast<int>(records_.size()))
        return false;
    const skeinmatch::DiffRecord& r = records_[static_cast<std::size_t>(index)];
    kind = r.kind;
    leftFirst = r.leftFirst;
    leftLast = r.leftLast;
    rightFirst = r.rightFirst;
    rightLast = r.rightLast;
    return true;
}

void Skeinmatch::CompareFiles()
{
    BusyFlag busy(inProgress_);
    records_.clear();
    compared_ = true;
    loadStatus_ = 0;
    loadError_.clear();

    // The two files are read whole before anything else, since other
    // viewers rewrite them for their own compares.
    std::string errA, errB;
    bool okA = false, okB = false;
    auto readA = [&] { okA = original_.load(masterFile_, errA); };
    auto readB = [&] { okB = modified_.load(sourceFile_, errB); };
    // A second thread pays only for large files; the section compares of
    // the viewer read two small files many times over.
    try {
        if (parallel_ && fileSize(masterFile_) + fileSize(sourceFile_) >= (1u << 20)) {
            skeinmatch::runBoth(readA, readB);
        } else {
            readA();
            readB();
        }
    } catch (const std::bad_alloc&) {
        original_.clear();
        modified_.clear();
        loadStatus_ = -2;
        loadError_ = "out of memory";
        return;
    }
    if (!okA || !okB) {
        loadStatus_ = okA ? -4 : -3;
        loadError_ = okA ? errB : errA;
        return;
    }
    originalTime_ = modificationTime(masterFile_);
    modifiedTime_ = modificationTime(sourceFile_);
    runCompare();
}

void Skeinmatch::compareTexts(std::string_view original, std::string_view modified)
{
    BusyFlag busy(inProgress_);
    records_.clear();
    compared_ = true;
    loadStatus_ = 0;
    loadError_.clear();
    if (!original_.assign(original)) {
        loadStatus_ = -3;
        loadError_ = "text too large";
        return;
    }
    if (!modified_.assign(modified)) {
        loadStatus_ = -4;
        loadError_ = "text too large";
        return;
    }
    originalTime_ = modifiedTime_ = std::time(nullptr);
    runCompare();
}

void Skeinmatch::runCompare()
{
    try {
        records_ = skeinmatch::diffLines(original_, modified_, options_, parallel_);
    } catch (const std::bad_alloc&) {
        // Out of memory leaves an empty list rather than ending the program.
        records_.clear();
        loadStatus_ = -2;
        loadError_ = "out of memory";
    }
}
