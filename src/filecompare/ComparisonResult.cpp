#include "filecompare/ComparisonResult.h"

#include <algorithm>

namespace filecompare {

ComparisonResult ComparisonResult::failed(const QString& what)
{
    ComparisonResult r;
    r.failure_ = what;
    return r;
}

int ComparisonResult::count(int kind) const
{
    return int(std::count_if(records_.begin(), records_.end(), [kind](const Difference& d) { return d.kind == kind; }));
}

qint32 ComparisonResult::counterpartParagraph(qint32 p, bool fromOriginal) const
{
    // Where a record starts on this side: an addition on the Original side
    // (and a deletion on the Modified side) occupies no paragraph.
    auto start = [fromOriginal](const Difference& d) {
        return fromOriginal ? (d.kind == kKindAddition ? d.lf + 1 : d.lf)
                            : (d.kind == kKindDeletion ? d.rf + 1 : d.rf);
    };
    // The last record that starts at or before p on this side.
    const auto it = std::partition_point(records_.begin(), records_.end(),
                                         [&](const Difference& d) { return start(d) <= p; });
    if (it == records_.begin())
        return p;
    const Difference& d = *std::prev(it);
    // Equal text starts again behind the record's last paragraph on each
    // side (for an addition that is the Original paragraph it stands behind).
    const qint32 from = fromOriginal ? d.ll + 1 : d.rl + 1;
    const qint32 to = fromOriginal ? d.rl + 1 : d.ll + 1;
    if (p >= from)
        return to + (p - from);
    // Inside the record's own range on this side.
    if (fromOriginal) {
        if (d.kind == kKindChange)
            return qMin(d.rf + (p - d.lf), d.rl);
        return qMax(1, d.rf + 1);  // a deletion: the Modified paragraph behind the gap
    }
    if (d.kind == kKindChange)
        return qMin(d.lf + (p - d.rf), d.ll);
    return qMax(1, d.lf + 1);  // an addition: the Original paragraph behind the gap
}

} // namespace filecompare
