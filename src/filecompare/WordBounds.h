#pragma once
// Words of a section as the word-level compare numbers them: a word ends
// behind a line feed, carriage return, blank or bell, so that line n of
// WordLines is word n of a WordIndex.

#include "filecompare/FileCompareFormats.h"

#include <QByteArray>
#include <QString>

#include <vector>

class RichTextBox;

namespace filecompare {

// The text with one line per word.
QByteArray WordLines(const QString& sText);
bool WriteWordLines(const QString& sText, const QString& sFile);

// Where the delimiters of one text lie (1-based).
class WordIndex {
public:
    WordIndex() = default;
    explicit WordIndex(const QString& text);
    // Where word lWord (1-based) lies, 1-based, taking in the delimiter in
    // front of it (from the second word on) and the one behind it; the last
    // word ends at Len + 1. Word 0 gives 0 and 0.
    bool bounds(qint32 lWord, qint32& lFirst, qint32& lLast) const;

private:
    std::vector<qint32> delimiters_;
    qint32 length_ = 0;
};

// The index of a box's text, kept while the text stays the same: a
// section's words are looked up many times between two edits, and a walk
// from the start for every lookup would be quadratic. One per renderer.
class WordIndexCache {
public:
    const WordIndex& of(const RichTextBox* box);

private:
    const RichTextBox* box_ = nullptr;
    QString text_;  // holds the box's text buffer, so a new buffer means a new text
    WordIndex index_;
};

bool FindWordBounds(const RichTextBox* rtb, qint32 lWord, qint32& lFirst, qint32& lLast);
bool FindWordBounds(WordIndexCache& cache, const RichTextBox* rtb, qint32 lWord, qint32& lFirst, qint32& lLast);

// Formats words lFromWord..lToWord of a box with their delimiters.
void FormatWordRange(WordIndexCache& cache, RichTextBox* rtb, qint32 lFromWord, qint32 lToWord, const DiffFormat& f);

} // namespace filecompare
