#pragma once
// Internal: the three report writers behind Skeinmatch::CreateFileReport.
// Each writes from the texts and records that the engine holds.

#include "components/skeinmatch/BufferedOut.h"
#include "components/skeinmatch/LineDiff.h"
#include "components/skeinmatch/LineKeys.h"
#include "components/skeinmatch/LineText.h"

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace skeinmatch {

struct ReportInput {
    const LineText* original = nullptr;
    const LineText* modified = nullptr;
    const std::vector<DiffRecord>* records = nullptr;
    std::string reportTitle;
    std::string masterTitle;
    std::string sourceTitle;
    std::time_t originalTime = 0;
    std::time_t modifiedTime = 0;
    std::time_t created = 0;
    // What counts as an empty line, for lining up equal stretches.
    KeyOptions keys;
};

// A record as half-open spans of 0-based lines: an addition's left span is
// empty and sits behind its anchor line, a deletion's right span likewise.
struct RecordSpan {
    long aBegin, aEnd, bBegin, bEnd;
};
RecordSpan spanOf(const DiffRecord& r);
DiffRecord recordOf(const RecordSpan& s);

// The compare takes a missing line end behind the last line as no
// difference; a patch must carry it. Adds the change that says so where
// only one side lacks it.
void showFinalLineEnds(std::vector<RecordSpan>& spans, const LineText& a, const LineText& b);

// A title fit for one line: line ends become blanks.
std::string oneLine(std::string_view s);

// Lines [begin, end) of a text, the separator between them.
std::string joinLines(const LineText& t, long begin, long end, std::string_view separator);

bool writeHtmlReport(BufferedOut& out, const ReportInput& in, bool sideBySide);
bool writeUnifiedReport(BufferedOut& out, const ReportInput& in);
bool writeCsvReport(BufferedOut& out, const ReportInput& in);

} // namespace skeinmatch
