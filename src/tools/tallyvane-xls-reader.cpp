// tallyvane-xls-reader: reads a legacy binary workbook (.xls) with FreeXL
// and writes its cells to standard output as frames (XlsFrames.h).
//
// FreeXL reads past its buffers on damaged files. Running it here, in a
// process of its own with limits on CPU time, memory and files, means such a
// file costs at most this process: the program that started it sees a child
// that died or sent garbage and says the file is invalid.
//
// Usage: tallyvane-xls-reader FILE SHEETS
//   SHEETS is "*" or 1-based numbers and ranges: "1-3,5".
// Exit status: 0 the workbook was written, 1 FreeXL refused it, 2 usage.

#include "components/lexiform/XlsFrames.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <freexl.h>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace frames = lexiform::xlsframes;

namespace {

// A workbook FreeXL can read needs far less than this; the limit is there
// so that a file that makes it allocate without end fails here rather than
// pressing the whole machine. Not under the sanitizers, whose shadow
// memory alone reserves terabytes of address space.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool limitMemory = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool limitMemory = false;
#else
constexpr bool limitMemory = true;
#endif
#else
constexpr bool limitMemory = true;
#endif
constexpr rlim_t memoryBytes = rlim_t(2) << 30;
// The largest sheets FreeXL reads (65,536 x 256 cells) take a few seconds.
constexpr rlim_t cpuSeconds = 60;

void limitSelf()
{
    rlimit cpu{cpuSeconds, cpuSeconds + 1};
    setrlimit(RLIMIT_CPU, &cpu);
    if (limitMemory) {
        rlimit as{memoryBytes, memoryBytes};
        setrlimit(RLIMIT_AS, &as);
    }
    // It writes no files and must leave no core of a hostile file behind.
    rlimit none{0, 0};
    setrlimit(RLIMIT_FSIZE, &none);
    setrlimit(RLIMIT_CORE, &none);
}

bool parseSheets(const char* text, bool& all, std::vector<std::pair<unsigned long, unsigned long>>& ranges)
{
    if (std::strcmp(text, "*") == 0) {
        all = true;
        return true;
    }
    const char* p = text;
    while (*p) {
        char* end = nullptr;
        errno = 0;
        const unsigned long first = std::strtoul(p, &end, 10);
        if (end == p || errno)
            return false;
        unsigned long last = first;
        p = end;
        if (*p == '-') {
            last = std::strtoul(++p, &end, 10);
            if (end == p || errno || last < first)
                return false;
            p = end;
        }
        ranges.emplace_back(first, last);
        if (*p == ',')
            ++p;
        else if (*p)
            return false;
    }
    return !ranges.empty();
}

class Out {
public:
    void tag(char t) { std::fputc(t, stdout); }
    template <typename T> void put(T v) { std::fwrite(&v, sizeof v, 1, stdout); }
    void bytes(const char* s)
    {
        const std::uint32_t n = s ? std::uint32_t(std::strlen(s)) : 0;
        put(n);
        if (n)
            std::fwrite(s, 1, n, stdout);
    }
    void cell(char t, unsigned int row, unsigned short column)
    {
        tag(t);
        put(std::uint32_t(row));
        put(std::uint16_t(column));
    }
    bool finish()
    {
        tag(frames::End);
        return std::fflush(stdout) == 0 && !std::ferror(stdout);
    }
};

struct Handle {
    ~Handle()
    {
        if (h)
            freexl_close(h);
    }
    const void* h = nullptr;
};

int readWorkbook(const char* path, bool all, const std::vector<std::pair<unsigned long, unsigned long>>& ranges)
{
    Handle xl;
    if (freexl_open(path, &xl.h) != FREEXL_OK || !xl.h)
        return frames::ExitInvalid;
    unsigned int count = 0;
    if (freexl_get_info(xl.h, FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK || count > 65535)
        return frames::ExitInvalid;
    Out out;
    out.tag(frames::Book);
    out.put(std::uint32_t(count));
    for (unsigned int number = 1; number <= count; ++number) {
        bool wanted = all;
        for (const auto& [first, last] : ranges)
            wanted = wanted || (number >= first && number <= last);
        if (!wanted)
            continue;
        const unsigned short index = static_cast<unsigned short>(number - 1);
        const char* name = nullptr;
        if (freexl_get_worksheet_name(xl.h, index, &name) != FREEXL_OK)
            name = nullptr;
        if (freexl_select_active_worksheet(xl.h, index) != FREEXL_OK)
            return frames::ExitInvalid;
        unsigned int rows = 0;
        unsigned short columns = 0;
        if (freexl_worksheet_dimensions(xl.h, &rows, &columns) != FREEXL_OK)
            return frames::ExitInvalid;
        out.tag(frames::Sheet);
        out.put(std::uint32_t(number));
        out.bytes(name);
        for (unsigned int r = 0; r < rows; ++r) {
            for (unsigned short c = 0; c < columns; ++c) {
                FreeXL_CellValue cell;
                if (freexl_get_cell_value(xl.h, r, c, &cell) != FREEXL_OK)
                    continue;
                switch (cell.type) {
                case FREEXL_CELL_INT:
                    out.cell(frames::Integer, r, c);
                    out.put(std::int64_t(cell.value.int_value));
                    break;
                case FREEXL_CELL_DOUBLE:
                    out.cell(frames::Double, r, c);
                    out.put(cell.value.double_value);
                    break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                case FREEXL_CELL_DATE:
                case FREEXL_CELL_DATETIME:
                case FREEXL_CELL_TIME:
                    out.cell(frames::Text, r, c);
                    out.bytes(cell.value.text_value);
                    break;
                default:
                    // Empty, or a formula whose cached result FreeXL does
                    // not read: the program fills these from another reader.
                    out.cell(frames::NoValue, r, c);
                    break;
                }
            }
        }
    }
    return out.finish() ? 0 : frames::ExitInvalid;
}

} // namespace

// FreeXL leaks inside freexl_open on some damaged files; the blocks go with
// this short-lived process, so a sanitizer build's leak check at exit would
// only turn a readable workbook into a failed run.
extern "C" int __lsan_is_turned_off()
{
    return 1;
}

int main(int argc, char** argv)
{
    limitSelf();
    bool all = false;
    std::vector<std::pair<unsigned long, unsigned long>> ranges;
    if (argc != 3 || !parseSheets(argv[2], all, ranges)) {
        std::fprintf(stderr, "Usage: %s FILE SHEETS\n", frames::ReaderName);
        return frames::ExitUsage;
    }
    static char buffer[1 << 16];
    std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
    return readWorkbook(argv[1], all, ranges);
}
