// fuzz-link: tv_skeinmatch
// The line comparison and its reports on any two texts under any options:
// no crash, records that keep their rules, and without folding options
// records that turn the Original into the Modified.

#include "components/skeinmatch/LineDiff.h"
#include "components/skeinmatch/ReportWriters.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

void check(bool ok)
{
    if (!ok)
        abort();
}

void checkRecords(const std::vector<skeinmatch::DiffRecord>& recs, long na, long nb)
{
    long endA = 0, endB = 0;
    for (const auto& r : recs) {
        skeinmatch::RecordSpan s = skeinmatch::spanOf(r);
        check(r.kind == 'a' || r.kind == 'd' || r.kind == 'c');
        check(s.aBegin >= endA && s.bBegin >= endB && s.aEnd <= na && s.bEnd <= nb);
        check(s.aBegin <= s.aEnd && s.bBegin <= s.bEnd && (s.aEnd > s.aBegin || s.bEnd > s.bBegin));
        check((r.kind == 'c') == (s.aEnd > s.aBegin && s.bEnd > s.bBegin));
        // Records are apart: at least one equal line between two of them.
        check(&r == &recs.front() || s.aBegin > endA || s.bBegin > endB);
        endA = s.aEnd;
        endB = s.bEnd;
    }
}

void replay(const skeinmatch::LineText& a, const skeinmatch::LineText& b,
            const std::vector<skeinmatch::DiffRecord>& recs)
{
    std::size_t pa = 0, pb = 0;
    for (const auto& r : recs) {
        skeinmatch::RecordSpan s = skeinmatch::spanOf(r);
        // Lines between records are equal, pairwise.
        check(static_cast<long>(s.aBegin) - static_cast<long>(pa)
              == static_cast<long>(s.bBegin) - static_cast<long>(pb));
        for (; pa < static_cast<std::size_t>(s.aBegin); ++pa, ++pb)
            check(a.line(pa) == b.line(pb));
        pa = static_cast<std::size_t>(s.aEnd);
        pb = static_cast<std::size_t>(s.bEnd);
    }
    check(a.lineCount() - pa == b.lineCount() - pb);
    for (; pa < a.lineCount(); ++pa, ++pb)
        check(a.line(pa) == b.line(pb));
}

void writeReports(const skeinmatch::LineText& a, const skeinmatch::LineText& b,
                  const std::vector<skeinmatch::DiffRecord>& recs, skeinmatch::KeyOptions keys)
{
    skeinmatch::ReportInput in;
    in.original = &a;
    in.modified = &b;
    in.records = &recs;
    in.reportTitle = "t";
    in.masterTitle = "a";
    in.sourceTitle = "b";
    in.keys = keys;
    for (int kind = 0; kind < 4; ++kind) {
        char* buf = nullptr;
        std::size_t len = 0;
        std::FILE* f = open_memstream(&buf, &len);
        check(f != nullptr);
        {
            skeinmatch::BufferedOut out(f);
            if (kind < 2)
                skeinmatch::writeHtmlReport(out, in, kind == 1);
            else if (kind == 2)
                skeinmatch::writeUnifiedReport(out, in);
            else
                skeinmatch::writeCsvReport(out, in);
        }
        std::fclose(f);
        std::free(buf);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 3)
        return 0;
    // Byte 0: options; byte 1: the horizon; then the two texts, split where
    // byte 2 says (as a share of the rest).
    const unsigned flags = data[0];
    skeinmatch::DiffOptions o;
    o.ignoreCase = flags & 1;
    o.ignoreWhitespace = flags & 2;
    o.ignoreEmptyLines = flags & 4;
    o.largerSections = flags & 8;
    o.faster = flags & 16;
    o.useHorizon = flags & 32;
    o.forceTinyBudget = flags & 64;
    o.horizon = 1 + data[1] % 16;
    const std::string_view rest(reinterpret_cast<const char*>(data + 3), size - 3);
    const std::size_t cut = rest.size() * data[2] / 255;

    skeinmatch::LineText a, b;
    a.assign(rest.substr(0, cut));
    b.assign(rest.substr(cut));
    const auto recs = skeinmatch::diffLines(a, b, o, (flags & 128) != 0);
    checkRecords(recs, static_cast<long>(a.lineCount()), static_cast<long>(b.lineCount()));
    if (!o.ignoreCase && !o.ignoreWhitespace && !o.ignoreEmptyLines)
        replay(a, b, recs);
    writeReports(a, b, recs, {o.ignoreCase, o.ignoreWhitespace});
    return 0;
}
