#pragma once
// Checks shared by the engine tests: the record rules, applying records,
// and a brute-force edit distance to hold the engine's result against.

#include "components/skeinmatch/LineDiff.h"
#include "components/skeinmatch/Skeinmatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace diffcheck {

using skeinmatch::DiffRecord;

inline std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> out;
    std::size_t b = 0;
    while (b < text.size()) {
        std::size_t e = text.find('\n', b);
        if (e == std::string::npos) {
            out.push_back(text.substr(b));
            break;
        }
        std::size_t ce = (e > b && text[e - 1] == '\r') ? e - 1 : e;
        out.push_back(text.substr(b, ce - b));
        b = e + 1;
    }
    return out;
}

inline std::string joinLines(const std::vector<std::string>& lines)
{
    std::string s;
    for (const auto& l : lines)
        s += l + "\n";
    return s;
}

// The rules every record list must keep, whatever the options: kinds and
// their ranges, order on both sides, no overlap, lines inside the files.
inline ::testing::AssertionResult recordsWellFormed(const std::vector<DiffRecord>& recs, int na,
                                                    int nb)
{
    int endA = 0, endB = 0;  // last line used by the previous record
    for (std::size_t i = 0; i < recs.size(); ++i) {
        const DiffRecord& r = recs[i];
        auto fail = [&](const char* why) {
            return ::testing::AssertionFailure()
                << "record " << i << " (" << char(r.kind) << " " << r.leftFirst << "," << r.leftLast
                << " " << r.rightFirst << "," << r.rightLast << "): " << why;
        };
        if (r.kind == 'a') {
            if (r.leftFirst != r.leftLast || r.leftFirst < 0 || r.leftFirst > na)
                return fail("bad anchor on the left");
            if (r.rightFirst < 1 || r.rightLast < r.rightFirst || r.rightLast > nb)
                return fail("bad right range");
            if (r.leftFirst < endA || r.rightFirst <= endB)
                return fail("out of order");
            endA = r.leftFirst;
            endB = r.rightLast;
        } else if (r.kind == 'd') {
            if (r.rightFirst != r.rightLast || r.rightFirst < 0 || r.rightFirst > nb)
                return fail("bad anchor on the right");
            if (r.leftFirst < 1 || r.leftLast < r.leftFirst || r.leftLast > na)
                return fail("bad left range");
            if (r.leftFirst <= endA || r.rightFirst < endB)
                return fail("out of order");
            endA = r.leftLast;
            endB = r.rightFirst;
        } else if (r.kind == 'c') {
            if (r.leftFirst < 1 || r.leftLast < r.leftFirst || r.leftLast > na)
                return fail("bad left range");
            if (r.rightFirst < 1 || r.rightLast < r.rightFirst || r.rightLast > nb)
                return fail("bad right range");
            if (r.leftFirst <= endA || r.rightFirst <= endB)
                return fail("out of order");
            endA = r.leftLast;
            endB = r.rightLast;
        } else {
            return fail("unknown kind");
        }
    }
    return ::testing::AssertionSuccess();
}

// Replays the records on the Original's lines; the result must be the
// Modified's lines.
inline std::vector<std::string> applyRecords(const std::vector<std::string>& a,
                                             const std::vector<std::string>& b,
                                             const std::vector<DiffRecord>& recs)
{
    std::vector<std::string> out;
    int pos = 0;  // lines of a copied so far
    for (const DiffRecord& r : recs) {
        int keepTo = r.kind == 'a' ? r.leftFirst : r.leftFirst - 1;
        while (pos < keepTo)
            out.push_back(a[static_cast<std::size_t>(pos++)]);
        if (r.kind != 'a')
            pos = r.leftLast;
        if (r.kind != 'd')
            for (int k = r.rightFirst; k <= r.rightLast; ++k)
                out.push_back(b[static_cast<std::size_t>(k - 1)]);
    }
    while (pos < static_cast<int>(a.size()))
        out.push_back(a[static_cast<std::size_t>(pos++)]);
    return out;
}

// Lines deleted plus lines added.
inline long changedLines(const std::vector<DiffRecord>& recs)
{
    long n = 0;
    for (const DiffRecord& r : recs) {
        if (r.kind != 'a')
            n += r.leftLast - r.leftFirst + 1;
        if (r.kind != 'd')
            n += r.rightLast - r.rightFirst + 1;
    }
    return n;
}

// The fewest lines deleted plus added, by dynamic programming.
inline long minimalChangedLines(const std::vector<std::string>& a,
                                const std::vector<std::string>& b)
{
    std::vector<std::vector<int>> lcs(a.size() + 1, std::vector<int>(b.size() + 1, 0));
    for (std::size_t i = a.size(); i-- > 0;)
        for (std::size_t j = b.size(); j-- > 0;)
            lcs[i][j] = a[i] == b[j] ? lcs[i + 1][j + 1] + 1
                                     : std::max(lcs[i + 1][j], lcs[i][j + 1]);
    return static_cast<long>(a.size() + b.size()) - 2L * lcs[0][0];
}

inline std::vector<DiffRecord> diffTexts(const std::string& a, const std::string& b,
                                         const skeinmatch::DiffOptions& o = {})
{
    skeinmatch::LineText ta, tb;
    ta.assign(a);
    tb.assign(b);
    return skeinmatch::diffLines(ta, tb, o, false);
}

} // namespace diffcheck
