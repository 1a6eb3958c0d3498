#pragma once
// What to look for, compiled once per search and shared by the worker
// threads. Three ways of matching:
// - a literal, case-sensitive text: a plain byte search (memmem);
// - a literal ignoring case: PCRE2 with JIT on the escaped text;
// - a pattern in the six-symbol syntax the find viewer offers:
//     ?      zero or one character
//     *      zero or more characters
//     [...]  one character of the set; "a-z" ranges, "!" or "^" first negates
//     ^      (first) the match starts at the beginning of a line
//     $      (last)  the match ends at the end of a line
//     \x     the character x itself
//   translated to PCRE2 and compiled with JIT. Every other character stands
//   for itself; "^" and "$" elsewhere are ordinary characters.
// Matches never run across a line end. "Whole word only" means that the
// match has nothing but blanks (space or tab) or the line's ends on either
// side.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace gleanseek {

struct MatchOptions {
    std::string text;
    bool caseSensitive = false;
    bool wholeWord = false;
    bool pattern = false;  // the six-symbol syntax, not a literal
};

// Translates the six-symbol syntax to a PCRE2 pattern. False, with the reason
// in `error`, for an unclosed or empty "[...]". `usesWildcards` tells whether
// a symbol that stands for "a character" occurs.
bool TranslatePattern(std::string_view text, std::string& pcre, bool& usesWildcards, std::string& error);

// The longest run of characters that every match of a pattern in the
// six-symbol syntax contains; empty when there is none (a pattern of
// wildcards alone).
std::string RequiredLiteral(std::string_view text);

class TextMatcher {
public:
    // Per-thread state for matching (PCRE2 match data).
    class Scratch {
    public:
        virtual ~Scratch() = default;
    };

    virtual ~TextMatcher() = default;

    // Null, with the reason in `error`, when the text cannot be searched for.
    static std::unique_ptr<TextMatcher> Create(const MatchOptions& options, std::string& error);

    // True when matching needs the text as UTF-8: a non-ASCII character in
    // the search text, or a symbol that stands for one character. Otherwise
    // the raw bytes of any ASCII-based encoding can be searched directly.
    virtual bool NeedsUtf8() const = 0;

    virtual std::unique_ptr<Scratch> NewScratch() const = 0;

    // False when no match can be in these raw bytes, whatever their encoding
    // turns out to be: the text need not be decoded or searched at all.
    virtual bool MayMatch(const char*, std::size_t) const { return true; }

    // Finds the first match that starts at or after `from` in
    // [data, data + len), which holds whole lines. False when there is none,
    // or when the matcher failed (then `error` is set).
    virtual bool Find(const char* data, std::size_t len, std::size_t from, std::size_t& at, Scratch& scratch,
                      std::string& error) const = 0;
};

} // namespace gleanseek
