#include "components/lexiform/RangeList.h"

#include <QStringList>
#include <algorithm>

namespace lexiform {

namespace {

std::optional<long long> parseNumber(const QString& s)
{
    QString t = s.trimmed();
    if (t.isEmpty() || t.size() > 12)
        return std::nullopt;
    for (QChar c : t)
        if (!c.isDigit() || c.unicode() > 127)
            return std::nullopt;
    long long v = t.toLongLong();
    if (v < 1)
        return std::nullopt;
    return v;
}

} // namespace

bool RangeList::contains(long long n) const
{
    if (all)
        return true;
    for (const NumberRange& r : ranges)
        if (n >= r.first && n <= r.last)
            return true;
    return false;
}

std::vector<long long> RangeList::select(long long count) const
{
    std::vector<long long> out;
    if (all) {
        for (long long i = 1; i <= count; ++i)
            out.push_back(i);
        return out;
    }
    for (const NumberRange& r : ranges)
        for (long long i = r.first; i <= std::min(r.last, count); ++i)
            out.push_back(i);
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

std::optional<RangeList> parseRangeList(const QString& text, bool allowStar)
{
    RangeList list;
    const QStringList items = text.split(QLatin1Char(','));
    bool any = false;
    for (const QString& raw : items) {
        QString item = raw.trimmed();
        if (item.isEmpty())
            continue;  // "1,,2" and a trailing comma are harmless
        any = true;
        if (item == QLatin1String("*")) {
            if (!allowStar)
                return std::nullopt;
            list.all = true;
            continue;
        }
        qsizetype dash = item.indexOf(QLatin1Char('-'));
        if (dash < 0) {
            auto n = parseNumber(item);
            if (!n)
                return std::nullopt;
            list.ranges.push_back({*n, *n});
        } else {
            auto a = parseNumber(item.left(dash));
            auto b = parseNumber(item.mid(dash + 1));
            if (!a || !b || *b < *a)
                return std::nullopt;
            list.ranges.push_back({*a, *b});
        }
    }
    if (!any)
        return std::nullopt;
    return list;
}

} // namespace lexiform
