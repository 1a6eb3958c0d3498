#include "components/skeinmatch/WordDiff.h"

#include "components/skeinmatch/SequenceMatch.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace skeinmatch {

namespace {

// Sections larger than this are shown changed as a whole: a report has to
// stay quick to write even for a change of a million lines.
constexpr std::size_t maxDetailedBytes = 4u << 20;

// Largest Original lines x Modified lines that a section's lines are paired
// over.
constexpr std::size_t maxPairingCells = 250000;

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
    if (a.size() > maxDetailedBytes || b.size() > maxDetailedBytes) {
        // All of it is changed: one token a side says so, where cutting a
        // line of hundreds of megabytes into words would cost gigabytes.
        if (!a.empty())
            w.a.push_back({0, static_cast<std::uint32_t>(a.size())});
        if (!b.empty())
            w.b.push_back({0, static_cast<std::uint32_t>(b.size())});
        w.detailed = false;
        w.runs.push_back({0, static_cast<std::uint32_t>(w.a.size()), 0,
                          static_cast<std::uint32_t>(w.b.size())});
        return w;
    }
    w.a = tokenize(a);
    w.b = tokenize(b);

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

std::vector<LinePair> pairSimilarLines(const std::vector<std::string_view>& a,
                                       const std::vector<std::string_view>& b)
{
    const std::size_t na = a.size(), nb = b.size();
    // The pairing is quadratic; big sections keep the plain token view.
    if (na == 0 || nb == 0 || na * nb > maxPairingCells)
        return {};

    // Each line as the sorted ids of its tokens, blanks left out.
    std::unordered_map<std::string_view, std::uint32_t> ids;
    auto bag = [&](std::string_view line) {
        std::vector<std::uint32_t> v;
        for (const Token& t : tokenize(line)) {
            if (isBlank(static_cast<unsigned char>(line[t.begin])))
                continue;
            auto [it, fresh] = ids.try_emplace(line.substr(t.begin, t.end - t.begin),
                                               static_cast<std::uint32_t>(ids.size()));
            v.push_back(it->second);
        }
        std::sort(v.begin(), v.end());
        return v;
    };
    std::vector<std::vector<std::uint32_t>> ba, bb;
    for (auto l : a)
        ba.push_back(bag(l));
    for (auto l : b)
        bb.push_back(bag(l));
    // Share of tokens in common (Dice); two blank lines are alike.
    auto likeness = [&](std::size_t i, std::size_t j) {
        const auto &x = ba[i], &y = bb[j];
        if (x.empty() || y.empty())
            return x.empty() && y.empty() ? 1.0 : 0.0;
        std::size_t p = 0, q = 0, common = 0;
        while (p < x.size() && q < y.size()) {
            if (x[p] < y[q])
                ++p;
            else if (y[q] < x[p])
                ++q;
            else {
                ++common;
                ++p;
                ++q;
            }
        }
        return 2.0 * static_cast<double>(common) / static_cast<double>(x.size() + y.size());
    };

    // Most total likeness over pairs in order, each pair at least half alike.
    const std::size_t w = nb + 1;
    std::vector<double> best((na + 1) * w, 0.0);
    std::vector<std::uint8_t> move((na + 1) * w, 0);  // 1 up, 2 left, 3 pair
    for (std::size_t i = 1; i <= na; ++i) {
        for (std::size_t j = 1; j <= nb; ++j) {
            double up = best[(i - 1) * w + j], left = best[i * w + j - 1];
            double v = up;
            std::uint8_t m = 1;
            if (left > v) {
                v = left;
                m = 2;
            }
            double sim = likeness(i - 1, j - 1);
            if (sim >= 0.5 && best[(i - 1) * w + j - 1] + sim > v) {
                v = best[(i - 1) * w + j - 1] + sim;
                m = 3;
            }
            best[i * w + j] = v;
            move[i * w + j] = m;
        }
    }
    std::vector<std::pair<long, long>> pairs;
    for (std::size_t i = na, j = nb; i > 0 && j > 0;) {
        std::uint8_t m = move[i * w + j];
        if (m == 3) {
            pairs.emplace_back(static_cast<long>(i - 1), static_cast<long>(j - 1));
            --i;
            --j;
        } else if (m == 1) {
            --i;
        } else {
            --j;
        }
    }
    std::reverse(pairs.begin(), pairs.end());

    std::vector<LinePair> out;
    long pa = 0, pb = 0;
    auto gap = [&](long ea, long eb) {
        for (; pa < ea; ++pa)
            out.push_back({pa, -1});
        for (; pb < eb; ++pb)
            out.push_back({-1, pb});
    };
    for (auto [i, j] : pairs) {
        gap(i, j);
        out.push_back({i, j});
        pa = i + 1;
        pb = j + 1;
    }
    gap(static_cast<long>(na), static_cast<long>(nb));
    return out;
}

} // namespace skeinmatch
