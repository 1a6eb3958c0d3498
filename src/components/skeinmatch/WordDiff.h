#pragma once
// Word-level differences inside a changed section, for the reports: the
// section's text on each side is cut into tokens (runs of letters and
// digits, runs of blanks, single other characters, line ends) and the
// tokens are matched like lines.

#include <cstdint>
#include <string_view>
#include <vector>

namespace skeinmatch {

struct Token {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
};

// A run of changed tokens: [aBegin, aEnd) on the Original side and
// [bBegin, bEnd) on the Modified side, at the same place; one of the two may
// be empty.
struct TokenRun {
    std::uint32_t aBegin, aEnd, bBegin, bEnd;
};

struct WordDiff {
    std::vector<Token> a, b;
    std::vector<TokenRun> runs;
    // False when the section was too large to look into; then every token
    // counts as changed and `runs` is one run over everything.
    bool detailed = true;
};

std::vector<Token> tokenize(std::string_view text);

// Lines of a changed section paired by likeness, in order, so that a line
// and its edited version face each other. Each entry names a line of each
// side (indices into the two lists) or -1 where the other side has no
// partner; runs of unpaired lines come Original first. Empty when the
// section is too large to pair.
struct LinePair {
    long a = -1;
    long b = -1;
};
std::vector<LinePair> pairSimilarLines(const std::vector<std::string_view>& a,
                                       const std::vector<std::string_view>& b);

WordDiff diffWords(std::string_view a, std::string_view b);

} // namespace skeinmatch
