#include "components/gleanseek/TextMatcher.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace gleanseek {
namespace {

// "Any character" of a line: never a line end, so no match spans lines.
constexpr const char* kAnyChar = "[^\\r\\n]";

bool isAsciiAlnum(unsigned char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Length of the UTF-8 sequence a lead byte starts (1 for anything odd, which
// the UTF-8 check of the compiler then refuses).
std::size_t sequenceLength(unsigned char b)
{
    if (b >= 0xF0 && b <= 0xF7)
        return 4;
    if (b >= 0xE0)
        return 3;
    if (b >= 0xC0)
        return 2;
    return 1;
}

// Appends the character starting at text[i] so that PCRE2 takes it
// literally, in or out of a character class alike; returns its length.
std::size_t appendLiteral(std::string& out, std::string_view text, std::size_t i)
{
    const auto c = static_cast<unsigned char>(text[i]);
    if (c >= 0x80) {
        const std::size_t n = std::min(sequenceLength(c), text.size() - i);
        out.append(text.substr(i, n));
        return n;
    }
    if (isAsciiAlnum(c)) {
        out.push_back(static_cast<char>(c));
    } else if (c >= 0x20 && c < 0x7F) {
        out.push_back('\\');
        out.push_back(static_cast<char>(c));
    } else {
        char buf[12];
        std::snprintf(buf, sizeof buf, "\\x{%02x}", c);
        out += buf;
    }
    return 1;
}

bool hasNonAscii(std::string_view s)
{
    for (char c : s)
        if (static_cast<unsigned char>(c) >= 0x80)
            return true;
    return false;
}

bool isBlankOrEnd(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

char asciiLower(char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c;
}

std::string asciiLowered(std::string_view s)
{
    std::string out(s);
    for (char& c : out)
        c = asciiLower(c);
    return out;
}

bool equalCaseless(const char* a, const char* lowered, std::size_t n)
{
    for (std::size_t i = 0; i < n; ++i)
        if (asciiLower(a[i]) != lowered[i])
            return false;
    return true;
}

// Finds a text in a buffer, optionally ignoring the case of ASCII letters.
// Sixteen positions are tried at once: a position is a candidate when its
// byte is the text's first byte and the byte at the text's length further is
// its last (in either case), and only candidates are compared in full. Two
// bytes at a distance rule out nearly every position of ordinary text, so
// the search runs at the speed of reading memory.
class LiteralFinder {
public:
    LiteralFinder(std::string_view text, bool caseless)
        : needle_(caseless ? asciiLowered(text) : std::string(text)), caseless_(caseless)
    {
    }

    const std::string& Needle() const { return needle_; }

    const char* Find(const char* hay, std::size_t n) const
    {
        const std::size_t m = needle_.size();
        if (m == 0)
            return hay;
        if (n < m)
            return nullptr;
        if (!caseless_ && m == 1)
            return static_cast<const char*>(std::memchr(hay, needle_[0], n));
        const char first = needle_[0], last = needle_[m - 1];
        const char firstOther = caseless_ ? upper(first) : first;
        const char lastOther = caseless_ ? upper(last) : last;
        std::size_t i = 0;
#if defined(__SSE2__)
        const __m128i f1 = _mm_set1_epi8(first), f2 = _mm_set1_epi8(firstOther);
        const __m128i l1 = _mm_set1_epi8(last), l2 = _mm_set1_epi8(lastOther);
        for (; i + m - 1 + 16 <= n; i += 16) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(hay + i));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(hay + i + m - 1));
            const __m128i hitFirst = _mm_or_si128(_mm_cmpeq_epi8(a, f1), _mm_cmpeq_epi8(a, f2));
            const __m128i hitLast = _mm_or_si128(_mm_cmpeq_epi8(b, l1), _mm_cmpeq_epi8(b, l2));
            unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(hitFirst, hitLast)));
            while (mask) {
                const unsigned bit = static_cast<unsigned>(__builtin_ctz(mask));
                if (matchesAt(hay + i + bit))
                    return hay + i + bit;
                mask &= mask - 1;
            }
        }
#endif
        for (; i + m <= n; ++i)
            if (matchesAt(hay + i))
                return hay + i;
        return nullptr;
    }

private:
    static char upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - ('a' - 'A')) : c; }

    bool matchesAt(const char* p) const
    {
        return caseless_ ? equalCaseless(p, needle_.data(), needle_.size())
                         : std::memcmp(p, needle_.data(), needle_.size()) == 0;
    }

    const std::string needle_;
    const bool caseless_;
};

class LiteralMatcher final : public TextMatcher {
public:
    LiteralMatcher(std::string needle, bool wholeWord, bool utf8, bool caseless)
        : finder_(needle, caseless), wholeWord_(wholeWord), utf8_(utf8)
    {
    }
    bool NeedsUtf8() const override { return utf8_; }
    std::unique_ptr<Scratch> NewScratch() const override { return std::make_unique<Scratch>(); }

