// The HTML report: one self-contained page (inline style, no script) with
// the titles, a summary that links to each difference, and the texts with
// unchanged stretches folded to a few lines of context. Side by side puts
// the Original left and the Modified right; all in one merges them into one
// column, the Modified's words standing behind the Original's.
//
// Formats are those a new viewer starts with: changes red and bold, struck
// through on the Original side and underlined on the Modified side;
// additions green, bold, underlined; deletions blue, bold, struck through.

#include "components/skeinmatch/ReportWriters.h"
#include "components/skeinmatch/WordDiff.h"

#include <algorithm>

namespace skeinmatch {

namespace {

// Unchanged lines shown on each side of a difference.
constexpr long foldContext = 3;

const char* const styleSheet =
    "body{font-family:system-ui,'DejaVu Sans',Arial,sans-serif;margin:1.5em;color:#111;"
    "background:#fff}\n"
    "h1{font-size:1.4em;margin:0 0 .4em}\n"
    "h2{font-size:1.1em;margin:1.2em 0 .4em}\n"
    "table.files th,table.files td,table.counts th,table.counts td{text-align:left;"
    "padding:.1em 1em .1em 0;vertical-align:top}\n"
    "table.counts td.num{text-align:right}\n"
    "ol.toc{columns:22em;font-size:.9em;padding-left:2.5em}\n"
    "table.diff{border-collapse:collapse;width:100%;table-layout:fixed;"
    "font-family:'DejaVu Sans Mono',Consolas,monospace;font-size:.85em;margin-top:1em}\n"
    "table.diff col.n{width:4.5em}\n"
    "table.diff thead th{text-align:left;background:#dde3ea;padding:.3em .4em}\n"
    "table.diff td{padding:0 .4em;vertical-align:top;white-space:pre-wrap;overflow-wrap:anywhere}\n"
    "table.diff td.n{text-align:right;color:#777;background:#f4f4f4}\n"
    "tbody.dif{border-top:2px solid #aab;border-bottom:2px solid #aab}\n"
    "tr.h th{text-align:left;font-weight:normal;background:#eceff3;padding:.15em .4em;"
    "font-family:system-ui,'DejaVu Sans',Arial,sans-serif}\n"
    "tr.fold td{text-align:center;color:#667;background:#f2f5f9;font-style:italic}\n"
    "tr.c td.t{background:#fffdf0}tr.a td.t{background:#f3fff3}tr.d td.t{background:#f3f6ff}\n"
    ".del{color:#0000ff;font-weight:bold;text-decoration:line-through}\n"
    ".add{color:#008000;font-weight:bold;text-decoration:underline}\n"
    ".co{color:#ff0000;font-weight:bold;text-decoration:line-through}\n"
    ".cm{color:#ff0000;font-weight:bold;text-decoration:underline}\n"
    // An old word and the new one written straight after it would read as
    // one word: a little room between them, without adding a character.
    ".co+.cm{margin-left:.4em}\n"
    "a.up{float:right;text-decoration:none}\n"
    "@media print{body{margin:0;font-size:10pt}a{color:inherit;text-decoration:none}"
    "a.up{display:none}thead{display:table-header-group}tr{break-inside:avoid}"
    "ol.toc{columns:auto}}\n";

enum Style : unsigned char { plain, deleted, added, changedOld, changedNew };

const char* classOf(Style s)
{
    switch (s) {
    case deleted:
        return "del";
    case added:
        return "add";
    case changedOld:
        return "co";
    case changedNew:
        return "cm";
    default:
        return nullptr;
    }
}

// Text as HTML: markup characters escaped, bytes that are not valid UTF-8
// and characters that HTML does not allow in text shown as U+FFFD, control
// characters as their visible pictures.
void appendText(std::string& out, std::string_view s)
{
    const auto* p = reinterpret_cast<const unsigned char*>(s.data());
    const std::size_t n = s.size();
    for (std::size_t i = 0; i < n;) {
        unsigned char c = p[i];
        if (c < 0x80) {
            ++i;
            switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\t':
                out += '\t';
                break;
            case 0x7F:
                out += "\xE2\x90\xA1";  // U+2421
                break;
            default:
                if (c < 0x20) {
                    // U+2400 + c, the control pictures.
                    out += '\xE2';
                    out += '\x90';
                    out += static_cast<char>(0x80 + c);
                } else {
                    out += static_cast<char>(c);
                }
            }
            continue;
        }
        std::size_t len = 0;
        char32_t cp = 0;
        if (c >= 0xC2 && c <= 0xDF)
            len = 2, cp = c & 0x1F;
        else if (c >= 0xE0 && c <= 0xEF)
            len = 3, cp = c & 0x0F;
        else if (c >= 0xF0 && c <= 0xF4)
            len = 4, cp = c & 0x07;
        bool ok = len > 0 && i + len <= n;
        for (std::size_t k = 1; ok && k < len; ++k) {
            if ((p[i + k] & 0xC0) != 0x80)
                ok = false;
            else
                cp = (cp << 6) | (p[i + k] & 0x3F);
        }
        if (ok) {
            if ((len == 3 && cp < 0x800) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF))
                || (cp >= 0xD800 && cp <= 0xDFFF))
                ok = false;
        }
        if (!ok) {
            out += "\xEF\xBF\xBD";
            ++i;
            continue;
        }
        if ((cp >= 0x80 && cp <= 0x9F) || (cp >= 0xFDD0 && cp <= 0xFDEF) || (cp & 0xFFFE) == 0xFFFE)
            out += "\xEF\xBF\xBD";
        else
            out.append(s.data() + i, len);
        i += len;
    }
}

