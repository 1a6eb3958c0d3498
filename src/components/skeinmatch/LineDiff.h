#pragma once
// The file comparison proper: two texts in, the list of difference records
// out. Skeinmatch is the component's face; this is the work behind it.
//
// How it goes:
//  1. Lines equal at the start and at the end of both texts are set aside.
//  2. Every other line gets a dense id for its key under the options;
//     with IgnoreEmptyLines, empty lines take no part at all.
//  3. Lines whose key does not occur on the other side can never match;
//     they are changes and leave the search, which shrinks it a lot.
//  4. The rest is matched by an exact Myers search within a budget (see
//     SequenceMatch.h), or by the horizon walk when a line bracket is set.
//  5. Each run of changed lines is slid to where a reader expects it: level
//     with a change on the other side if it can be, else to the place whose
//     edges fall on blank lines and shallow indentation.
//  6. Runs on both sides between the same matched lines make one record.
//  7. With ShowChangesInLargerSections, records that only a few equal lines
//     keep apart are joined (see `largerSectionGap`).

#include "components/skeinmatch/LineText.h"

#include <cstdint>
#include <vector>

namespace skeinmatch {

// Character codes of the three kinds, as the records carry them.
enum RecordKind : int {
    kindAddition = 'a',
    kindDeletion = 'd',
    kindChange = 'c',
};

// One difference. Line numbers are 1-based lines of the files as written,
// every line counted. An addition's left range is the one line behind which
// the new lines stand (0 at the top), a deletion's right range likewise.
struct DiffRecord {
    int kind = 0;
    int leftFirst = 0;
    int leftLast = 0;
    int rightFirst = 0;
    int rightLast = 0;

    bool operator==(const DiffRecord&) const = default;
};

struct DiffOptions {
    bool ignoreCase = false;
    bool ignoreWhitespace = false;
    bool ignoreEmptyLines = false;
    bool largerSections = false;
    bool faster = false;
    bool useHorizon = false;
    int horizon = 1;
    // Tests set this to reach the search's fallbacks on small inputs.
    bool forceTinyBudget = false;
};

// With larger sections, two records whose ranges have at most this many
// lines between them on each side become one change record.
constexpr int largerSectionGap = 3;

// Compares two texts. `parallel` allows a second thread for the per-line
// work of large inputs.
std::vector<DiffRecord> diffLines(const LineText& original, const LineText& modified,
                                  const DiffOptions& options, bool parallel = true);

// Joins records per the larger-sections rule; exposed for tests.
std::vector<DiffRecord> joinNearbyRecords(const std::vector<DiffRecord>& records, int gap);

} // namespace skeinmatch
