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

WordDiff diffWords(std::string_view a, std::string_view b);

} // namespace skeinmatch
