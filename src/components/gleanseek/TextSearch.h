#pragma once
// From a buffer of whole lines to hits: one hit per line that matches, at
// the first match in that line.

#include "components/gleanseek/TextMatcher.h"

#include <cstdint>
#include <string>
#include <vector>

namespace gleanseek {

struct Hit {
    std::string sFile;   // the file, with its path
    std::int32_t lLine = 0;  // 1-based
    std::int32_t lCol = 0;   // 1-based, in characters
    std::string sItem;   // the line's text, tabs as blanks, valid UTF-8

    bool operator==(const Hit&) const = default;
};

// Lines longer than this are shown in part: a window around the hit, with
// "..." where text was left out.
constexpr std::size_t kMaxItemBytes = 2000;

// The text shown for a hit: the line without its line end, tabs turned to
// blanks (a tab would split the row of a tab-delimited grid or report),
// converted from Windows-1252 when it is not UTF-8.
std::string MakeItem(const char* line, std::size_t len, std::size_t hitOffset);

// Searches [data, data + len), whose first line has the number `firstLine`,
// and appends a hit for `file` for each line that matches. False (with
// `error`) when the matcher gave up; the hits found until then are kept.
bool SearchLines(const TextMatcher& matcher, TextMatcher::Scratch& scratch, const char* data, std::size_t len,
                 std::int64_t firstLine, const std::string& file, std::vector<Hit>& hits, std::string& error);

// Number of line feeds in [data, data + len).
std::int64_t CountLineFeeds(const char* data, std::size_t len);

} // namespace gleanseek
