// CreateFileReport and the parts that the report writers share.

#include "components/skeinmatch/ReportWriters.h"
#include "components/skeinmatch/Skeinmatch.h"

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

    if (file.empty())
        return -5;
    std::FILE* f = std::fopen(file.c_str(), "wb");
    if (!f)
        return -5;
    bool ok = false;
    try {
        skeinmatch::ReportOut out(f);
        if (type == 1)
            ok = skeinmatch::writeHtmlReport(out, in, style == 2);
        else if (type == 2)
            ok = skeinmatch::writeUnifiedReport(out, in);
        else
            ok = skeinmatch::writeCsvReport(out, in);
        ok = out.ok() && ok;
    } catch (const std::bad_alloc&) {
        ok = false;
    }
    if (std::fclose(f) != 0)
        ok = false;
    return ok ? 0 : -2;
}
