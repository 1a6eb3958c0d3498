#pragma once
// Matching of two sequences of dense ids: which elements of each side are
// left unmatched (changed). Nothing here knows about lines or options.

#include <cstddef>
#include <cstdint>

namespace skeinmatch {

// How much search the exact matcher may spend before it settles for a
// near-minimal answer. Work is counted in diagonal steps of the search.
struct MatchBudget {
    // Total steps of exact search over the whole compare; past it every
    // further search is cut short after `cutoff` rounds.
    std::uint64_t total = 0;
    // Rounds a search always gets before it may be cut short.
    int cutoff = 0;
    // Whether a search cut short splits its range on lines that occur once
    // on each side before falling back to its furthest point.
    bool anchors = false;
    // Whether large inputs are first matched on the common runs through
    // lines unique to both sides (see matchSequences).
    bool runsFirst = false;

    // The budget of the default mode: exact whenever the edit is small
    // enough to find within a few times the cost of reading the input.
    static MatchBudget standard(std::size_t n, std::size_t m);
    // The budget of "compare faster": a fraction of that.
    static MatchBudget fast(std::size_t n, std::size_t m);
    // No limit at all: always a minimal edit (tests, small inputs).
    static MatchBudget unlimited();
};

// Minimal edit by the linear-space Myers search, within a budget. When a
// search runs out of budget the range is split at the furthest point that
// the search reached, or first, if the budget says so, on the lines that
// occur exactly once on each side (their longest common subsequence).
// With runsFirst, a large input is first split on the chain of common runs
// through such lines that covers the most lines; when the edit that gives
// is too large for the exact search, it stands.
//
// x[0..n) and y[0..m) hold ids below idCount. On return cx[i] is 1 for each
// x[i] left unmatched, 0 otherwise; cy likewise. The matched elements pair
// up in order and are equal. With threads above 1 a second thread helps
// once the budget is spent; the result is the same either way.
void matchSequences(const std::uint32_t* x, std::size_t n, const std::uint32_t* y,
                    std::size_t m, std::uint32_t idCount, const MatchBudget& budget,
                    std::uint8_t* cx, std::uint8_t* cy, int threads = 1);

// Matching with a horizon: from the last matched pair, an unmatched element
// looks for its counterpart only within `horizon` elements ahead on both
// sides, taking the nearest pair from which three elements in a row agree
// (fewer at the ends). When there is none both current elements count as
// changed and the walk moves on by one.
void matchWithinHorizon(const std::uint32_t* x, std::size_t n, const std::uint32_t* y,
                        std::size_t m, std::uint32_t idCount, std::size_t horizon,
                        std::uint8_t* cx, std::uint8_t* cy);

} // namespace skeinmatch
