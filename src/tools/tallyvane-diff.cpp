// tallyvane-diff: the comparison engine on the command line, for scripts and
// for measuring. Prints the differences in the classic "normal" diff form
// (which patch applies), and can write the engine's reports.
//
// Exit status: 0 the files are the same, 1 they differ, 2 trouble.

#include "components/skeinmatch/BufferedOut.h"
#include "components/skeinmatch/Skeinmatch.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

const char* const usage =
    "Usage: tallyvane-diff ORIGINAL MODIFIED [options]\n"
    "Compares two text files line by line and prints the differences in the\n"
    "normal diff format.\n"
    "\n"
    "  -i, --ignore-case         letters that differ only in case are equal\n"
    "  -w, --ignore-whitespace   blanks take no part in comparing lines\n"
    "  -B, --ignore-empty-lines  empty lines are not compared\n"
    "      --faster              cheaper matching for very large or very different files\n"
    "      --larger-sections     join differences that only a few lines keep apart\n"
    "      --horizon N           look for a line's counterpart only within N lines\n"
    "  -q, --brief               only say whether the files differ\n"
    "      --report FILE         also write a report to FILE\n"
    "      --type 1|2|3          report type: 1 HTML (default), 2 unified text, 3 CSV\n"
    "      --style 1|2           HTML style: 1 all in one (default), 2 side by side\n"
    "      --title TEXT          report title\n"
    "      --help                show this text\n"
    "      --version             show the version\n"
    "\n"
    "Exit status is 0 if the files are the same, 1 if they differ, 2 on trouble.\n";

using skeinmatch::BufferedOut;

void range(BufferedOut& out, int first, int last)
{
    out.number(first);
    if (last != first) {
        out.put(',');
        out.number(last);
    }
}

void lines(BufferedOut& out, const skeinmatch::LineText& t, int first, int last, char mark)
{
    for (int n = first; n <= last; ++n) {
        out.put(mark);
        out.put(' ');
        out.put(t.rawLine(static_cast<std::size_t>(n - 1)));
        out.put('\n');
        if (!t.hasLineEnd(static_cast<std::size_t>(n - 1)))
            out.put("\\ No newline at end of file\n");
    }
}

void printNormal(BufferedOut& out, const Skeinmatch& e)
{
    const auto& a = e.originalText();
    const auto& b = e.modifiedText();
    for (const auto& r : e.patchRecords()) {
        if (r.kind == skeinmatch::kindAddition) {
            out.number(r.leftFirst);
            out.put('a');
            range(out, r.rightFirst, r.rightLast);
            out.put('\n');
            lines(out, b, r.rightFirst, r.rightLast, '>');
        } else if (r.kind == skeinmatch::kindDeletion) {
            range(out, r.leftFirst, r.leftLast);
            out.put('d');
            out.number(r.rightFirst);
            out.put('\n');
            lines(out, a, r.leftFirst, r.leftLast, '<');
        } else {
            range(out, r.leftFirst, r.leftLast);
            out.put('c');
            range(out, r.rightFirst, r.rightLast);
            out.put('\n');
            lines(out, a, r.leftFirst, r.leftLast, '<');
            out.put("---\n");
            lines(out, b, r.rightFirst, r.rightLast, '>');
        }
    }
}

bool parseNumber(const char* s, int& v)
{
    char* end = nullptr;
    long n = std::strtol(s, &end, 10);
    if (!*s || *end || n < -1000000000L || n > 1000000000L)
        return false;
    v = static_cast<int>(n);
    return true;
}

int trouble(const std::string& msg)
{
    std::fprintf(stderr, "tallyvane-diff: %s\n", msg.c_str());
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    Skeinmatch e;
    std::string files[2];
    int fileCount = 0;
    bool brief = false;
    std::string report, title;
    int type = 1, style = 1;

    for (int i = 1; i < argc; ++i) {
        std::string_view a = argv[i];
        auto value = [&](const char* name) -> const char* {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "tallyvane-diff: %s needs a value\n", name);
                std::exit(2);
            }
            return argv[++i];
        };
        if (a == "--help") {
            std::fputs(usage, stdout);
            return 0;
        } else if (a == "--version") {
            std::printf("tallyvane-diff %s\n", TALLYVANE_VERSION);
            return 0;
        } else if (a == "-i" || a == "--ignore-case") {
            e.setIgnoreCase(true);
        } else if (a == "-w" || a == "--ignore-whitespace") {
            e.setIgnoreWhitespace(true);
        } else if (a == "-B" || a == "--ignore-empty-lines") {
            e.setIgnoreEmptyLines(true);
        } else if (a == "--faster") {
            e.setCompareFaster(true);
        } else if (a == "--larger-sections") {
            e.setShowChangesInLargerSections(true);
        } else if (a == "-q" || a == "--brief") {
            brief = true;
        } else if (a == "--horizon") {
            int n = 0;
            if (!parseNumber(value("--horizon"), n) || n < 1)
                return trouble("--horizon needs a whole number of 1 or more");
            e.setUseLineBracket(true);
            e.setLineBracket(n);
        } else if (a == "--report") {
            report = value("--report");
        } else if (a == "--type") {
            if (!parseNumber(value("--type"), type) || type < 1 || type > 3)
                return trouble("--type is 1, 2 or 3");
        } else if (a == "--style") {
            if (!parseNumber(value("--style"), style) || style < 1 || style > 2)
                return trouble("--style is 1 or 2");
        } else if (a == "--title") {
            title = value("--title");
        } else if (a.size() > 1 && a[0] == '-' && a != "-") {
            return trouble("unknown option " + std::string(a) + " (try --help)");
        } else {
            if (fileCount == 2)
                return trouble("more than two files given (try --help)");
            files[fileCount++] = std::string(a == "-" ? "/dev/stdin" : a);
        }
    }
    if (fileCount != 2) {
        std::fputs(usage, stderr);
        return 2;
    }

    e.setMasterFile(files[0]);
    e.setSourceFile(files[1]);
    e.setCompareMode(0);
    e.CompareFiles();
    if (e.loadStatus() != 0)
        return trouble(e.loadError());

    if (!report.empty()) {
        e.setMasterTitle(files[0]);
        e.setSourceTitle(files[1]);
        if (!title.empty())
            e.setReportTitle(title);
        int r = e.CreateFileReport(report, type, type == 1 ? style : 0);
        if (r == -5)
            return trouble("cannot create " + report);
        if (r < 0)
            return trouble("report failed (" + std::to_string(r) + ")");
    }

    // A file that lacks only the final line end differs for a patch.
    const bool differ = !e.patchRecords().empty();
    if (brief) {
        if (differ)
            std::printf("Files %s and %s differ\n", files[0].c_str(), files[1].c_str());
    } else {
        BufferedOut out(stdout);
        printNormal(out, e);
        if (!out.ok())
            return trouble("cannot write the output");
    }
    if (std::fflush(stdout) != 0)
        return trouble("cannot write the output");
    return differ ? 1 : 0;
}