    bool Find(const char* data, std::size_t len, std::size_t from, std::size_t& at, Scratch&,
              std::string&) const override
    {
        const std::size_t n = finder_.Needle().size();
        std::size_t pos = from;
        while (pos < len && len - pos >= n) {
            const char* p = finder_.Find(data + pos, len - pos);
            if (!p)
                return false;
            at = static_cast<std::size_t>(p - data);
            if (!wholeWord_ || ((at == 0 || isBlankOrEnd(data[at - 1])) && (at + n == len || isBlankOrEnd(data[at + n]))))
                return true;
            pos = at + 1;
        }
        return false;
    }

private:
    const LiteralFinder finder_;
    const bool wholeWord_;
    const bool utf8_;
};

class PcreMatcher final : public TextMatcher {
public:
    class PcreScratch final : public Scratch {
    public:
        explicit PcreScratch(const pcre2_code* code) : data(pcre2_match_data_create_from_pattern(code, nullptr)) {}
        ~PcreScratch() override { pcre2_match_data_free(data); }
        pcre2_match_data* data;
    };

    // `required` is a text that every match contains (empty when there is
    // none): lines without it are skipped without running the pattern.
    static std::unique_ptr<TextMatcher> Create(const std::string& pattern, bool caseSensitive, bool utf8,
                                               const std::string& required, std::string& error)
    {
        std::uint32_t options = PCRE2_MULTILINE;
        if (!caseSensitive)
            options |= PCRE2_CASELESS;
        if (utf8)
            options |= PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
        int code = 0;
        PCRE2_SIZE offset = 0;
        pcre2_code* re = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options, &code,
                                       &offset, nullptr);
        if (!re) {
            error = message(code);
            return nullptr;
        }
        // Without JIT (not built in, or refused by the system) the
        // interpreter gives the same answers, only slower.
        pcre2_jit_compile(re, PCRE2_JIT_COMPLETE);
        return std::unique_ptr<TextMatcher>(new PcreMatcher(re, utf8, required, !caseSensitive));
    }

    ~PcreMatcher() override { pcre2_code_free(code_); }
    bool NeedsUtf8() const override { return utf8_; }
    std::unique_ptr<Scratch> NewScratch() const override { return std::make_unique<PcreScratch>(code_); }

    // An ASCII required text reads the same in raw bytes as after any
    // decoding to UTF-8, so its absence from the raw bytes settles it.
    bool MayMatch(const char* data, std::size_t len) const override
    {
        return !asciiPrefilter_ || prefilter_->Find(data, len) != nullptr;
    }

    bool Find(const char* data, std::size_t len, std::size_t from, std::size_t& at, Scratch& scratch,
              std::string& error) const override
    {
        auto& s = static_cast<PcreScratch&>(scratch);
        if (!prefilter_)
            return match(data, len, from, at, s, error);
        // Matches never cross a line end, so the pattern only needs to run
        // on the lines that hold the required text, each on its own.
        std::size_t pos = from;
        while (pos < len) {
            const char* candidate = prefilter_->Find(data + pos, len - pos);
            if (!candidate)
                return false;
            const std::size_t c = static_cast<std::size_t>(candidate - data);
            const void* before = memrchr(data + pos, '\n', c - pos);
            const std::size_t lineStart = before ? static_cast<std::size_t>(static_cast<const char*>(before) - data) + 1 : pos;
            const void* nl = std::memchr(data + c, '\n', len - c);
            const std::size_t lineEnd = nl ? static_cast<std::size_t>(static_cast<const char*>(nl) - data) + 1 : len;
            if (match(data, lineEnd, std::max(lineStart, from), at, s, error))
                return true;
            if (!error.empty())
                return false;
            pos = lineEnd;
        }
        return false;
    }

private:
    PcreMatcher(pcre2_code* code, bool utf8, const std::string& required, bool caseless)
        : code_(code), utf8_(utf8),
          prefilter_(required.empty() ? nullptr : std::make_unique<LiteralFinder>(required, caseless)),
          asciiPrefilter_(prefilter_ && !hasNonAscii(required))
    {
    }

    bool match(const char* data, std::size_t len, std::size_t from, std::size_t& at, PcreScratch& s,
               std::string& error) const
    {
        const int rc = pcre2_match(code_, reinterpret_cast<PCRE2_SPTR>(data), len, from, 0, s.data, nullptr);
        if (rc >= 0) {
            at = pcre2_get_ovector_pointer(s.data)[0];
            return true;
        }
        if (rc != PCRE2_ERROR_NOMATCH)
            error = message(rc);
        return false;
    }

    static std::string message(int code)
    {
        PCRE2_UCHAR buf[256];
        if (pcre2_get_error_message(code, buf, sizeof buf) < 0)
            return "error " + std::to_string(code);
        return reinterpret_cast<const char*>(buf);
    }

    pcre2_code* code_;
    const bool utf8_;
    const std::unique_ptr<const LiteralFinder> prefilter_;
    const bool asciiPrefilter_;
};

} // namespace

