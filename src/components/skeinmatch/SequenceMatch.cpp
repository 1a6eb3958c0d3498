#include "components/skeinmatch/SequenceMatch.h"

#include "components/skeinmatch/RunBoth.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cmath>
#include <vector>

namespace skeinmatch {

MatchBudget MatchBudget::standard(std::size_t n, std::size_t m)
{
    // An exact search over an edit of D elements costs about D*D/2 steps.
    // 250 steps per element covers the light edits of real revisions of a
    // hundred thousand lines; the ceiling (about a tenth of a second) keeps
    // a million-line compare quicker than a plain diff, and the floor lets
    // small inputs always be exact. Past the budget, 8192 rounds per search
    // (half that in densely changed text): with 4096, source files of a
    // hundred thousand lines with a tenth of them edited in scattered places
    // came out up to 0.3 % above GNU diff's count of changed lines; with
    // 8192 and the gaps searched again (see `refineGaps`) all of sixteen
    // such pairs came out below it, but took a third longer than GNU diff.
    // Matching the common runs through unique lines first (runsFirst) gets
    // them below it in about a quarter of its time, since the searches are
    // then left with small gaps. Splitting on unique lines only after a
    // search is cut cost up to 4 % more changed lines on shuffled and
    // unrelated sources.
    MatchBudget b;
    b.total = std::min<std::uint64_t>(250ull * (n + m) + (1ull << 22), 60'000'000ull);
    b.cutoff = 8192;
    b.anchors = false;
    b.runsFirst = true;
    return b;
}

MatchBudget MatchBudget::fast(std::size_t n, std::size_t m)
{
    // Little exact search, short searches after it, and splits on unique
    // lines, which are cheap and keep the result close to minimal.
    MatchBudget b;
    b.total = 2ull * (n + m) + (1ull << 14);
    b.cutoff = 64;
    b.anchors = true;
    return b;
}

MatchBudget MatchBudget::unlimited()
{
    MatchBudget b;
    b.total = UINT64_MAX;
    b.cutoff = INT_MAX;
    return b;
}

namespace {

// Measured on sixteen revisions of a hundred thousand lines of C headers
// (2 % to 20 % of the lines edited, with moved blocks) and on source-like
// text where a third of the lines are braces and blank lines:
//
// A common run counts as an anchor from this many lines on: with 1 or 2,
// short runs of moved or inserted text pin wrong places and up to 800
// more lines came out changed; with 8 or more, too few anchors are left in
// heavily edited text.
constexpr int minAnchorRun = 4;
// Below this share of both sides covered by the chosen runs, the runs are
// too sparse to trust (a third or more of the lines edited, many moves):
// up to 3 % more changed lines than the plain search. Above 30 % they did
// better than it on every pair.
constexpr double minRunCover = 0.25;
// Matched stretches up to this long between changes are searched again
// together with the changes around them, first joining across longer
// stretches, then shorter ones: short runs may have been paired the wrong
// way. One pass at 8 or 32 left pairs with a fifth of their lines edited
// a few lines above GNU diff's count; windows are cut at about
// `windowLines` lines, since the whole of a heavily edited text would
// otherwise become one window whose search runs out of budget.
constexpr int windowJoins[] = {64, 32};
constexpr int windowLines = 2000;
// Smaller inputs keep the plain search alone: it takes milliseconds there,
// and a first pass over the runs would only cost time.
constexpr std::size_t runsFirstFrom = 20000;

class Matcher {
public:
    Matcher(const std::uint32_t* x, int n, const std::uint32_t* y, int m, std::uint32_t idCount,
            const MatchBudget& budget, std::uint8_t* cx, std::uint8_t* cy)
        : x_(x), y_(y), n_(n), m_(m), idCount_(idCount), budget_(budget), cx_(cx), cy_(cy)
    {
    }

