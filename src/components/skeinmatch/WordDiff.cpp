#include "components/skeinmatch/WordDiff.h"

#include "components/skeinmatch/SequenceMatch.h"

#include <string>
#include <unordered_map>

namespace skeinmatch {

namespace {

// Sections larger than this are shown changed as a whole: a report has to
// stay quick to write even for a change of a million lines.
constexpr std::size_t maxDetailedBytes = 4u << 20;

bool isWordByte(unsigned char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'
        || c >= 0x80;
}

bool isBlank(unsigned char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

} // namespace

std::vector<Token> tokenize(std::string_view text)
{
    std::vector<Token> out;
    const auto* s = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n) {
        std::size_t j = i + 1;
        if (isWordByte(s[i])) {
            while (j < n && isWordByte(s[j]))
                ++j;
        } else if (isBlank(s[i])) {
            while (j < n && isBlank(s[j]))
                ++j;
        }
        out.push_back({static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(j)});
        i = j;
    }
    return out;
}

WordDiff diffWords(std::string_view a, std::string_view b)
{
    WordDiff w;
    w.a = tokenize(a);
    w.b = tokenize(b);
    if (a.size() > maxDetailedBytes || b.size() > maxDetailedBytes) {
        w.detailed = false;
        w.runs.push_back({0, static_cast<std::uint32_t>(w.a.size()), 0,
                          static_cast<std::uint32_t>(w.b.size())});
        return w;
    }

    std::unordered_map<std::string_view, std::uint32_t> ids;
    ids.reserve(w.a.size() + w.b.size());
    auto idsOf = [&](std::string_view text, const std::vector<Token>& toks) {
        std::vector<std::uint32_t> out;
        out.reserve(toks.size());
        for (const Token& t : toks) {
            auto [it, fresh] = ids.try_emplace(text.substr(t.begin, t.end - t.begin),
                                               static_cast<std::uint32_t>(ids.size()));
            out.push_back(it->second);
        }
        return out;
    };
    std::vector<std::uint32_t> xa = idsOf(a, w.a), xb = idsOf(b, w.b);
    std::vector<std::uint8_t> ca(xa.size()), cb(xb.size());
    matchSequences(xa.data(), xa.size(), xb.data(), xb.size(),
                   static_cast<std::uint32_t>(ids.size()), MatchBudget::standard(xa.size(), xb.size()),
                   ca.data(), cb.data());

    std::uint32_t i = 0, j = 0;
    const auto na = static_cast<std::uint32_t>(xa.size()), nb = static_cast<std::uint32_t>(xb.size());
    while (i < na || j < nb) {
        if (i < na && j < nb && !ca[i] && !cb[j]) {
            ++i;
            ++j;
            continue;
        }
        TokenRun r{i, i, j, j};
        while (i < na && ca[i])
            ++i;
        while (j < nb && cb[j])
            ++j;
        if (i == r.aBegin && j == r.bBegin) {
            // Cannot happen with a consistent matching; move on regardless.
            if (i < na)
                ++i;
            else
                ++j;
        }
        r.aEnd = i;
        r.bEnd = j;
        w.runs.push_back(r);
    }
    return w;
}

} // namespace skeinmatch