bool TranslatePattern(std::string_view text, std::string& pcre, bool& usesWildcards, std::string& error)
{
    pcre.clear();
    usesWildcards = false;
    std::size_t i = 0;
    const std::size_t end = text.size();
    if (end > 0 && text[0] == '^') {
        pcre += '^';
        i = 1;
    }
    while (i < end) {
        const char c = text[i];
        if (c == '\\') {
            if (i + 1 < end) {
                i += 1 + appendLiteral(pcre, text, i + 1);
            } else {
                pcre += "\\\\";  // a lone final backslash is itself
                ++i;
            }
        } else if (c == '?') {
            pcre += kAnyChar;
            pcre += '?';
            usesWildcards = true;
            ++i;
        } else if (c == '*') {
            pcre += kAnyChar;
            pcre += '*';
            usesWildcards = true;
            ++i;
        } else if (c == '$' && i + 1 == end) {
            pcre += "(?=\\r?$)";
            ++i;
        } else if (c == '[') {
            std::size_t j = i + 1;
            const bool negate = j < end && (text[j] == '!' || text[j] == '^');
            if (negate)
                ++j;
            std::string set;
            bool any = false;
            while (j < end && text[j] != ']') {
                if (text[j] == '\\' && j + 1 < end) {
                    j += 1 + appendLiteral(set, text, j + 1);
                } else if (text[j] == '-' && any && j + 1 < end && text[j + 1] != ']') {
                    set += '-';
                    ++j;
                } else {
                    j += appendLiteral(set, text, j);
                }
                any = true;
            }
            if (j >= end) {
                error = "missing ']'";
                return false;
            }
            if (!any) {
                error = "no character between '[' and ']'";
                return false;
            }
            pcre += negate ? "[^" : "[";
            pcre += set;
            if (negate)
                pcre += "\\r\\n";
            pcre += ']';
            usesWildcards = true;
            i = j + 1;
        } else {
            i += appendLiteral(pcre, text, i);
        }
    }
    return true;
}

std::string RequiredLiteral(std::string_view text)
{
    // Of equally long runs the one with fewer of the commonest letters of
    // source and prose is searched for: it gives fewer false candidates.
    const auto common = [](const std::string& r) {
        return std::count_if(r.begin(), r.end(), [](char c) {
            return std::strchr(" etaoinsrlhd_", asciiLower(c)) != nullptr;
        });
    };
    std::string best, run;
    const auto endRun = [&] {
        if (run.size() > best.size() || (run.size() == best.size() && common(run) < common(best)))
            best = run;
        run.clear();
    };
    std::size_t i = 0;
    const std::size_t end = text.size();
    if (end > 0 && text[0] == '^')
        i = 1;
    while (i < end) {
        const char c = text[i];
        if (c == '\\' && i + 1 < end) {
            run.push_back(text[i + 1]);
            i += 2;
        } else if (c == '?' || c == '*' || (c == '$' && i + 1 == end)) {
            endRun();
            ++i;
        } else if (c == '[') {
            endRun();
            // Skip the set as the translation reads it, escapes included.
            std::size_t j = i + 1;
            if (j < end && (text[j] == '!' || text[j] == '^'))
                ++j;
            while (j < end && text[j] != ']')
                j += (text[j] == '\\' && j + 1 < end) ? 2 : 1;
            i = j + 1;
        } else {
            run.push_back(c);
            ++i;
        }
    }
    endRun();
    return best;
}

std::unique_ptr<TextMatcher> TextMatcher::Create(const MatchOptions& options, std::string& error)
{
    if (options.text.empty()) {
        error = "empty";
        return nullptr;
    }
    if (options.text.find_first_of("\r\n") != std::string::npos) {
        error = "a search string cannot hold a line break";
        return nullptr;
    }
    const bool nonAscii = hasNonAscii(options.text);
    std::string pcre;
    bool wildcards = false;
    std::string required;
    if (options.pattern) {
        if (!TranslatePattern(options.text, pcre, wildcards, error))
            return nullptr;
        required = RequiredLiteral(options.text);
    } else if (options.caseSensitive || !nonAscii) {
        // ASCII letters are all that a case-blind search of an ASCII text
        // folds, so a byte search does it.
        return std::make_unique<LiteralMatcher>(options.text, options.wholeWord, nonAscii, !options.caseSensitive);
    } else {
        for (std::size_t i = 0; i < options.text.size();)
            i += appendLiteral(pcre, options.text, i);
    }
    // The case-blind prefilter folds ASCII letters only, while a pattern
    // matched as Unicode also folds K and S with the Kelvin sign and the long
    // s; such texts go to the pattern alone.
    if (!options.caseSensitive
        && (hasNonAscii(required) || required.find_first_of("kKsS") != std::string::npos))
        required.clear();
    if (options.wholeWord)
        pcre = "(?<![^ \\t\\r\\n])(?:" + pcre + ")(?![^ \\t\\r\\n])";
    return PcreMatcher::Create(pcre, options.caseSensitive, nonAscii || wildcards, required, error);
}

} // namespace gleanseek