    // With threads > 1, the ranges left once the budget is spent are
    // shared out: from then on every search is cut at the same number of
    // rounds, so the result does not depend on which thread takes which.
    void run(int threads);
    // Searches each gap between two matched pairs again on its own, with
    // `steps` of exact search. A search that was cut short may have left
    // lines unmatched inside a gap that a search of the gap alone pairs up;
    // it never unpairs any, so the result only gets smaller.
    void refineGaps(std::uint64_t steps);
    // Pairs up the common runs through lines unique to both sides that
    // together cover the most lines, then searches the gaps between them
    // and windows around short runs. False, with nothing done, when such
    // runs cover too little to trust.
    bool runOnRuns();
    // Searches again each stretch between two runs of more than `keep`
    // matched pairs, and keeps the new answer where it is no worse.
    void refineWindows(std::uint64_t steps, int keep);

private:
    struct Range {
        int xo, xl, yo, yl;
    };
    struct Split {
        int x, y;
        bool exact;
    };

    void solve(std::vector<Range>& ranges, bool deferWhenSpent, std::size_t maxSteps = SIZE_MAX);
    bool trySplitAcrossThreads(std::vector<Range>& ranges);
    Split middleSnake(int xo, int xl, int yo, int yl);
    bool splitOnAnchors(const Range& r, std::vector<Range>& ranges);
    // How often each element occurs in r on each side, and its last place on
    // the y side; cleared again over the same range, so the tables stay zero
    // between calls without a pass over every element.
    void countOccurrences(const Range& r);
    void clearOccurrences(const Range& r);
    bool splitOnRuns(const Range& r, std::vector<Range>& ranges);
    void markX(int from, int to)
    {
        std::fill(cx_ + from, cx_ + to, std::uint8_t(1));
    }
    void markY(int from, int to)
    {
        std::fill(cy_ + from, cy_ + to, std::uint8_t(1));
    }
    bool spent() const { return work_ > budget_.total; }

public:
    bool wasCut() const { return cut_; }

private:

    const std::uint32_t* x_;
    const std::uint32_t* y_;
    int n_, m_;
    std::uint32_t idCount_;
    MatchBudget budget_;
    std::uint8_t* cx_;
    std::uint8_t* cy_;

    std::vector<Range> stack_, deferred_;
    // Furthest x reached forward and backward, by diagonal x - y; sized
    // for the largest range this matcher searches.
    std::vector<int> fdStore_, bdStore_;
    std::uint64_t work_ = 0;
    // While a half is worked on ahead of its turn: give up as soon as the
    // budget would run out, since the turn order decides what happens then.
    bool stopWhenSpent_ = false;
    bool stopped_ = false;
    // Whether any search settled for less than an exact split.
    bool cut_ = false;

