#pragma once
// File-type filters as users type them: "*.TXT", "*.doc *.xls", "report?.csv".
// Matching ignores letter case (Unicode-aware, independent of the process
// locale), because people write the patterns as they see the names in a
// listing, not as the file system spells them.

#include <string>
#include <string_view>
#include <vector>

namespace skeinmatch {

// The name with every letter folded to lower case, for comparing and
// ordering names without regard to case. Bytes that are not valid UTF-8 are
// kept as they are.
std::string FoldCase(std::string_view utf8);

// Order in which folder listings are walked and reported: by folded name,
// then by the exact bytes so that names differing only in case keep a fixed
// order.
struct NameOrder {
    bool operator()(const std::string& foldedA, const std::string& nameA,
                    const std::string& foldedB, const std::string& nameB) const
    {
        if (foldedA != foldedB)
            return foldedA < foldedB;
        return nameA < nameB;
    }
};

class FileNamePattern {
public:
    FileNamePattern() = default;
    // One or more patterns separated by blanks (or semicolons). "*" stands for
    // any run of characters and "?" for exactly one; "*.*" and "*" take every
    // name, with or without a dot.
    explicit FileNamePattern(std::string_view patterns);

    bool Matches(std::string_view name) const;
    // True when no pattern was given at all (only blanks).
    bool Empty() const { return patterns_.empty(); }
    bool MatchesEverything() const { return matchAll_; }
    const std::vector<std::u32string>& Patterns() const { return patterns_; }

private:
    std::vector<std::u32string> patterns_;
    bool matchAll_ = false;
};

} // namespace skeinmatch
