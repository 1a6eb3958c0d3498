// Where a run of changed lines is shown. A run of lines that is repeated
// right above or below it can be shown one line up or down with the same
// number of changes ("a b [b]" or "a [b] b"); a minimal matching picks one
// of those places at random, and this file moves each run to the one a
// reader expects.
//
// The sides are walked as groups: a group is the run of changed lines
// between two unchanged ones, possibly empty. The i-th group of one side
// stands between the same matched lines as the i-th group of the other,
// which is how the two are kept level while one slides.

#include "components/skeinmatch/DiffSide.h"

#include <algorithm>

namespace skeinmatch {

namespace {

struct Group {
    std::size_t start = 0;  // first changed line
    std::size_t end = 0;    // one behind the last, an unchanged line or count
};

// Longest slide that the readability score looks at; beyond that a run
// stays at the lowest place it can take.
constexpr std::size_t maxScoredSlide = 100;

bool isBlankLine(std::string_view s)
{
    for (char c : s)
        if (c != ' ' && c != '\t' && c != '\r' && c != '\f' && c != '\v')
            return false;
    return true;
}

int indentOf(std::string_view s)
{
    int col = 0;
    for (char c : s) {
        if (c == ' ')
            ++col;
        else if (c == '\t')
            col += 8 - col % 8;
        else
            break;
        if (col >= 200)
            break;
    }
    return col;
}

class Placer {
public:
    Placer(DiffSide& side, DiffSide& other, SideEquality& eq) : s_(side), o_(other), eq_(eq) {}

    void run();

private:
    void first(const DiffSide& d, Group& g)
    {
        g.start = 0;
        g.end = 0;
        while (g.end < d.count && d.changed[g.end])
            ++g.end;
    }
    bool next(const DiffSide& d, Group& g)
    {
        if (g.end >= d.count)
            return false;
        g.start = g.end + 1;
        g.end = g.start;
        while (g.end < d.count && d.changed[g.end])
            ++g.end;
        return true;
    }
    bool previous(const DiffSide& d, Group& g)
    {
        if (g.start == 0)
            return false;
        g.end = g.start - 1;
        g.start = g.end;
        while (g.start > 0 && d.changed[g.start - 1])
            --g.start;
        return true;
    }
    // Moves the group up by one line if the line above equals its last;
    // it then takes in a group that it touches.
    bool slideUp(Group& g)
    {
        if (g.start == 0 || !eq_.equal(s_, g.start - 1, g.end - 1))
            return false;
        s_.changed[--g.start] = 1;
        s_.changed[--g.end] = 0;
        while (g.start > 0 && s_.changed[g.start - 1])
            --g.start;
        return true;
    }
    bool slideDown(Group& g)
    {
        if (g.end >= s_.count || !eq_.equal(s_, g.start, g.end))
            return false;
        s_.changed[g.start++] = 0;
        s_.changed[g.end++] = 1;
        while (g.end < s_.count && s_.changed[g.end])
            ++g.end;
        return true;
    }

    int splitPenalty(std::size_t k);
    int score(std::size_t start, std::size_t end) { return splitPenalty(start) + splitPenalty(end); }

    DiffSide& s_;
    DiffSide& o_;
    SideEquality& eq_;
};

// How bad a place is for an edge of a run: between considered lines k-1
// and k. Edges read best behind a blank line, in front of a line that is
// not blank and little indented, and not between a block and its closing
// line. The ends of the text are perfect edges.
int Placer::splitPenalty(std::size_t k)
{
    if (k == 0 || k >= s_.count)
        return 0;
    const LineText& t = *s_.text;
    const std::size_t after = s_.line(k);
    const std::size_t total = t.lineCount();

    const bool blankBefore = after > 0 && isBlankLine(t.line(after - 1));
    const bool blankAfter = isBlankLine(t.line(after));
    int indentAfter = -1;
    for (std::size_t l = after; l < total && l < after + 20; ++l) {
        std::string_view ln = t.line(l);
        if (!isBlankLine(ln)) {
            indentAfter = indentOf(ln);
            break;
        }
    }
    int indentBefore = -1;
    for (std::size_t l = after; l > 0 && l + 20 > after;) {
        --l;
        std::string_view ln = t.line(l);
        if (!isBlankLine(ln)) {
            indentBefore = indentOf(ln);
            break;
        }
    }

    int pen = 0;
    if (!blankBefore)
        pen += 20;
    if (blankAfter)
        pen += 10;
    if (indentAfter >= 0)
        pen += std::min(indentAfter, 40);
    if (!blankBefore && indentBefore >= 0 && indentAfter >= 0 && indentAfter < indentBefore)
        pen += 5;
    return pen;
}

void Placer::run()
{
    Group g, go;
    first(s_, g);
    first(o_, go);
    for (;;) {
        if (g.end != g.start) {
            std::size_t size = 0, earliestEnd = 0;
            std::size_t endLevelWithOther = SIZE_MAX;
            do {
                size = g.end - g.start;
                endLevelWithOther = SIZE_MAX;
                while (slideUp(g))
                    if (!previous(o_, go))
                        return;  // the sides disagree; leave them as they are
                earliestEnd = g.end;
                if (go.end > go.start)
                    endLevelWithOther = g.end;
                while (slideDown(g)) {
                    if (!next(o_, go))
                        return;
                    if (go.end > go.start)
                        endLevelWithOther = g.end;
                }
            } while (size != g.end - g.start);

            if (g.end == earliestEnd) {
                // It cannot move.
            } else if (endLevelWithOther != SIZE_MAX) {
                // Level with a change on the other side: one change record
                // instead of a deletion and an addition side by side.
                while (g.end > endLevelWithOther) {
                    slideUp(g);
                    previous(o_, go);
                }
            } else {
                std::size_t lowest = earliestEnd;
                if (g.end - lowest > maxScoredSlide)
                    lowest = g.end - maxScoredSlide;
                std::size_t bestEnd = g.end;
                int best = score(g.end - size, g.end);
                for (std::size_t end = g.end; end-- > lowest;) {
                    int sc = score(end - size, end);
                    if (sc < best) {
                        best = sc;
                        bestEnd = end;
                    }
                }
                while (g.end > bestEnd) {
                    slideUp(g);
                    previous(o_, go);
                }
            }
        }
        if (!next(s_, g))
            break;
        if (!next(o_, go))
            break;
    }
}

} // namespace

void placeChanges(DiffSide& side, DiffSide& other, SideEquality& eq)
{
    Placer(side, other, eq).run();
}

} // namespace skeinmatch
