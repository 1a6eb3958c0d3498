#pragma once
// What one compare run found: the records of the two documents and, for each
// change, the word-level records of its section. The session builds it once
// per run; both renderings, the difference list, navigation and the status
// bar read it, and none of them goes back to the engine.

#include <QString>

#include <vector>

namespace filecompare {

// Kinds of difference records, as character codes.
inline constexpr int kKindAddition = 'a';
inline constexpr int kKindDeletion = 'd';
inline constexpr int kKindChange = 'c';

// One record, in the engine's numbering: paragraphs (or, inside a section,
// words) from 1; an addition's Original side and a deletion's Modified side
// name the paragraph the gap stands behind.
struct DiffRecord {
    int kind = 0;
    qint32 lf = 0, ll = 0, rf = 0, rl = 0;
};

struct Difference : DiffRecord {
    // For a change: its section compared word by word (numbers are words of
    // the section's text as FindWordBounds counts them). Empty otherwise, and
    // for a run that did not ask for them.
    std::vector<DiffRecord> words;
};

class ComparisonResult {
public:
    ComparisonResult() = default;
    static ComparisonResult failed(const QString& what);

    // False when a step of the run failed; the records are then empty and
    // must never be read as "no differences".
    bool ok() const { return failure_.isEmpty(); }
    const QString& failure() const { return failure_; }

    int count() const { return int(records_.size()); }
    bool empty() const { return records_.empty(); }
    // Record i, from 0; nullptr outside the list.
    const Difference* at(int i) const { return i >= 0 && i < count() ? &records_[size_t(i)] : nullptr; }
    const std::vector<Difference>& records() const { return records_; }

    int additions() const { return count(kKindAddition); }
    int deletions() const { return count(kKindDeletion); }
    int changes() const { return count(kKindChange); }

    // The paragraph of the other side that stands beside paragraph p of one
    // side (for the scroll coupling of the two panes).
    qint32 counterpartParagraph(qint32 p, bool fromOriginal) const;

    void append(Difference d) { records_.push_back(std::move(d)); }
    Difference& last() { return records_.back(); }

private:
    int count(int kind) const;

    std::vector<Difference> records_;
    QString failure_;
};

} // namespace filecompare
