#pragma once
// Keeps two documents shown side by side level: every difference, and every
// stretch of equal paragraphs behind one, starts at the same height in both.
// Only the space above paragraphs changes (a top margin of the block format,
// tagged as ours), never a character, so paragraph numbers and positions stay
// those the comparison counted.

#include <vector>

class QTextDocument;

namespace tv {

// One difference record: kind 'a', 'd' or 'c', the 1-based inclusive
// paragraph ranges of the two sides. An addition's left pair names the
// paragraph behind which the new ones stand (0 at the top), a deletion's
// right pair likewise.
struct DifferenceSpan {
    int kind = 0;
    int leftFirst = 0;
    int leftLast = 0;
    int rightFirst = 0;
    int rightLast = 0;
};

// Levels the two documents as laid out now (so set their text width first;
// wrapped paragraphs count with their real height). Spacing from an earlier
// call is replaced. Records must run from the top down, as the engine gives
// them.
void LevelDocuments(QTextDocument& left, QTextDocument& right, const std::vector<DifferenceSpan>& records);

// Takes away the spacing LevelDocuments added, leaving other margins alone.
void ClearLevelSpacing(QTextDocument& document);

// The spacing LevelDocuments gave a paragraph (0-based block), in pixels.
double LevelSpacingOf(const QTextDocument& document, int block);

} // namespace tv
