#pragma once
// Lists of 1-based numbers as users type them for sheets, rows and columns:
// "1-2, 12, 20,30-50", and for sheets also "*" for all.

#include <QString>
#include <optional>
#include <vector>

namespace lexiform {

struct NumberRange {
    long long first = 0;
    long long last = 0;  // inclusive
};

struct RangeList {
    bool all = false;  // "*" was given
    std::vector<NumberRange> ranges;

    bool contains(long long n) const;
    // The numbers in 1..count the list names, ascending, each once.
    std::vector<long long> select(long long count) const;
};

// Empty, malformed or reversed ranges give no list. "*" is accepted only
// when allowStar is set.
std::optional<RangeList> parseRangeList(const QString& text, bool allowStar);

} // namespace lexiform
