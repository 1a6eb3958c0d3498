#include "components/gleanseek/TextMatcher.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstdio>
#include <cstring>

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

class LiteralMatcher final : public TextMatcher {
public:
    LiteralMatcher(std::string needle, bool wholeWord, bool utf8)
        : needle_(std::move(needle)), wholeWord_(wholeWord), utf8_(utf8)
    {
    }
    bool NeedsUtf8() const override { return utf8_; }
    std::unique_ptr<Scratch> NewScratch() const override { return std::make_unique<Scratch>(); }

    bool Find(const char* data, std::size_t len, std::size_t from, std::size_t& at, Scratch&,
              std::string&) const override
    {
        const std::size_t n = needle_.size();
        std::size_t pos = from;
        while (pos < len && len - pos >= n) {
            const void* p = memmem(data + pos, len - pos, needle_.data(), n);
            if (!p)
                return false;
            at = static_cast<std::size_t>(static_cast<const char*>(p) - data);
            if (!wholeWord_ || ((at == 0 || isBlankOrEnd(data[at - 1])) && (at + n == len || isBlankOrEnd(data[at + n]))))
                return true;
            pos = at + 1;
        }
        return false;
    }

private:
    const std::string needle_;
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

    static std::unique_ptr<TextMatcher> Create(const std::string& pattern, bool caseSensitive, bool utf8,
                                               std::string& error)
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
        return std::unique_ptr<TextMatcher>(new PcreMatcher(re, utf8));
    }

    ~PcreMatcher() override { pcre2_code_free(code_); }
    bool NeedsUtf8() const override { return utf8_; }
    std::unique_ptr<Scratch> NewScratch() const override { return std::make_unique<PcreScratch>(code_); }

    bool Find(const char* data, std::size_t len, std::size_t from, std::size_t& at, Scratch& scratch,
              std::string& error) const override
    {
        auto& s = static_cast<PcreScratch&>(scratch);
        const int rc = pcre2_match(code_, reinterpret_cast<PCRE2_SPTR>(data), len, from, 0, s.data, nullptr);
        if (rc >= 0) {
            at = pcre2_get_ovector_pointer(s.data)[0];
            return true;
        }
        if (rc != PCRE2_ERROR_NOMATCH)
            error = message(rc);
        return false;
    }

private:
    PcreMatcher(pcre2_code* code, bool utf8) : code_(code), utf8_(utf8) {}

    static std::string message(int code)
    {
        PCRE2_UCHAR buf[256];
        if (pcre2_get_error_message(code, buf, sizeof buf) < 0)
            return "error " + std::to_string(code);
        return reinterpret_cast<const char*>(buf);
    }

    pcre2_code* code_;
    const bool utf8_;
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
    if (options.pattern) {
        if (!TranslatePattern(options.text, pcre, wildcards, error))
            return nullptr;
    } else if (options.caseSensitive) {
        return std::make_unique<LiteralMatcher>(options.text, options.wholeWord, nonAscii);
    } else {
        for (std::size_t i = 0; i < options.text.size();)
            i += appendLiteral(pcre, options.text, i);
    }
    if (options.wholeWord)
        pcre = "(?<![^ \\t\\r\\n])(?:" + pcre + ")(?![^ \\t\\r\\n])";
    return PcreMatcher::Create(pcre, options.caseSensitive, nonAscii || wildcards, error);
}

} // namespace gleanseek