    // Scratch for the anchor split, indexed by id and kept zeroed between uses.
    std::vector<std::uint32_t> countX_, countY_, posY_;
};

void Matcher::run(int threads)
{
    fdStore_.assign(static_cast<std::size_t>(n_) + m_ + 3, 0);
    bdStore_.assign(static_cast<std::size_t>(n_) + m_ + 3, 0);
    stack_.push_back({0, n_, 0, m_});
    if (threads > 1) {
        // The first search runs alone; its two halves may then go to two
        // threads.
        solve(stack_, true, 1);
        if (trySplitAcrossThreads(stack_))
            return;
    }
    solve(stack_, threads > 1);
    if (deferred_.empty())
        return;

    // Two workers take the spent ranges, largest first, one at a time.
    std::sort(deferred_.begin(), deferred_.end(), [](const Range& a, const Range& b) {
        return (a.xl - a.xo) + (a.yl - a.yo) > (b.xl - b.xo) + (b.yl - b.yo);
    });
    std::atomic<std::size_t> next{0};
    auto work = [&](Matcher& m) {
        std::vector<Range> local;
        for (std::size_t k; (k = next.fetch_add(1)) < deferred_.size();) {
            local.push_back(deferred_[k]);
            m.solve(local, false);
        }
    };
    Matcher helper(x_, n_, y_, m_, idCount_, budget_, cx_, cy_);
    const Range& big = deferred_.front();
    const std::size_t size = static_cast<std::size_t>((big.xl - big.xo) + (big.yl - big.yo)) + 3;
    helper.fdStore_.assign(size, 0);
    helper.bdStore_.assign(size, 0);
    helper.work_ = budget_.total + 1;
    runBoth([&] { work(*this); }, [&] { work(helper); });
    cut_ = cut_ || helper.cut_;
}

void Matcher::refineGaps(std::uint64_t steps)
{
    std::vector<Range> gaps;
    int i = 0, j = 0;
    while (i < n_ || j < m_) {
        const int gi = i, gj = j;
        while (i < n_ && cx_[i])
            ++i;
        while (j < m_ && cy_[j])
            ++j;
        if (i > gi && j > gj)
            gaps.push_back({gi, i, gj, j});
        // Past the matched pair that ends the gap.
        ++i;
        ++j;
    }
    for (const Range& g : gaps) {
        std::fill(cx_ + g.xo, cx_ + g.xl, std::uint8_t(0));
        std::fill(cy_ + g.yo, cy_ + g.yl, std::uint8_t(0));
    }
    work_ = 0;
    budget_.total = steps;
    // Taken from the back: the first gap first.
    std::reverse(gaps.begin(), gaps.end());
    solve(gaps, false);
}

bool Matcher::runOnRuns()
{
    fdStore_.assign(static_cast<std::size_t>(n_) + m_ + 3, 0);
    bdStore_.assign(static_cast<std::size_t>(n_) + m_ + 3, 0);
    if (!splitOnRuns({0, n_, 0, m_}, stack_))
        return false;
    // The gaps between the runs come off the stack front to back.
    std::reverse(stack_.begin(), stack_.end());
    solve(stack_, false);
    for (int join : windowJoins)
        refineWindows(budget_.total / 4, join);
    return true;
}

void Matcher::refineWindows(std::uint64_t steps, int keep)
{
    std::vector<Range> wins;
    int i = 0, j = 0, wi = 0, wj = 0;
    while (true) {
        while (i < n_ && cx_[i])
            ++i;
        while (j < m_ && cy_[j])
            ++j;
        if (i >= n_ || j >= m_)
            break;
        const int si = i, sj = j;
        while (i < n_ && j < m_ && !cx_[i] && !cy_[j]) {
            ++i;
            ++j;
        }
        if (i - si > keep || i == n_ || j == m_ || (si - wi) + (sj - wj) > windowLines) {
            if (si > wi && sj > wj)
                wins.push_back({wi, si, wj, sj});
            wi = i;
            wj = j;
        }
    }
    if (wi < n_ && wj < m_)
        wins.push_back({wi, n_, wj, m_});
    work_ = 0;
    budget_.total = steps;
    std::vector<std::uint8_t> keepX, keepY;
    for (const Range& w : wins) {
        const long before = std::count(cx_ + w.xo, cx_ + w.xl, std::uint8_t(1))
            + std::count(cy_ + w.yo, cy_ + w.yl, std::uint8_t(1));
        keepX.assign(cx_ + w.xo, cx_ + w.xl);
        keepY.assign(cy_ + w.yo, cy_ + w.yl);
        std::fill(cx_ + w.xo, cx_ + w.xl, std::uint8_t(0));
        std::fill(cy_ + w.yo, cy_ + w.yl, std::uint8_t(0));
        std::vector<Range> one{w};
        solve(one, false);
        const long after = std::count(cx_ + w.xo, cx_ + w.xl, std::uint8_t(1))
            + std::count(cy_ + w.yo, cy_ + w.yl, std::uint8_t(1));
        if (after > before) {
            std::copy(keepX.begin(), keepX.end(), cx_ + w.xo);
            std::copy(keepY.begin(), keepY.end(), cy_ + w.yo);
        }
    }
}

void Matcher::countOccurrences(const Range& r)
{
    if (countX_.empty()) {
        countX_.assign(idCount_, 0);
        countY_.assign(idCount_, 0);
        posY_.assign(idCount_, 0);
    }
    for (int i = r.xo; i < r.xl; ++i)
        ++countX_[x_[i]];
    for (int j = r.yo; j < r.yl; ++j) {
        ++countY_[y_[j]];
        posY_[y_[j]] = static_cast<std::uint32_t>(j);
    }
}

void Matcher::clearOccurrences(const Range& r)
{
    for (int i = r.xo; i < r.xl; ++i)
        countX_[x_[i]] = 0;
    for (int j = r.yo; j < r.yl; ++j)
        countY_[y_[j]] = 0;
}

bool Matcher::splitOnRuns(const Range& r, std::vector<Range>& ranges)
{
    countOccurrences(r);
    struct Run {
        int x, y, len;
    };
    std::vector<Run> runs;
    int lastX = -1, lastY = -1, lastEnd = -1;
    for (int i = r.xo; i < r.xl; ++i) {
        const std::uint32_t id = x_[i];
        if (countX_[id] != 1 || countY_[id] != 1)
            continue;
        const int j = static_cast<int>(posY_[id]);
        if (i < lastEnd && i - lastX == j - lastY)
            continue;
        int s = i, t = j, e = i + 1, f = j + 1;
        while (s > r.xo && t > r.yo && x_[s - 1] == y_[t - 1]) {
            --s;
            --t;
        }
        while (e < r.xl && f < r.yl && x_[e] == y_[f]) {
            ++e;
            ++f;
        }
        lastX = s;
        lastY = t;
        lastEnd = e;
        if (e - s >= minAnchorRun)
            runs.push_back({s, t, e - s});
    }
    clearOccurrences(r);
    if (runs.empty())
        return false;

    // The heaviest chain of runs that follow one another on both sides:
    // runs in order of their start on x; a run joins the Fenwick tree
    // (indexed by its end on y) once its end on x is passed.
    std::sort(runs.begin(), runs.end(), [](const Run& a, const Run& b) {
        return a.x != b.x ? a.x < b.x : a.y < b.y;
    });
    const std::size_t k = runs.size();
    std::vector<long> best(k);
    std::vector<int> prev(k, -1);
    const int span = r.yl - r.yo + 1;
    // Fenwick tree of (weight, run) maxima over run ends on y.
    std::vector<std::pair<long, int>> tree(static_cast<std::size_t>(span) + 1, {0, -1});
    auto insert = [&](int at, long w, int run) {
        for (int p = at + 1; p <= span; p += p & -p)
            tree[static_cast<std::size_t>(p)] = std::max(tree[static_cast<std::size_t>(p)], std::pair<long, int>(w, run));
    };
    auto query = [&](int upTo) {
        std::pair<long, int> m{0, -1};
        for (int p = upTo + 1; p > 0; p -= p & -p)
            m = std::max(m, tree[static_cast<std::size_t>(p)]);
        return m;
    };
    std::vector<int> byEnd(k);
    for (std::size_t q = 0; q < k; ++q)
        byEnd[q] = static_cast<int>(q);
    std::sort(byEnd.begin(), byEnd.end(), [&](int a, int b) {
        return runs[static_cast<std::size_t>(a)].x + runs[static_cast<std::size_t>(a)].len
            < runs[static_cast<std::size_t>(b)].x + runs[static_cast<std::size_t>(b)].len;
    });
    std::size_t added = 0;
    for (std::size_t q = 0; q < k; ++q) {
        const Run& u = runs[q];
        while (added < k) {
            const int c = byEnd[added];
            const Run& v = runs[static_cast<std::size_t>(c)];
            if (v.x + v.len > u.x)
                break;
            insert(v.y + v.len - r.yo, best[static_cast<std::size_t>(c)], c);
            ++added;
        }
        const auto [w, from] = query(u.y - r.yo);
        best[q] = w + u.len;
        prev[q] = from;
    }
    int at = static_cast<int>(std::max_element(best.begin(), best.end()) - best.begin());
    std::vector<int> chain;
    for (; at >= 0; at = prev[static_cast<std::size_t>(at)])
        chain.push_back(at);
    std::reverse(chain.begin(), chain.end());

    long covered = 0;
    for (int c : chain)
        covered += runs[static_cast<std::size_t>(c)].len;
    if (2.0 * static_cast<double>(covered) < minRunCover * ((r.xl - r.xo) + (r.yl - r.yo)))
        return false;
    int px = r.xo, py = r.yo;
    for (int c : chain) {
        const Run& u = runs[static_cast<std::size_t>(c)];
        ranges.push_back({px, u.x, py, u.y});
        px = u.x + u.len;
        py = u.y + u.len;
    }
    ranges.push_back({px, r.xl, py, r.yl});
    return true;
}

// Works the two halves of the first split on two threads at once, each as
// if it had the whole rest of the budget. When together they stay within
// it, no search was cut, in either order, so the answer is the one that a
// single thread finds; otherwise the halves are cleared for the single
// thread to do over.
bool Matcher::trySplitAcrossThreads(std::vector<Range>& ranges)
{
    constexpr int minHalf = 20000;
    if (spent() || ranges.size() != 2 || !deferred_.empty())
        return false;
    const Range hi = ranges[0], lo = ranges[1];
    auto sizeOf = [](const Range& r) { return (r.xl - r.xo) + (r.yl - r.yo); };
    if (sizeOf(hi) < minHalf || sizeOf(lo) < minHalf)
        return false;

    const std::uint64_t before = work_;
    Matcher helper(x_, n_, y_, m_, idCount_, budget_, cx_, cy_);
    helper.fdStore_.assign(static_cast<std::size_t>(sizeOf(hi)) + 3, 0);
    helper.bdStore_.assign(static_cast<std::size_t>(sizeOf(hi)) + 3, 0);
    helper.work_ = before;
    helper.stopWhenSpent_ = stopWhenSpent_ = true;
    std::vector<Range> mine{lo}, theirs{hi};
    runBoth([&] { solve(mine, false); }, [&] { helper.solve(theirs, false); });
    stopWhenSpent_ = false;
    const std::uint64_t total = before + (work_ - before) + (helper.work_ - before);
    if (!stopped_ && !helper.stopped_ && total <= budget_.total) {
        work_ = total;
        ranges.clear();
        return true;
    }
    stopped_ = false;
    work_ = before;
    for (const Range& r : {lo, hi}) {
        std::fill(cx_ + r.xo, cx_ + r.xl, std::uint8_t(0));
        std::fill(cy_ + r.yo, cy_ + r.yl, std::uint8_t(0));
    }
    return false;
}

// Works through `ranges` (used as a stack) until all are matched, or
// `maxSteps` ranges were taken. With deferWhenSpent, ranges met after the
// budget is spent are set aside in deferred_ instead.
void Matcher::solve(std::vector<Range>& ranges, bool deferWhenSpent, std::size_t maxSteps)
{
    // An explicit stack instead of recursion: the anchor split can make
    // many ranges, and no input can then exhaust the call stack.
    for (std::size_t step = 0; !ranges.empty() && step < maxSteps; ++step) {
        if (stopWhenSpent_ && spent()) {
            stopped_ = true;
            return;
        }
        Range r = ranges.back();
        ranges.pop_back();
        while (r.xo < r.xl && r.yo < r.yl && x_[r.xo] == y_[r.yo]) {
            ++r.xo;
            ++r.yo;
        }
        while (r.xl > r.xo && r.yl > r.yo && x_[r.xl - 1] == y_[r.yl - 1]) {
            --r.xl;
            --r.yl;
        }
        if (r.xo == r.xl) {
            markY(r.yo, r.yl);
            continue;
        }
        if (r.yo == r.yl) {
            markX(r.xo, r.xl);
            continue;
        }
        if (deferWhenSpent && spent()) {
            deferred_.push_back(r);
            continue;
        }
        Split s = middleSnake(r.xo, r.xl, r.yo, r.yl);
        if (stopped_)
            return;
        if (!s.exact && budget_.anchors && splitOnAnchors(r, ranges))
            continue;
        s.x = std::clamp(s.x, r.xo, r.xl);
        s.y = std::clamp(s.y, r.yo, r.yl);
        // A split at either corner would not shrink the problem; the middle
        // of the box always does.
        if ((s.x == r.xo && s.y == r.yo) || (s.x == r.xl && s.y == r.yl)) {
            s.x = r.xo + (r.xl - r.xo) / 2;
            s.y = r.yo + (r.yl - r.yo) / 2;
        }
        ranges.push_back({s.x, r.xl, s.y, r.yl});
        ranges.push_back({r.xo, s.x, r.yo, s.y});
    }
}

// The search for the middle of a shortest edit path through the box
// [xo,xl) x [yo,yl), from both corners at once. Both ends of the box are
// known to differ.
Matcher::Split Matcher::middleSnake(int xo, int xl, int yo, int yl)
{
    // How far the forward search got from its corner, in lines of both
    // sides together.
    auto forwardProgress = [&](int fmin, int fmax) {
        long best = 0;
        for (int d = fmax; d >= fmin; d -= 2) {
            int px = std::min(fdStore_[static_cast<std::size_t>(d + (yl - xo) + 1)], xl);
            int py = px - d;
            if (py <= yl && px >= xo && py >= yo)
                best = std::max<long>(best, (px - xo) + (py - yo));
        }
        return best;
    };
    const int dmin = xo - yl, dmax = xl - yo;
    const int fmid = xo - yo, bmid = xl - yl;
    // Diagonals dmin-1 .. dmax+1 map onto the stores from index 0.
    int* const fd_ = fdStore_.data() + (yl - xo) + 1;
    int* const bd_ = bdStore_.data() + (yl - xo) + 1;
    int fmin = fmid, fmax = fmid, bmin = bmid, bmax = bmid;
    const bool odd = ((fmid - bmid) & 1) != 0;
    fd_[fmid] = xo;
    bd_[bmid] = xl;

    for (int c = 1;; ++c) {
        // Forward round.
        if (fmin > dmin)
            fd_[--fmin - 1] = -1;
        else
            ++fmin;
        if (fmax < dmax)
            fd_[++fmax + 1] = -1;
        else
            --fmax;
        for (int d = fmax; d >= fmin; d -= 2) {
            int lo = fd_[d - 1], hi = fd_[d + 1];
            int px = lo >= hi ? lo + 1 : hi;
            int py = px - d;
            while (px < xl && py < yl && x_[px] == y_[py]) {
                ++px;
                ++py;
            }
            fd_[d] = px;
            if (odd && bmin <= d && d <= bmax && bd_[d] <= px)
                return {px, py, true};
        }
        // Backward round.
        if (bmin > dmin)
            bd_[--bmin - 1] = INT_MAX;
        else
            ++bmin;
        if (bmax < dmax)
            bd_[++bmax + 1] = INT_MAX;
        else
            --bmax;
        for (int d = bmax; d >= bmin; d -= 2) {
            int lo = bd_[d - 1], hi = bd_[d + 1];
            int px = lo < hi ? lo : hi - 1;
            int py = px - d;
            while (px > xo && py > yo && x_[px - 1] == y_[py - 1]) {
                --px;
                --py;
            }
            bd_[d] = px;
            if (!odd && fmin <= d && d <= fmax && px <= fd_[d])
                return {px, py, true};
        }

        work_ += static_cast<std::uint64_t>(fmax - fmin + bmax - bmin) / 2 + 2;
        if (stopWhenSpent_ && spent()) {
            stopped_ = true;
            return {xo, yo, false};
        }
        if (work_ <= budget_.total)
            continue;
        if (c < budget_.cutoff) {
            // Half way through its rounds, a search that has come less than
            // four lines a round is in densely changed text, where more
            // rounds buy little; measured on heavy and unrelated pairs this
            // halves the time and keeps the result within 0.1 %.
            if (c != budget_.cutoff / 2 || forwardProgress(fmin, fmax) >= 4L * c)
                continue;
        }

        // Out of budget: take the point, forward or backward, that got
        // furthest from its own corner.
        cut_ = true;
        int bestF = -1, fx = xo, fy = yo;
        for (int d = fmax; d >= fmin; d -= 2) {
            int px = std::min(fd_[d], xl);
            int py = px - d;
            if (py > yl) {
                px = yl + d;
                py = yl;
            }
            if (px < xo || py < yo)
                continue;
            int v = (px - xo) + (py - yo);
            if (v > bestF) {
                bestF = v;
                fx = px;
                fy = py;
            }
        }
        int bestB = -1, bx = xl, by = yl;
        for (int d = bmax; d >= bmin; d -= 2) {
            int px = std::max(bd_[d], xo);
            int py = px - d;
            if (py < yo) {
                px = yo + d;
                py = yo;
            }
            if (px > xl || py > yl)
                continue;
            int v = (xl - px) + (yl - py);
            if (v > bestB) {
                bestB = v;
                bx = px;
                by = py;
            }
        }
        if (bestF >= bestB)
            return {fx, fy, false};
        return {bx, by, false};
    }
}

// Splits a range on the longest common subsequence of the elements that
// occur exactly once in it on each side. False when that gives nothing
// worth having, so the caller splits some other way.
bool Matcher::splitOnAnchors(const Range& r, std::vector<Range>& ranges)
{
    countOccurrences(r);
    // Candidates in x order, with their place on the y side.
    std::vector<std::pair<int, int>> cand;
    for (int i = r.xo; i < r.xl; ++i) {
        std::uint32_t id = x_[i];
        if (countX_[id] == 1 && countY_[id] == 1)
            cand.emplace_back(i, static_cast<int>(posY_[id]));
    }
    clearOccurrences(r);
    if (cand.empty())
        return false;

    // Longest increasing run of y places, by patience sorting.
    std::vector<int> tails;       // index into cand of the smallest tail per length
    std::vector<int> prev(cand.size(), -1);
    for (int k = 0; k < static_cast<int>(cand.size()); ++k) {
        int yk = cand[k].second;
        auto it = std::lower_bound(tails.begin(), tails.end(), yk,
                                   [&](int idx, int v) { return cand[idx].second < v; });
        if (it != tails.begin())
            prev[k] = *(it - 1);
        if (it == tails.end())
            tails.push_back(k);
        else
            *it = k;
    }
    std::vector<int> chain;
    for (int k = tails.back(); k >= 0; k = prev[k])
        chain.push_back(k);
    std::reverse(chain.begin(), chain.end());

    // Gaps between anchors become ranges of their own. A split that leaves
    // almost all of the range in one gap gains too little to be worth
    // another round of search.
    std::vector<Range> gaps;
    int px = r.xo, py = r.yo;
    long largest = 0;
    for (int k : chain) {
        int ax = cand[k].first, ay = cand[k].second;
        gaps.push_back({px, ax, py, ay});
        largest = std::max<long>(largest, (ax - px) + (ay - py));
        px = ax + 1;
        py = ay + 1;
    }
    gaps.push_back({px, r.xl, py, r.yl});
    largest = std::max<long>(largest, (r.xl - px) + (r.yl - py));
    long whole = (r.xl - r.xo) + (r.yl - r.yo);
    if (largest * 10 > whole * 9)
        return false;
    for (const Range& g : gaps)
        ranges.push_back(g);
    return true;
}


long changedCount(const std::uint8_t* cx, std::size_t n, const std::uint8_t* cy, std::size_t m)
{
    return std::count(cx, cx + n, std::uint8_t(1)) + std::count(cy, cy + m, std::uint8_t(1));
}

// For large inputs: the runs first, which is cheap and close to minimal on
// scattered edits; the exact search only when the edit they found is small
// enough for it, and then the smaller answer of the two.
void matchOnRunsFirst(const std::uint32_t* x, std::size_t n, const std::uint32_t* y, std::size_t m,
                      std::uint32_t idCount, const MatchBudget& budget, std::uint8_t* cx,
                      std::uint8_t* cy, int threads)
{
    Matcher pre(x, static_cast<int>(n), y, static_cast<int>(m), idCount, budget, cx, cy);
    std::vector<std::uint8_t> keepX, keepY;
    long d = -1;
    if (pre.runOnRuns()) {
        d = changedCount(cx, n, cy, m);
        // An exact search of an edit of D costs about D*D/2 steps.
        if (static_cast<double>(d) * static_cast<double>(d) / 2 > static_cast<double>(budget.total))
            return;
        keepX.assign(cx, cx + n);
        keepY.assign(cy, cy + m);
        std::fill(cx, cx + n, std::uint8_t(0));
        std::fill(cy, cy + m, std::uint8_t(0));
    }
    Matcher mt(x, static_cast<int>(n), y, static_cast<int>(m), idCount, budget, cx, cy);
    mt.run(threads);
    if (!mt.wasCut())
        return;
    mt.refineGaps(budget.total / 4);
    if (d >= 0 && changedCount(cx, n, cy, m) > d) {
        std::copy(keepX.begin(), keepX.end(), cx);
        std::copy(keepY.begin(), keepY.end(), cy);
    }
}

} // namespace

void matchSequences(const std::uint32_t* x, std::size_t n, const std::uint32_t* y, std::size_t m,
                    std::uint32_t idCount, const MatchBudget& budget, std::uint8_t* cx,
                    std::uint8_t* cy, int threads)
{
    std::fill(cx, cx + n, std::uint8_t(0));
    std::fill(cy, cy + m, std::uint8_t(0));
    if (n == 0 && m == 0)
        return;
    if (budget.runsFirst && n + m >= runsFirstFrom) {
        matchOnRunsFirst(x, n, y, m, idCount, budget, cx, cy, threads);
        return;
    }
    Matcher mt(x, static_cast<int>(n), y, static_cast<int>(m), idCount, budget, cx, cy);
    mt.run(threads);
    // Only a search that ran out of budget can have left such gaps; a
    // quarter of its budget again is plenty for the small gaps of scattered
    // edits and bounds the pass on very different inputs.
    if (mt.wasCut())
        mt.refineGaps(budget.total / 4);
}

void matchWithinHorizon(const std::uint32_t* x, std::size_t n, const std::uint32_t* y,
                        std::size_t m, std::uint32_t idCount, std::size_t horizon,
                        std::uint8_t* cx, std::uint8_t* cy)
{
    std::fill(cx, cx + n, std::uint8_t(0));
    std::fill(cy, cy + m, std::uint8_t(0));
    if (horizon < 1)
        horizon = 1;
    horizon = std::min(horizon, std::max(n, m));

    // Where each id occurs on the y side, in order, with a cursor per id
    // that only moves forward as the walk does.
    std::vector<std::uint32_t> start(static_cast<std::size_t>(idCount) + 1, 0);
    for (std::size_t j = 0; j < m; ++j)
        ++start[y[j] + 1];
    for (std::size_t k = 0; k < idCount; ++k)
        start[k + 1] += start[k];
    std::vector<std::uint32_t> places(m);
    {
        std::vector<std::uint32_t> fill(start.begin(), start.end() - 1);
        for (std::size_t j = 0; j < m; ++j)
            places[fill[y[j]]++] = static_cast<std::uint32_t>(j);
    }
    std::vector<std::uint32_t> cursor(start.begin(), start.end() - 1);

    // First place of `id` on the y side at or after j, or m.
    auto nextPlace = [&](std::uint32_t id, std::size_t j) -> std::size_t {
        std::uint32_t& c = cursor[id];
        const std::uint32_t end = start[id + 1];
        while (c < end && places[c] < j)
            ++c;
        return c < end ? places[c] : m;
    };

    // A pair resumes the matching only when a few lines in a row agree
    // from there (or the texts end): a lone common line such as a blank
    // one or a brace would otherwise lead the walk astray.
    constexpr std::size_t resumeRun = 3;
    auto resumes = [&](std::size_t p, std::size_t q) {
        for (std::size_t t = 0; t < resumeRun && p + t < n && q + t < m; ++t)
            if (x[p + t] != y[q + t])
                return false;
        return true;
    };

    std::size_t i = 0, j = 0;
    while (i < n && j < m) {
        if (x[i] == y[j]) {
            ++i;
            ++j;
            continue;
        }
        std::size_t best = SIZE_MAX, bi = 0, bj = 0;
        for (std::size_t p = i; p < n && p - i <= horizon && p - i < best; ++p) {
            const std::uint32_t id = x[p];
            nextPlace(id, j);
            for (std::uint32_t c = cursor[id]; c < start[id + 1]; ++c) {
                const std::size_t q = places[c];
                if (q - j > horizon || (p - i) + (q - j) >= best)
                    break;
                if (resumes(p, q)) {
                    best = (p - i) + (q - j);
                    bi = p;
                    bj = q;
                    break;
                }
            }
        }
        if (best == SIZE_MAX) {
            cx[i++] = 1;
            cy[j++] = 1;
            continue;
        }
        std::fill(cx + i, cx + bi, std::uint8_t(1));
        std::fill(cy + j, cy + bj, std::uint8_t(1));
        i = bi;
        j = bj;
    }
    std::fill(cx + i, cx + n, std::uint8_t(1));
    std::fill(cy + j, cy + m, std::uint8_t(1));
}

} // namespace skeinmatch
