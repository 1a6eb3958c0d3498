#include "components/skeinmatch/LineDiff.h"

#include "components/skeinmatch/DiffSide.h"
#include "components/skeinmatch/LineKeys.h"
#include "components/skeinmatch/RunBoth.h"
#include "components/skeinmatch/SequenceMatch.h"

#include <algorithm>

namespace skeinmatch {

namespace {

// Below this much text a second thread costs more than it saves.
constexpr std::size_t parallelBytes = 1u << 20;
// Matching shares its late work out only on inputs where it takes time.
constexpr std::size_t parallelLines = 50000;

// Fills side.considered for IgnoreEmptyLines.
void collectConsidered(DiffSide& side, KeyOptions ko, bool ignoreEmpty)
{
    const LineText& t = *side.text;
    side.considered.clear();
    if (!ignoreEmpty) {
        side.count = t.lineCount();
        return;
    }
    KeyMaker km(ko);
    side.considered.reserve(t.lineCount());
    for (std::size_t l = 0; l < t.lineCount(); ++l)
        if (!km.isEmpty(t.line(l)))
            side.considered.push_back(static_cast<std::uint32_t>(l));
    side.count = side.considered.size();
}

// Considered indices whose lines lie in [side.idFrom, side.idTo).
std::pair<std::size_t, std::size_t> consideredRange(const DiffSide& side)
{
    if (side.considered.empty() && side.count == side.text->lineCount())
        return {side.idFrom, side.idTo};
    auto b = std::lower_bound(side.considered.begin(), side.considered.end(), side.idFrom);
    auto e = std::lower_bound(side.considered.begin(), side.considered.end(), side.idTo);
    return {static_cast<std::size_t>(b - side.considered.begin()),
            static_cast<std::size_t>(e - side.considered.begin())};
}

void hashLines(DiffSide& side, KeyOptions ko)
{
    KeyMaker km(ko);
    auto [kb, ke] = consideredRange(side);
    for (std::size_t k = kb; k < ke; ++k) {
        std::size_t l = side.line(k);
        side.ids[l - side.idFrom] = km.hash(side.text->line(l));
    }
}

std::vector<DiffRecord> buildRecords(const DiffSide& a, const DiffSide& b)
{
    std::vector<DiffRecord> out;
    const long totalA = static_cast<long>(a.text->lineCount());
    const long totalB = static_cast<long>(b.text->lineCount());
    std::size_t i = 0, j = 0;
    while (i < a.count || j < b.count) {
        if (i < a.count && j < b.count && !a.changed[i] && !b.changed[j]) {
            ++i;
            ++j;
            continue;
        }
        const std::size_t i0 = i, j0 = j;
        while (i < a.count && a.changed[i])
            ++i;
        while (j < b.count && b.changed[j])
            ++j;
        if (i == i0 && j == j0) {
            // Unchanged lines left on one side only cannot happen with a
            // consistent matching; count them as changes rather than loop.
            if (i < a.count)
                ++i;
            else
                ++j;
        }
        // Lines (0-based) around the run on each side, -1 or the count at
        // the ends.
        const long prevA = i0 > 0 ? static_cast<long>(a.line(i0 - 1)) : -1;
        const long prevB = j0 > 0 ? static_cast<long>(b.line(j0 - 1)) : -1;
        DiffRecord r;
        if (i > i0 && j > j0) {
            r.kind = kindChange;
            r.leftFirst = static_cast<int>(a.line(i0) + 1);
            r.leftLast = static_cast<int>(a.line(i - 1) + 1);
            r.rightFirst = static_cast<int>(b.line(j0) + 1);
            r.rightLast = static_cast<int>(b.line(j - 1) + 1);
        } else if (j > j0) {
            // Addition: stand behind as many ignored lines on the left as
            // precede the new lines on the right.
            const long nextA = i0 < a.count ? static_cast<long>(a.line(i0)) : totalA;
            const long gapA = nextA - prevA - 1;
            const long leadB = static_cast<long>(b.line(j0)) - prevB - 1;
            r.kind = kindAddition;
            r.leftFirst = r.leftLast = static_cast<int>(prevA + 1 + std::min(gapA, leadB));
            r.rightFirst = static_cast<int>(b.line(j0) + 1);
            r.rightLast = static_cast<int>(b.line(j - 1) + 1);
        } else {
            const long nextB = j0 < b.count ? static_cast<long>(b.line(j0)) : totalB;
            const long gapB = nextB - prevB - 1;
            const long leadA = static_cast<long>(a.line(i0)) - prevA - 1;
            r.kind = kindDeletion;
            r.leftFirst = static_cast<int>(a.line(i0) + 1);
            r.leftLast = static_cast<int>(a.line(i - 1) + 1);
            r.rightFirst = r.rightLast = static_cast<int>(prevB + 1 + std::min(gapB, leadA));
        }
        out.push_back(r);
    }
    return out;
}

} // namespace

std::vector<DiffRecord> joinNearbyRecords(const std::vector<DiffRecord>& records, int gap)
{
    // Each record as two half-open spans [first, end) of 1-based lines; an
    // addition's left span is empty and sits behind its anchor line.
    struct Span {
        long aFirst, aEnd, bFirst, bEnd;
    };
    auto spanOf = [](const DiffRecord& r) {
        Span s;
        if (r.kind == kindAddition) {
            s.aFirst = s.aEnd = r.leftFirst + 1;
        } else {
            s.aFirst = r.leftFirst;
            s.aEnd = r.leftLast + 1;
        }
        if (r.kind == kindDeletion) {
            s.bFirst = s.bEnd = r.rightFirst + 1;
        } else {
            s.bFirst = r.rightFirst;
            s.bEnd = r.rightLast + 1;
        }
        return s;
    };
    auto recordOf = [](const Span& s) {
        DiffRecord r;
        const bool hasA = s.aEnd > s.aFirst, hasB = s.bEnd > s.bFirst;
        r.kind = hasA && hasB ? kindChange : hasA ? kindDeletion : kindAddition;
        if (hasA) {
            r.leftFirst = static_cast<int>(s.aFirst);
            r.leftLast = static_cast<int>(s.aEnd - 1);
        } else {
            r.leftFirst = r.leftLast = static_cast<int>(s.aFirst - 1);
        }
        if (hasB) {
            r.rightFirst = static_cast<int>(s.bFirst);
            r.rightLast = static_cast<int>(s.bEnd - 1);
        } else {
            r.rightFirst = r.rightLast = static_cast<int>(s.bFirst - 1);
        }
        return r;
    };

    std::vector<DiffRecord> out;
    if (records.empty())
        return out;
    Span cur = spanOf(records[0]);
    bool joined = false;
    for (std::size_t k = 1; k < records.size(); ++k) {
        Span nx = spanOf(records[k]);
        if (nx.aFirst - cur.aEnd <= gap && nx.bFirst - cur.bEnd <= gap) {
            cur.aEnd = nx.aEnd;
            cur.bEnd = nx.bEnd;
            joined = true;
            continue;
        }
        out.push_back(joined ? recordOf(cur) : records[k - 1]);
        cur = nx;
        joined = false;
    }
    out.push_back(joined ? recordOf(cur) : records.back());
    return out;
}

std::vector<DiffRecord> diffLines(const LineText& original, const LineText& modified,
                                  const DiffOptions& options, bool parallel)
{
    const KeyOptions ko{options.ignoreCase, options.ignoreWhitespace};
    const std::size_t na = original.lineCount(), nb = modified.lineCount();

    // 1. Equal lines at both ends need no search. Byte equality implies
    // equality under any option.
    std::size_t prefix = 0;
    while (prefix < na && prefix < nb && original.line(prefix) == modified.line(prefix))
        ++prefix;
    if (prefix == na && prefix == nb)
        return {};
    std::size_t suffix = 0;
    while (suffix < na - prefix && suffix < nb - prefix
           && original.line(na - 1 - suffix) == modified.line(nb - 1 - suffix))
        ++suffix;

    DiffSide a, b;
    a.text = &original;
    b.text = &modified;
    a.idFrom = b.idFrom = prefix;
    a.idTo = na - suffix;
    b.idTo = nb - suffix;
    a.ids.assign(a.idTo - a.idFrom, 0);
    b.ids.assign(b.idTo - b.idFrom, 0);

    // 2. Keys and hashes, one side per thread on large inputs.
    const bool useThread = parallel && original.bytes().size() + modified.bytes().size() >= parallelBytes;
    auto prepare = [&](DiffSide& s) {
        collectConsidered(s, ko, options.ignoreEmptyLines);
        hashLines(s, ko);
    };
    if (useThread) {
        runBoth([&] { prepare(a); }, [&] { prepare(b); });
    } else {
        prepare(a);
        prepare(b);
    }
    a.changed.assign(a.count, 0);
    b.changed.assign(b.count, 0);

    auto [ka0, ka1] = consideredRange(a);
    auto [kb0, kb1] = consideredRange(b);

    // 3. Dense ids, and the lines that can take part in the search.
    std::vector<std::uint32_t> xs, ys, xk, yk;
    std::uint32_t idCount = 0;
    {
        LineInterner interner(ko, (ka1 - ka0) + (kb1 - kb0));
        // The table is far larger than the caches on big inputs; asking for
        // a slot some lines ahead hides most of the wait for it.
        constexpr std::size_t ahead = 12;
        auto internSide = [&](DiffSide& s, std::size_t k0, std::size_t k1, int side) {
            for (std::size_t k = k0; k < k1; ++k) {
                if (k + ahead < k1)
                    interner.prefetch(s.ids[s.line(k + ahead) - s.idFrom]);
                std::size_t l = s.line(k);
                std::uint32_t& id = s.ids[l - s.idFrom];
                id = interner.intern(id, s.text->line(l), side);
            }
        };
        internSide(a, ka0, ka1, 0);
        internSide(b, kb0, kb1, 1);
        idCount = interner.idCount();
        auto reduce = [&](DiffSide& s, std::size_t k0, std::size_t k1, int otherSide,
                          std::vector<std::uint32_t>& seq, std::vector<std::uint32_t>& where) {
            seq.reserve(k1 - k0);
            where.reserve(k1 - k0);
            for (std::size_t k = k0; k < k1; ++k) {
                std::uint32_t id = s.ids[s.line(k) - s.idFrom];
                if (interner.count(id, otherSide) == 0) {
                    s.changed[k] = 1;
                } else {
                    seq.push_back(id);
                    where.push_back(static_cast<std::uint32_t>(k));
                }
            }
        };
        reduce(a, ka0, ka1, 1, xs, xk);
        reduce(b, kb0, kb1, 0, ys, yk);
    }

    // 4. Matching.
    {
        std::vector<std::uint8_t> cx(xs.size()), cy(ys.size());
        if (options.useHorizon) {
            std::size_t h = options.horizon < 1 ? 1 : static_cast<std::size_t>(options.horizon);
            matchWithinHorizon(xs.data(), xs.size(), ys.data(), ys.size(), idCount, h, cx.data(),
                               cy.data());
        } else {
            MatchBudget budget = options.faster ? MatchBudget::fast(xs.size(), ys.size())
                                                : MatchBudget::standard(xs.size(), ys.size());
            if (options.forceTinyBudget) {
                budget.total = 0;
                budget.cutoff = 1;
            }
            const int threads = useThread && xs.size() + ys.size() >= parallelLines ? 2 : 1;
            matchSequences(xs.data(), xs.size(), ys.data(), ys.size(), idCount, budget, cx.data(),
                           cy.data(), threads);
        }
        for (std::size_t r = 0; r < xs.size(); ++r)
            a.changed[xk[r]] = cx[r];
        for (std::size_t r = 0; r < ys.size(); ++r)
            b.changed[yk[r]] = cy[r];
    }
    std::vector<std::uint32_t>().swap(xs);
    std::vector<std::uint32_t>().swap(ys);
    std::vector<std::uint32_t>().swap(xk);
    std::vector<std::uint32_t>().swap(yk);

    // 5. Readable places.
    SideEquality eq(ko);
    placeChanges(a, b, eq);
    placeChanges(b, a, eq);

    // 6, 7. Records.
    std::vector<DiffRecord> records = buildRecords(a, b);
    if (options.largerSections)
        records = joinNearbyRecords(records, largerSectionGap);
    return records;
}

} // namespace skeinmatch
