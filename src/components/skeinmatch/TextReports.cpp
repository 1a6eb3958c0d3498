// The plain text report (a unified diff that patch can apply to the
// Original) and the comma delimited one (one row per record).

#include "components/skeinmatch/ReportWriters.h"

#include <algorithm>

namespace skeinmatch {

namespace {

constexpr long contextLines = 3;

std::string stamp(std::time_t t)
{
    std::tm tm{};
    localtime_r(&t, &tm);
    char buf[64];
    std::strftime(buf, sizeof buf, "%Y-%m-%d %H:%M:%S.000000000 %z", &tm);
    return buf;
}

// "start,count" of a hunk header, start 1-based; an empty range names the
// line before it.
void hunkRange(BufferedOut& out, long begin, long count)
{
    if (count == 0) {
        out.number(begin);
        out.put(",0");
        return;
    }
    out.number(begin + 1);
    if (count != 1) {
        out.put(',');
        out.number(count);
    }
}

void diffLine(BufferedOut& out, const LineText& t, long index, char mark)
{
    out.put(mark);
    out.put(t.rawLine(static_cast<std::size_t>(index)));
    out.put('\n');
    if (!t.hasLineEnd(static_cast<std::size_t>(index)))
        out.put("\\ No newline at end of file\n");
}

void csvField(BufferedOut& out, std::string_view s)
{
    if (s.find_first_of(",\"\r\n") == std::string_view::npos) {
        out.put(s);
        return;
    }
    out.put('"');
    for (char c : s) {
        if (c == '"')
            out.put('"');
        out.put(c);
    }
    out.put('"');
}

} // namespace

bool writeUnifiedReport(BufferedOut& out, const ReportInput& in)
{
    const LineText& a = *in.original;
    const LineText& b = *in.modified;
    const auto& recs = *in.records;
    const long totalA = static_cast<long>(a.lineCount());
    const long totalB = static_cast<long>(b.lineCount());

    // Text before the first "---" line is ignored by patch.
    out.put(oneLine(in.reportTitle));
    out.put('\n');
    out.put("--- ");
    out.put(oneLine(in.masterTitle));
    out.put('\t');
    out.put(stamp(in.originalTime));
    out.put("\n+++ ");
    out.put(oneLine(in.sourceTitle));
    out.put('\t');
    out.put(stamp(in.modifiedTime));
    out.put('\n');

    std::vector<RecordSpan> spans;
    spans.reserve(recs.size() + 1);
    for (const DiffRecord& r : recs)
        spans.push_back(spanOf(r));
    showFinalLineEnds(spans, a, b);

    std::size_t k = 0;
    while (k < spans.size()) {
        // Records whose context would touch share a hunk.
        std::size_t m = k;
        while (m + 1 < spans.size()
               && (spans[m + 1].aBegin - spans[m].aEnd <= 2 * contextLines
                   || spans[m + 1].bBegin - spans[m].bEnd <= 2 * contextLines))
            ++m;
        const long prevA = k > 0 ? spans[k - 1].aEnd : 0;
        const long prevB = k > 0 ? spans[k - 1].bEnd : 0;
        const long nextA = m + 1 < spans.size() ? spans[m + 1].aBegin : totalA;
        const long nextB = m + 1 < spans.size() ? spans[m + 1].bBegin : totalB;
        const long lead = std::min({contextLines, spans[k].aBegin - prevA, spans[k].bBegin - prevB});
        const long trail = std::min({contextLines, nextA - spans[m].aEnd, nextB - spans[m].bEnd});
        const long aStart = spans[k].aBegin - lead;
        const long bStart = spans[k].bBegin - lead;
        const long aStop = spans[m].aEnd + trail;

        long context = 0, added = 0;
        {
            long pos = aStart;
            for (std::size_t r = k; r <= m; ++r) {
                context += spans[r].aBegin - pos;
                added += spans[r].bEnd - spans[r].bBegin;
                pos = spans[r].aEnd;
            }
            context += aStop - pos;
        }
        out.put("@@ -");
        hunkRange(out, aStart, aStop - aStart);
        out.put(" +");
        hunkRange(out, bStart, context + added);
        out.put(" @@\n");

        long pos = aStart;
        for (std::size_t r = k; r <= m; ++r) {
            for (; pos < spans[r].aBegin; ++pos)
                diffLine(out, a, pos, ' ');
            for (long i = spans[r].aBegin; i < spans[r].aEnd; ++i)
                diffLine(out, a, i, '-');
            for (long i = spans[r].bBegin; i < spans[r].bEnd; ++i)
                diffLine(out, b, i, '+');
            pos = spans[r].aEnd;
        }
        for (; pos < aStop; ++pos)
            diffLine(out, a, pos, ' ');
        k = m + 1;
    }
    return true;
}

bool writeCsvReport(BufferedOut& out, const ReportInput& in)
{
    const LineText& a = *in.original;
    const LineText& b = *in.modified;
    out.put("Number,Kind,Original First,Original Last,Modified First,Modified Last,");
    csvField(out, "Original: " + oneLine(in.masterTitle));
    out.put(',');
    csvField(out, "Modified: " + oneLine(in.sourceTitle));
    out.put("\r\n");
    long n = 0;
    for (const DiffRecord& r : *in.records) {
        RecordSpan s = spanOf(r);
        out.number(++n);
        out.put(r.kind == kindAddition ? ",Addition," : r.kind == kindDeletion ? ",Deletion," : ",Change,");
        out.number(r.leftFirst);
        out.put(',');
        out.number(r.leftLast);
        out.put(',');
        out.number(r.rightFirst);
        out.put(',');
        out.number(r.rightLast);
        out.put(',');
        csvField(out, joinLines(a, s.aBegin, s.aEnd, "\r\n"));
        out.put(',');
        csvField(out, joinLines(b, s.bBegin, s.bEnd, "\r\n"));
        out.put("\r\n");
    }
    return true;
}

} // namespace skeinmatch