std::string escaped(std::string_view s)
{
    std::string out;
    appendText(out, s);
    return out;
}

std::string plural(long n, const char* one, const char* many)
{
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

std::string lineList(long first, long last)
{
    return first == last ? "line " + std::to_string(first)
                         : "lines " + std::to_string(first) + "\xE2\x80\x93" + std::to_string(last);
}

std::string describe(const DiffRecord& r)
{
    if (r.kind == kindAddition)
        return "Addition: Modified " + lineList(r.rightFirst, r.rightLast) + ", after Original line "
            + std::to_string(r.leftFirst);
    if (r.kind == kindDeletion)
        return "Deletion: Original " + lineList(r.leftFirst, r.leftLast) + ", after Modified line "
            + std::to_string(r.rightFirst);
    return "Change: Original " + lineList(r.leftFirst, r.leftLast) + ", Modified "
        + lineList(r.rightFirst, r.rightLast);
}

// Styles per token of one changed section.
void tokenStyles(const WordDiff& w, std::vector<Style>& sa, std::vector<Style>& sb)
{
    sa.assign(w.a.size(), plain);
    sb.assign(w.b.size(), plain);
    for (const TokenRun& r : w.runs) {
        const bool both = r.aEnd > r.aBegin && r.bEnd > r.bBegin;
        for (std::uint32_t i = r.aBegin; i < r.aEnd; ++i)
            sa[i] = both ? changedOld : deleted;
        for (std::uint32_t j = r.bBegin; j < r.bEnd; ++j)
            sb[j] = both ? changedNew : added;
    }
}

// Builds the HTML of one row from styled tokens, one span per stretch of
// equally styled text. A line end shows as a pilcrow when it is part of a
// difference and is otherwise left out (the row ends there).
class RowBuilder {
public:
    void token(std::string_view tok, Style st)
    {
        if (tok == "\n" && st == plain)
            return;
        if (st != open_) {
            close();
            if (const char* cls = classOf(st)) {
                html_ += "<span class=\"";
                html_ += cls;
                html_ += "\">";
            }
            open_ = st;
        }
        if (tok == "\n")
            html_ += "\xC2\xB6";
        else
            appendText(html_, tok);
    }
    std::string take()
    {
        close();
        std::string out;
        out.swap(html_);
        return out;
    }

private:
    void close()
    {
        if (open_ != plain)
            html_ += "</span>";
        open_ = plain;
    }
    std::string html_;
    Style open_ = plain;
};

// The rows of one side of a changed section.
std::vector<std::string> sideRows(std::string_view text, const std::vector<Token>& toks,
                                  const std::vector<Style>& styles)
{
    std::vector<std::string> rows;
    RowBuilder rb;
    for (std::size_t k = 0; k < toks.size(); ++k) {
        std::string_view tok = text.substr(toks[k].begin, toks[k].end - toks[k].begin);
        rb.token(tok, styles[k]);
        if (tok == "\n")
            rows.push_back(rb.take());
    }
    rows.push_back(rb.take());
    return rows;
}

class HtmlWriter {
public:
    HtmlWriter(BufferedOut& out, const ReportInput& in, bool sbs)
        : out_(out), in_(in), a_(*in.original), b_(*in.modified), sbs_(sbs), cols_(sbs ? 4 : 3)
    {
    }
    void write();

private:
    void head();
    void summary();
    void equalRows(long aFrom, long aTo, long bFrom, long bTo, bool showHead, bool showTail);
    void equalRow(long ia, long ib);
    void foldRow(long hidden);
    void record(std::size_t index);
    void changeByLines(const RecordSpan& s, const std::vector<std::string_view>& la,
                       const std::vector<std::string_view>& lb, const std::vector<LinePair>& pairs);
    void changeAsStream(const RecordSpan& s);
    void row(const char* cls, long na, std::string_view ta, long nb, std::string_view tb);
    void rowAio(const char* cls, long na, long nb, std::string_view text);
    void flushLine()
    {
        out_.put(line_);
        line_.clear();
    }

    BufferedOut& out_;
    const ReportInput& in_;
    const LineText& a_;
    const LineText& b_;
    bool sbs_;
    int cols_;
    std::string line_;
};

void HtmlWriter::write()
{
    head();
    summary();
    const auto& recs = *in_.records;
    out_.put("<table class=\"diff\">\n<colgroup>");
    if (sbs_)
        out_.put("<col class=\"n\"><col><col class=\"n\"><col>");
    else
        out_.put("<col class=\"n\"><col class=\"n\"><col>");
    out_.put("</colgroup>\n<thead><tr>");
    if (sbs_) {
        out_.put("<th colspan=\"2\">" + escaped(in_.masterTitle) + "</th><th colspan=\"2\">"
                 + escaped(in_.sourceTitle) + "</th>");
    } else {
        out_.put("<th colspan=\"2\">Lines</th><th>" + escaped(in_.masterTitle) + " \xE2\x86\x92 "
                 + escaped(in_.sourceTitle) + "</th>");
    }
    out_.put("</tr></thead>\n");

    long pa = 0, pb = 0;
    for (std::size_t i = 0; i < recs.size(); ++i) {
        RecordSpan s = spanOf(recs[i]);
        if (s.aBegin > pa || s.bBegin > pb) {
            out_.put("<tbody>\n");
            equalRows(pa, s.aBegin, pb, s.bBegin, i > 0, true);
            out_.put("</tbody>\n");
        }
        record(i);
        pa = s.aEnd;
        pb = s.bEnd;
    }
    const long na = static_cast<long>(a_.lineCount()), nb = static_cast<long>(b_.lineCount());
    if (na > pa || nb > pb) {
        out_.put("<tbody>\n");
        equalRows(pa, na, pb, nb, !recs.empty(), false);
        out_.put("</tbody>\n");
    }
    out_.put("</table>\n</body>\n</html>\n");
}

void HtmlWriter::head()
{
    char date[64];
    std::tm tm{};
    localtime_r(&in_.created, &tm);
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M", &tm);
    out_.put("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
             "<meta name=\"generator\" content=\"Tallyvane\">\n<title>");
    out_.put(escaped(in_.reportTitle));
    out_.put("</title>\n<style>\n");
    out_.put(styleSheet);
    out_.put("</style>\n</head>\n<body id=\"top\">\n<h1>");
    out_.put(escaped(in_.reportTitle));
    out_.put("</h1>\n<table class=\"files\">\n<tr><th>Original</th><td>");
    out_.put(escaped(in_.masterTitle));
    out_.put("</td></tr>\n<tr><th>Modified</th><td>");
    out_.put(escaped(in_.sourceTitle));
    out_.put("</td></tr>\n<tr><th>Created</th><td>");
    out_.put(date);
    out_.put("</td></tr>\n<tr><th>View</th><td>");
    out_.put(sbs_ ? "Side by side" : "All in one");
    out_.put("</td></tr>\n</table>\n");
}

void HtmlWriter::summary()
{
    const auto& recs = *in_.records;
    long nAdd = 0, nDel = 0, nChg = 0, lAdd = 0, lDel = 0, lChgA = 0, lChgB = 0;
    for (const DiffRecord& r : recs) {
        RecordSpan s = spanOf(r);
        if (r.kind == kindAddition) {
            ++nAdd;
            lAdd += s.bEnd - s.bBegin;
        } else if (r.kind == kindDeletion) {
            ++nDel;
            lDel += s.aEnd - s.aBegin;
        } else {
            ++nChg;
            lChgA += s.aEnd - s.aBegin;
            lChgB += s.bEnd - s.bBegin;
        }
    }
    out_.put("<h2>Summary</h2>\n");
    if (recs.empty()) {
        out_.put("<p>The files are the same: no differences.</p>\n");
        return;
    }
    out_.put("<table class=\"counts\">\n<tr><th>Differences</th><td class=\"num\">"
             + std::to_string(recs.size()) + "</td><td></td></tr>\n");
    out_.put("<tr><th><span class=\"cm\">Changes</span></th><td class=\"num\">" + std::to_string(nChg)
             + "</td><td>" + plural(lChgA, "line", "lines") + " replaced by "
             + plural(lChgB, "line", "lines") + "</td></tr>\n");
    out_.put("<tr><th><span class=\"add\">Additions</span></th><td class=\"num\">"
             + std::to_string(nAdd) + "</td><td>" + plural(lAdd, "line", "lines")
             + " added</td></tr>\n");
    out_.put("<tr><th><span class=\"del\">Deletions</span></th><td class=\"num\">"
             + std::to_string(nDel) + "</td><td>" + plural(lDel, "line", "lines")
             + " deleted</td></tr>\n</table>\n");
    out_.put("<h2>Differences</h2>\n<ol class=\"toc\">\n");
    for (std::size_t i = 0; i < recs.size(); ++i) {
        out_.put("<li><a href=\"#d" + std::to_string(i + 1) + "\">" + describe(recs[i])
                 + "</a></li>\n");
    }
    out_.put("</ol>\n");
}

void HtmlWriter::row(const char* cls, long na, std::string_view ta, long nb, std::string_view tb)
{
    line_ += cls ? std::string("<tr class=\"") + cls + "\">" : std::string("<tr>");
    line_ += "<td class=\"n\">";
    if (na > 0)
        line_ += std::to_string(na);
    line_ += "</td><td class=\"t\">";
    line_ += ta;
    line_ += "</td><td class=\"n\">";
    if (nb > 0)
        line_ += std::to_string(nb);
    line_ += "</td><td class=\"t\">";
    line_ += tb;
    line_ += "</td></tr>\n";
    flushLine();
}

void HtmlWriter::rowAio(const char* cls, long na, long nb, std::string_view text)
{
    line_ += cls ? std::string("<tr class=\"") + cls + "\">" : std::string("<tr>");
    line_ += "<td class=\"n\">";
    if (na > 0)
        line_ += std::to_string(na);
    line_ += "</td><td class=\"n\">";
    if (nb > 0)
        line_ += std::to_string(nb);
    line_ += "</td><td class=\"t\">";
    line_ += text;
    line_ += "</td></tr>\n";
    flushLine();
}

void HtmlWriter::equalRow(long ia, long ib)
{
    // Sides can differ in length where empty lines were ignored; the row
    // then shows what each side has.
    std::string ta = ia >= 0 ? escaped(a_.line(static_cast<std::size_t>(ia))) : std::string();
    if (sbs_) {
        std::string tb = ib >= 0 ? escaped(b_.line(static_cast<std::size_t>(ib))) : std::string();
        row(nullptr, ia + 1, ta, ib + 1, tb);
    } else {
        if (ia < 0)
            ta = escaped(b_.line(static_cast<std::size_t>(ib)));
        rowAio(nullptr, ia + 1, ib + 1, ta);
    }
}

void HtmlWriter::foldRow(long hidden)
{
    out_.put("<tr class=\"fold\"><td colspan=\"" + std::to_string(cols_) + "\">\xE2\x8B\xAF "
             + plural(hidden, "unchanged line", "unchanged lines") + " \xE2\x8B\xAF</td></tr>\n");
}

void HtmlWriter::equalRows(long aFrom, long aTo, long bFrom, long bTo, bool showHead, bool showTail)
{
    // Rows as pairs of lines (-1: none). Equal stretches have the same
    // lines on both sides, except where empty lines were ignored: then the
    // lines that count pair up and each side's empty lines stand alone.
    std::vector<std::pair<long, long>> rows;
    if (aTo - aFrom == bTo - bFrom) {
        for (long k = 0; k < aTo - aFrom; ++k)
            rows.emplace_back(aFrom + k, bFrom + k);
    } else {
        skeinmatch::KeyMaker ka(in_.keys), kb(in_.keys);
        long i = aFrom, j = bFrom;
        while (i < aTo || j < bTo) {
            const bool emptyA = i < aTo && ka.isEmpty(a_.line(static_cast<std::size_t>(i)));
            const bool emptyB = j < bTo && kb.isEmpty(b_.line(static_cast<std::size_t>(j)));
            if (i < aTo && j < bTo && emptyA == emptyB)
                rows.emplace_back(i++, j++);
            else if (i < aTo && (emptyA || j >= bTo))
                rows.emplace_back(i++, -1);
            else
                rows.emplace_back(-1, j++);
        }
    }
    const long len = static_cast<long>(rows.size());
    auto at = [&](long k) { equalRow(rows[static_cast<std::size_t>(k)].first, rows[static_cast<std::size_t>(k)].second); };
    long head = showHead ? std::min(foldContext, len) : 0;
    long tail = showTail ? std::min(foldContext, len - head) : 0;
    // Folding one line saves nothing.
    if (len - head - tail <= 1) {
        for (long k = 0; k < len; ++k)
            at(k);
        return;
    }
    for (long k = 0; k < head; ++k)
        at(k);
    foldRow(len - head - tail);
    for (long k = len - tail; k < len; ++k)
        at(k);
}

void HtmlWriter::record(std::size_t index)
{
    const DiffRecord& r = (*in_.records)[index];
    const RecordSpan s = spanOf(r);
    out_.put("<tbody class=\"dif\" id=\"d" + std::to_string(index + 1) + "\">\n");
    out_.put("<tr class=\"h\"><th colspan=\"" + std::to_string(cols_) + "\"><a class=\"up\" href=\"#top\">"
             "\xE2\x86\x91</a>" + std::to_string(index + 1) + ". " + describe(r) + "</th></tr>\n");

    if (r.kind == kindDeletion) {
        for (long i = s.aBegin; i < s.aEnd; ++i) {
            std::string t = "<span class=\"del\">" + escaped(a_.line(static_cast<std::size_t>(i)))
                + "</span>";
            if (sbs_)
                row("d", i + 1, t, 0, "");
            else
                rowAio("d", i + 1, 0, t);
        }
    } else if (r.kind == kindAddition) {
        for (long j = s.bBegin; j < s.bEnd; ++j) {
            std::string t = "<span class=\"add\">" + escaped(b_.line(static_cast<std::size_t>(j)))
                + "</span>";
            if (sbs_)
                row("a", 0, "", j + 1, t);
            else
                rowAio("a", 0, j + 1, t);
        }
    } else {
        std::vector<std::string_view> la, lb;
        for (long i = s.aBegin; i < s.aEnd; ++i)
            la.push_back(a_.line(static_cast<std::size_t>(i)));
        for (long j = s.bBegin; j < s.bEnd; ++j)
            lb.push_back(b_.line(static_cast<std::size_t>(j)));
        const std::vector<LinePair> pairs = pairSimilarLines(la, lb);
        if (pairs.empty())
            changeAsStream(s);
        else
            changeByLines(s, la, lb, pairs);
    }
    out_.put("</tbody>\n");
}

// A changed section whose lines were paired: each pair compared word by
// word on one row, unpaired lines whole.
void HtmlWriter::changeByLines(const RecordSpan& s, const std::vector<std::string_view>& la,
                               const std::vector<std::string_view>& lb,
                               const std::vector<LinePair>& pairs)
{
    auto whole = [](std::string_view text, Style st) {
        RowBuilder rb;
        rb.token(text, st);
        return rb.take();
    };
    std::size_t k = 0;
    while (k < pairs.size()) {
        if (pairs[k].a >= 0 && pairs[k].b >= 0) {
            const long i = pairs[k].a, j = pairs[k].b;
            const WordDiff w = diffWords(la[static_cast<std::size_t>(i)], lb[static_cast<std::size_t>(j)]);
            std::vector<Style> sa, sb;
            tokenStyles(w, sa, sb);
            if (sbs_) {
                auto ra = sideRows(la[static_cast<std::size_t>(i)], w.a, sa);
                auto rb = sideRows(lb[static_cast<std::size_t>(j)], w.b, sb);
                row("c", s.aBegin + i + 1, ra[0], s.bBegin + j + 1, rb[0]);
            } else {
                RowBuilder cur;
                std::string_view ta = la[static_cast<std::size_t>(i)], tb = lb[static_cast<std::size_t>(j)];
                std::uint32_t p = 0;
                for (const TokenRun& run : w.runs) {
                    for (; p < run.aBegin; ++p)
                        cur.token(ta.substr(w.a[p].begin, w.a[p].end - w.a[p].begin), plain);
                    const bool both = run.aEnd > run.aBegin && run.bEnd > run.bBegin;
                    for (; p < run.aEnd; ++p)
                        cur.token(ta.substr(w.a[p].begin, w.a[p].end - w.a[p].begin),
                                  both ? changedOld : deleted);
                    for (std::uint32_t q = run.bBegin; q < run.bEnd; ++q)
                        cur.token(tb.substr(w.b[q].begin, w.b[q].end - w.b[q].begin),
                                  both ? changedNew : added);
                }
                for (; p < w.a.size(); ++p)
                    cur.token(ta.substr(w.a[p].begin, w.a[p].end - w.a[p].begin), plain);
                rowAio("c", s.aBegin + i + 1, s.bBegin + j + 1, cur.take());
            }
            ++k;
            continue;
        }
        // A run of unpaired lines: changed where both sides have some, else
        // deleted or added.
        std::vector<long> onlyA, onlyB;
        for (; k < pairs.size() && (pairs[k].a < 0 || pairs[k].b < 0); ++k)
            (pairs[k].a >= 0 ? onlyA : onlyB).push_back(pairs[k].a >= 0 ? pairs[k].a : pairs[k].b);
        const bool both = !onlyA.empty() && !onlyB.empty();
        const Style stA = both ? changedOld : deleted, stB = both ? changedNew : added;
        if (sbs_) {
            for (std::size_t r = 0; r < std::max(onlyA.size(), onlyB.size()); ++r) {
                const bool hasA = r < onlyA.size(), hasB = r < onlyB.size();
                row("c", hasA ? s.aBegin + onlyA[r] + 1 : 0,
                    hasA ? whole(la[static_cast<std::size_t>(onlyA[r])], stA) : std::string(),
                    hasB ? s.bBegin + onlyB[r] + 1 : 0,
                    hasB ? whole(lb[static_cast<std::size_t>(onlyB[r])], stB) : std::string());
            }
        } else {
            for (long i : onlyA)
                rowAio("c", s.aBegin + i + 1, 0, whole(la[static_cast<std::size_t>(i)], stA));
            for (long j : onlyB)
                rowAio("c", 0, s.bBegin + j + 1, whole(lb[static_cast<std::size_t>(j)], stB));
        }
    }
}

// A changed section too large to pair line by line: one token stream.
void HtmlWriter::changeAsStream(const RecordSpan& s)
{
    const std::string ta = joinLines(a_, s.aBegin, s.aEnd, "\n");
    const std::string tb = joinLines(b_, s.bBegin, s.bEnd, "\n");
    const WordDiff w = diffWords(ta, tb);
    std::vector<Style> sa, sb;
    tokenStyles(w, sa, sb);
    if (sbs_) {
        std::vector<std::string> ra = sideRows(ta, w.a, sa), rb = sideRows(tb, w.b, sb);
        const std::size_t rows = std::max(ra.size(), rb.size());
        for (std::size_t k = 0; k < rows; ++k) {
            const bool hasA = k < ra.size(), hasB = k < rb.size();
            row("c", hasA ? s.aBegin + 1 + static_cast<long>(k) : 0, hasA ? ra[k] : std::string(),
                hasB ? s.bBegin + 1 + static_cast<long>(k) : 0, hasB ? rb[k] : std::string());
        }
    } else {
        // One stream: equal tokens once, then each run's old tokens and
        // its new ones. A row ends at every line end of either side and
        // carries the number of each side's line that starts in it.
        long na = s.aBegin + 1, nb = s.bBegin + 1;
        bool startsA = true, startsB = true;
        RowBuilder cur;
        auto tokA = [&](std::uint32_t i) {
            return std::string_view(ta).substr(w.a[i].begin, w.a[i].end - w.a[i].begin);
        };
        auto tokB = [&](std::uint32_t j) {
            return std::string_view(tb).substr(w.b[j].begin, w.b[j].end - w.b[j].begin);
        };
        auto endRow = [&](bool endsA, bool endsB) {
            rowAio("c", startsA ? na : 0, startsB ? nb : 0, cur.take());
            na += endsA ? 1 : 0;
            nb += endsB ? 1 : 0;
            startsA = endsA;
            startsB = endsB;
        };
        std::uint32_t i = 0, j = 0;
        auto equalUpTo = [&](std::uint32_t ai) {
            for (; i < ai; ++i, ++j) {
                cur.token(tokA(i), plain);
                if (tokA(i) == "\n")
                    endRow(true, true);
            }
        };
        for (const TokenRun& run : w.runs) {
            equalUpTo(run.aBegin);
            const bool both = run.aEnd > run.aBegin && run.bEnd > run.bBegin;
            for (; i < run.aEnd; ++i) {
                cur.token(tokA(i), both ? changedOld : deleted);
                if (tokA(i) == "\n")
                    endRow(true, false);
            }
            for (j = run.bBegin; j < run.bEnd; ++j) {
                cur.token(tokB(j), both ? changedNew : added);
                if (tokB(j) == "\n")
                    endRow(false, true);
            }
        }
        equalUpTo(static_cast<std::uint32_t>(w.a.size()));
        endRow(true, true);
    }
}

} // namespace

bool writeHtmlReport(BufferedOut& out, const ReportInput& in, bool sideBySide)
{
    HtmlWriter(out, in, sideBySide).write();
    return true;
}

} // namespace skeinmatch
