// CreateFileReport and the parts that the report writers share.

#include "components/skeinmatch/ReportWriters.h"
#include "components/skeinmatch/Skeinmatch.h"

#include <algorithm>

namespace skeinmatch {

RecordSpan spanOf(const DiffRecord& r)
{
    RecordSpan s{};
    if (r.kind == kindAddition) {
        s.aBegin = s.aEnd = r.leftFirst;
    } else {
        s.aBegin = r.leftFirst - 1;
        s.aEnd = r.leftLast;
    }
    if (r.kind == kindDeletion) {
        s.bBegin = s.bEnd = r.rightFirst;
    } else {
        s.bBegin = r.rightFirst - 1;
        s.bEnd = r.rightLast;
    }
    return s;
}

// The compare takes a missing line end behind the last line as no
// difference, but patch has to be told. When the last line of one side has
// no line end and stands as an equal line beside a line that has one, the
// pair goes in as a change (joined to a record that it touches).
void showFinalLineEnds(std::vector<RecordSpan>& spans, const LineText& a, const LineText& b)
{
    const long totalA = static_cast<long>(a.lineCount());
    const long totalB = static_cast<long>(b.lineCount());
    for (bool sideB : {true, false}) {
        const LineText& t = sideB ? b : a;
        const LineText& o = sideB ? a : b;
        const long total = sideB ? totalB : totalA;
        const long otherTotal = sideB ? totalA : totalB;
        if (total == 0 || t.hasLineEnd(static_cast<std::size_t>(total - 1)))
            continue;
        const long last = total - 1;
        std::size_t k = spans.size();
        while (k > 0 && (sideB ? spans[k - 1].bEnd : spans[k - 1].aEnd) > last)
            --k;
        if (k < spans.size() && (sideB ? spans[k].bBegin : spans[k].aBegin) <= last)
            continue;  // inside a record, which marks it itself
        const long pa = k ? spans[k - 1].aEnd : 0, pb = k ? spans[k - 1].bEnd : 0;
        const long partner = (sideB ? pa : pb) + (last - (sideB ? pb : pa));
        if (partner >= otherTotal || !o.hasLineEnd(static_cast<std::size_t>(partner)))
            continue;
        RecordSpan add = sideB ? RecordSpan{partner, partner + 1, last, last + 1}
                               : RecordSpan{last, last + 1, partner, partner + 1};
        spans.insert(spans.begin() + static_cast<long>(k), add);
        auto touches = [](const RecordSpan& x, const RecordSpan& y) {
            return y.aBegin == x.aEnd && y.bBegin == x.bEnd;
        };
        if (k + 1 < spans.size() && touches(spans[k], spans[k + 1])) {
            spans[k].aEnd = spans[k + 1].aEnd;
            spans[k].bEnd = spans[k + 1].bEnd;
            spans.erase(spans.begin() + static_cast<long>(k) + 1);
        }
        if (k > 0 && touches(spans[k - 1], spans[k])) {
            spans[k - 1].aEnd = spans[k].aEnd;
            spans[k - 1].bEnd = spans[k].bEnd;
            spans.erase(spans.begin() + static_cast<long>(k));
        }
    }
}


DiffRecord recordOf(const RecordSpan& s)
{
    DiffRecord r;
    const bool hasA = s.aEnd > s.aBegin, hasB = s.bEnd > s.bBegin;
    r.kind = hasA && hasB ? kindChange : hasA ? kindDeletion : kindAddition;
    r.leftFirst = static_cast<int>(hasA ? s.aBegin + 1 : s.aBegin);
    r.leftLast = static_cast<int>(s.aEnd);
    r.rightFirst = static_cast<int>(hasB ? s.bBegin + 1 : s.bBegin);
    r.rightLast = static_cast<int>(s.bEnd);
    return r;
}

std::string joinLines(const LineText& t, long begin, long end, std::string_view separator)
{
    std::string s;
    for (long i = begin; i < end; ++i) {
        if (i > begin)
            s += separator;
        s += t.line(static_cast<std::size_t>(i));
    }
    return s;
}

std::string oneLine(std::string_view s)
{
    std::string out(s);
    for (char& c : out)
        if (c == '\n' || c == '\r')
            c = ' ';
    return out;
}

} // namespace skeinmatch

int Skeinmatch::CreateFileReport(const std::string& file, int type, int style)
{
    // The viewer compares right before asking; a caller that never did
    // gets a compare of the files that are set.
    if (!compared_)
        CompareFiles();
    if (loadStatus_ == -3 || loadStatus_ == -4 || loadStatus_ == -2)
        return loadStatus_;
    if (type < 1 || type > 3)
        return -2;

    skeinmatch::ReportInput in;
    in.original = &original_;
    in.modified = &modified_;
    in.records = &records_;
    in.reportTitle = reportTitle_.empty() ? std::string("Tallyvane") : reportTitle_;
    in.masterTitle = masterTitle_.empty() ? masterFile_ : masterTitle_;
    in.sourceTitle = sourceTitle_.empty() ? sourceFile_ : sourceTitle_;
    if (in.masterTitle.empty())
        in.masterTitle = "Original";
    if (in.sourceTitle.empty())
        in.sourceTitle = "Modified";
    in.originalTime = originalTime_;
    in.modifiedTime = modifiedTime_;
    in.created = std::time(nullptr);
    in.keys = {options_.ignoreCase, options_.ignoreWhitespace};

    reportError_.clear();
    if (file.empty())
        return -5;
    // A report written over the files it describes would destroy them.
    if (safewrite::sameFile(file, masterFile_) || safewrite::sameFile(file, sourceFile_)) {
        reportError_ = "The report would overwrite a file being compared";
        return -5;
    }
    // A file that cannot be created says enough with -5 alone (its caller
    // tells the user to check the folder); a reason is kept for what -5
    // would not explain.
    safewrite::SafeFile target(file);
    if (!target.open())
        return -5;
    bool ok = false;
    try {
        skeinmatch::BufferedOut out(target);
        if (type == 1)
            ok = skeinmatch::writeHtmlReport(out, in, style == 2);
        else if (type == 2)
            ok = skeinmatch::writeUnifiedReport(out, in);
        else
            ok = skeinmatch::writeCsvReport(out, in);
        ok = out.ok() && ok;
    } catch (const std::bad_alloc&) {
        reportError_ = "Out of memory";
        return -2;
    }
    // A report cut short by a full disk is no report: the old file stays
    // and the caller hears why.
    if (!ok && !target.failed())
        return -2;
    if (!ok || !target.commit()) {
        reportError_ = target.reason();
        return -5;
    }
    return 0;
}

std::vector<skeinmatch::DiffRecord> Skeinmatch::patchRecords() const
{
    std::vector<skeinmatch::RecordSpan> spans;
    spans.reserve(records_.size() + 1);
    for (const auto& r : records_)
        spans.push_back(skeinmatch::spanOf(r));
    skeinmatch::showFinalLineEnds(spans, original_, modified_);
    std::vector<skeinmatch::DiffRecord> out;
    out.reserve(spans.size());
    for (const auto& s : spans)
        out.push_back(skeinmatch::recordOf(s));
    return out;
}
