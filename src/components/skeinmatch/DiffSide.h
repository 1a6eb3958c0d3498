#pragma once
// Internal: one side of a compare while its changes are placed and turned
// into records. "Considered" lines are those that take part in the
// matching: all lines, or with IgnoreEmptyLines all but the empty ones.

#include "components/skeinmatch/LineKeys.h"
#include "components/skeinmatch/LineText.h"

#include <cstdint>
#include <vector>

namespace skeinmatch {

struct DiffSide {
    const LineText* text = nullptr;
    // Considered index -> line index; empty when every line is considered.
    std::vector<std::uint32_t> considered;
    std::size_t count = 0;
    // Per considered line: 1 when it is part of a change.
    std::vector<std::uint8_t> changed;
    // Ids of the lines [idFrom, idTo) (only considered ones are valid); the
    // lines outside were set aside as equal and have no id.
    std::vector<std::uint32_t> ids;
    std::size_t idFrom = 0, idTo = 0;

    std::size_t line(std::size_t k) const { return considered.empty() ? k : considered[k]; }
};

// Equality of two considered lines of one side.
class SideEquality {
public:
    explicit SideEquality(KeyOptions options) : comparer_(options) {}

    bool equal(const DiffSide& s, std::size_t k1, std::size_t k2)
    {
        std::size_t l1 = s.line(k1), l2 = s.line(k2);
        if (l1 >= s.idFrom && l1 < s.idTo && l2 >= s.idFrom && l2 < s.idTo)
            return s.ids[l1 - s.idFrom] == s.ids[l2 - s.idFrom];
        return comparer_.equal(s.text->line(l1), s.text->line(l2));
    }

private:
    KeyComparer comparer_;
};

// Slides each run of changes of `side` to its most readable place, keeping
// it level with a change of `other` where it can (step 5 of LineDiff.h).
void placeChanges(DiffSide& side, DiffSide& other, SideEquality& eq);

} // namespace skeinmatch
