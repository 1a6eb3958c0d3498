#include "components/lexiform/NumberFormat.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <cmath>

namespace lexiform {

namespace {

// Rounds to 15 significant digits first, as spreadsheet programs do, so that
// 2.675 stored as 2.67499999... still shows as 2.68.
double roundSignificant(double v)
{
    if (v == 0 || !std::isfinite(v))
        return v;
    return QString::number(v, 'g', 15).toDouble();
}

// v with exactly `decimals` digits after the point, rounded half away from
// zero on its 15-digit decimal form, as spreadsheet programs show numbers:
// 2.675 stored as 2.67499999... still shows as 2.68.
QString fixedDecimal(double v, int decimals)
{
    if (!std::isfinite(v))
        return QStringLiteral("#NUM!");
    if (v == 0 || std::fabs(v) >= 1e15)
        return QString::number(v, 'f', decimals);
    const bool negative = v < 0;
    const QString e = QString::number(std::fabs(v), 'e', 14);  // d.ddddddddddddddde+XX
    const qsizetype ePos = e.indexOf(QLatin1Char('e'));
    QString digits = e.left(ePos).remove(QLatin1Char('.'));     // 15 digits
    const int exponent = e.mid(ePos + 1).toInt();
    const int k = exponent - 14 + decimals;                     // value * 10^decimals = digits * 10^k
    if (k >= 0) {
        digits += QString(k, QLatin1Char('0'));
    } else if (-k > 15) {
        digits = QStringLiteral("0");
    } else {
        const int cut = int(digits.size()) + k;
        const bool up = digits[cut] >= QLatin1Char('5');
        digits.truncate(cut);
        if (digits.isEmpty())
            digits = QStringLiteral("0");
        if (up) {
            int i = int(digits.size()) - 1;
            while (i >= 0 && digits[i] == QLatin1Char('9'))
                digits[i--] = QLatin1Char('0');
            if (i < 0)
                digits.prepend(QLatin1Char('1'));
            else
                digits[i] = QChar(digits[i].unicode() + 1);
        }
    }
    while (digits.size() <= decimals)
        digits.prepend(QLatin1Char('0'));
    QString out = decimals > 0 ? digits.left(digits.size() - decimals) + QLatin1Char('.') + digits.right(decimals) : digits;
    bool zero = true;
    for (QChar c : out)
        if (c != QLatin1Char('0') && c != QLatin1Char('.'))
            zero = false;
    return negative && !zero ? QLatin1Char('-') + out : out;
}

QString trimFraction(QString s)
{
    if (s.contains(QLatin1Char('.'))) {
        while (s.endsWith(QLatin1Char('0')))
            s.chop(1);
        if (s.endsWith(QLatin1Char('.')))
            s.chop(1);
    }
    return s;
}

// The format with quoted text, escapes, colours and fill characters reduced
// to what matters for classifying it; literal text kept apart.
struct Section {
    QString skeleton;  // placeholders and operators only
    QString prefix;    // literal text before the first placeholder
    QString suffix;    // literal text after the last one
    bool elapsedHours = false;
};

Section analyse(const QString& code)
{
    Section s;
    bool seenPlaceholder = false;
    QString pendingLiteral;
    auto literal = [&](QChar c) { pendingLiteral += c; };
    auto placeholder = [&](QChar c) {
        if (!seenPlaceholder)
            s.prefix = pendingLiteral;
        pendingLiteral.clear();
        seenPlaceholder = true;
        s.skeleton += c;
    };
    for (qsizetype i = 0; i < code.size(); ++i) {
        QChar c = code[i];
        if (c == QLatin1Char('"')) {
            qsizetype j = code.indexOf(QLatin1Char('"'), i + 1);
            if (j < 0)
                j = code.size();
            for (qsizetype k = i + 1; k < j; ++k)
                literal(code[k]);
            i = j;
        } else if (c == QLatin1Char('\\') && i + 1 < code.size()) {
            literal(code[++i]);
        } else if (c == QLatin1Char('_') && i + 1 < code.size()) {
            ++i;
            literal(QLatin1Char(' '));
        } else if (c == QLatin1Char('*') && i + 1 < code.size()) {
            ++i;  // fill character: no fixed width here
        } else if (c == QLatin1Char('[')) {
            qsizetype j = code.indexOf(QLatin1Char(']'), i + 1);
            if (j < 0)
                j = code.size();
            QString inner = code.mid(i + 1, j - i - 1);
            if (inner.startsWith(QLatin1Char('$'))) {
                // [$€-407]: a currency symbol with its locale
                QString sym = inner.mid(1).section(QLatin1Char('-'), 0, 0);
                for (QChar k : sym)
                    literal(k);
            } else if (inner.compare(QLatin1String("h"), Qt::CaseInsensitive) == 0
                       || inner.startsWith(QLatin1String("hh"), Qt::CaseInsensitive)) {
                s.elapsedHours = true;
                placeholder(QLatin1Char('h'));
            } else if (inner.startsWith(QLatin1Char('m'), Qt::CaseInsensitive)
                       || inner.startsWith(QLatin1Char('s'), Qt::CaseInsensitive)) {
                placeholder(inner[0].toLower());
            }
            i = j;
        } else if (QStringLiteral("0#?.,%Ee+-/:").contains(c) || c.isLetter()) {
            if (c == QLatin1Char('-') || c == QLatin1Char('+') || c == QLatin1Char('/') || c == QLatin1Char(':')) {
                if (seenPlaceholder)
                    s.skeleton += c;
                else
                    literal(c);
                continue;
            }
            if (c.isLetter() && !QStringLiteral("EeyYmMdDhHsSaApP").contains(c)) {
                literal(c);
                continue;
            }
            placeholder(c);
        } else if (c == QLatin1Char(' ') && seenPlaceholder) {
            pendingLiteral += c;
        } else {
            literal(c);
        }
    }
    s.suffix = pendingLiteral;
    return s;
}

QString firstSection(const QString& code, double v, bool* negativeSection)
{
    QStringList sections;
    QString cur;
    bool quoted = false;
    for (qsizetype i = 0; i < code.size(); ++i) {
        QChar c = code[i];
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        if (c == QLatin1Char('\\') && i + 1 < code.size()) {
            cur += c;
            cur += code[++i];
            continue;
        }
        if (c == QLatin1Char(';') && !quoted) {
            sections << cur;
            cur.clear();
        } else {
            cur += c;
        }
    }
    sections << cur;
    *negativeSection = false;
    if (v < 0 && sections.size() >= 2 && !sections[1].isEmpty()) {
        *negativeSection = true;
        return sections[1];
    }
    if (v == 0 && sections.size() >= 3 && !sections[2].isEmpty())
        return sections[2];
    return sections[0];
}

// Cells share a handful of formats, so their analysis is kept per thread.
const Section& analysed(const QString& section)
{
    thread_local QHash<QString, Section> cache;
    auto it = cache.constFind(section);
    if (it != cache.constEnd())
        return *it;
    if (cache.size() > 4096)
        cache.clear();
    return *cache.insert(section, analyse(section));
}

bool skeletonIsDate(const QString& skeleton)
{
    for (QChar c : skeleton) {
        QChar l = c.toLower();
        if (l == QLatin1Char('y') || l == QLatin1Char('d') || l == QLatin1Char('h') || l == QLatin1Char('s')
            || l == QLatin1Char('m'))
            return true;
    }
    return false;
}

QString groupThousands(const QString& digits)
{
    QString out;
    int count = 0;
    for (qsizetype i = digits.size() - 1; i >= 0; --i) {
        out.prepend(digits[i]);
        if (++count % 3 == 0 && i > 0)
            out.prepend(QLatin1Char(','));
    }
    return out;
}

} // namespace

QString formatGeneral(double v)
{
    if (std::isnan(v))
        return QStringLiteral("#NUM!");
    if (std::isinf(v))
        return QStringLiteral("#NUM!");
    if (v == 0)
        return QStringLiteral("0");
    double a = std::fabs(v);
    if (a >= 1e15 || a < 1e-9) {
        QString s = QString::number(v, 'E', 14);
        // 1.00000000000000E+20 -> 1E+20
        qsizetype e = s.indexOf(QLatin1Char('E'));
        QString mant = trimFraction(s.left(e));
        QString exp = s.mid(e + 1);
        QChar sign = exp[0];
        exp = exp.mid(1);
        while (exp.size() > 2 && exp.startsWith(QLatin1Char('0')))
            exp.remove(0, 1);
        return mant + QLatin1Char('E') + sign + exp;
    }
    int intDigits = a >= 1 ? int(std::floor(std::log10(a))) + 1 : 0;
    int decimals = std::max(0, 15 - intDigits);
    if (a < 1) {
        // leading zeros after the point do not count as significant
        int zeros = int(std::floor(-std::log10(a)));
        decimals = std::min(15 + zeros, 300);
    }
    return trimFraction(fixedDecimal(v, decimals));
}

QString formatSerialDate(double serial, bool date1904, bool withDate, bool withTime)
{
    if (!std::isfinite(serial) || serial < 0 || serial > 2958466)
        return formatGeneral(serial);
    // Whole seconds, rounded, so that 0.99999999 of a day is midnight next day.
    long long totalSeconds = std::llround(serial * 86400.0);
    long long days = totalSeconds / 86400;
    long long secs = totalSeconds % 86400;
    QString date;
    if (withDate) {
        if (date1904) {
            date = QDate(1904, 1, 1).addDays(days).toString(Qt::ISODate);
        } else if (days == 60) {
            date = QStringLiteral("1900-02-29");  // the day that never was, kept for old files
        } else if (days == 0) {
            date = QStringLiteral("1900-01-00");
        } else {
            date = QDate(1899, 12, days < 60 ? 31 : 30).addDays(days).toString(Qt::ISODate);
        }
    }
    QString time;
    if (withTime)
        time = QStringLiteral("%1:%2:%3")
                   .arg(withDate ? secs / 3600 : (totalSeconds / 3600) % 24, 2, 10, QLatin1Char('0'))
                   .arg((secs / 60) % 60, 2, 10, QLatin1Char('0'))
                   .arg(secs % 60, 2, 10, QLatin1Char('0'));
    if (withDate && withTime)
        return date + QLatin1Char(' ') + time;
    return withDate ? date : time;
}

QString builtinNumberFormat(int id)
{
    switch (id) {
    case 1: return QStringLiteral("0");
    case 2: return QStringLiteral("0.00");
    case 3: return QStringLiteral("#,##0");
    case 4: return QStringLiteral("#,##0.00");
    case 9: return QStringLiteral("0%");
    case 10: return QStringLiteral("0.00%");
    case 11: return QStringLiteral("0.00E+00");
    case 12: return QStringLiteral("# ?/?");
    case 13: return QStringLiteral("# ?" "?/?" "?");
    case 14: return QStringLiteral("mm-dd-yy");
    case 15: return QStringLiteral("d-mmm-yy");
    case 16: return QStringLiteral("d-mmm");
    case 17: return QStringLiteral("mmm-yy");
    case 18: return QStringLiteral("h:mm AM/PM");
    case 19: return QStringLiteral("h:mm:ss AM/PM");
    case 20: return QStringLiteral("h:mm");
    case 21: return QStringLiteral("h:mm:ss");
    case 22: return QStringLiteral("m/d/yy h:mm");
    case 37: return QStringLiteral("#,##0 ;(#,##0)");
    case 38: return QStringLiteral("#,##0 ;[Red](#,##0)");
    case 39: return QStringLiteral("#,##0.00;(#,##0.00)");
    case 40: return QStringLiteral("#,##0.00;[Red](#,##0.00)");
    case 45: return QStringLiteral("mm:ss");
    case 46: return QStringLiteral("[h]:mm:ss");
    case 47: return QStringLiteral("mmss.0");
    case 48: return QStringLiteral("##0.0E+0");
    case 49: return QStringLiteral("@");
    default:
        // East Asian date forms that files refer to by number only
        if ((id >= 27 && id <= 36) || (id >= 50 && id <= 58))
            return QStringLiteral("yyyy-mm-dd");
        return QString();
    }
}

bool isDateFormat(const QString& formatCode)
{
    if (formatCode.isEmpty() || formatCode.compare(QLatin1String("General"), Qt::CaseInsensitive) == 0)
        return false;
    bool neg = false;
    return skeletonIsDate(analyse(firstSection(formatCode, 1, &neg)).skeleton);
}

QString formatNumber(double v, const QString& formatCode, bool date1904)
{
    if (formatCode.isEmpty() || formatCode.compare(QLatin1String("General"), Qt::CaseInsensitive) == 0
        || formatCode == QLatin1String("@"))
        return formatGeneral(v);
    bool negativeSection = false;
    const QString section = firstSection(formatCode, v, &negativeSection);
    if (section.contains(QLatin1String("General"), Qt::CaseInsensitive)) {
        QString around = section;
        around.replace(QLatin1String("General"), QString(), Qt::CaseInsensitive);
        const Section lit = analyse(around);
        return lit.prefix + formatGeneral(negativeSection ? std::fabs(v) : v) + lit.suffix;
    }
    const Section s = analysed(section);

    if (skeletonIsDate(s.skeleton)) {
        const QString k = s.skeleton.toLower();
        bool hasTime = k.contains(QLatin1Char('h')) || k.contains(QLatin1Char('s'));
        bool hasDate = k.contains(QLatin1Char('y')) || k.contains(QLatin1Char('d'))
                       || (k.contains(QLatin1Char('m')) && !hasTime);
        if (s.elapsedHours && !hasDate) {
            long long total = std::llround(std::fabs(v) * 86400.0);
            return QStringLiteral("%1:%2:%3")
                .arg(total / 3600, 2, 10, QLatin1Char('0'))
                .arg((total / 60) % 60, 2, 10, QLatin1Char('0'))
                .arg(total % 60, 2, 10, QLatin1Char('0'));
        }
        return formatSerialDate(v, date1904, hasDate, hasTime);
    }

    if (s.skeleton.contains(QLatin1Char('/')) || s.skeleton.contains(QLatin1Char('?')))
        return formatGeneral(v);  // fractions: not a simple format

    double value = negativeSection ? std::fabs(v) : v;
    if (s.skeleton.contains(QLatin1Char('%')) || s.suffix.contains(QLatin1Char('%'))
        || s.prefix.contains(QLatin1Char('%')))
        value *= 100;

    qsizetype point = s.skeleton.indexOf(QLatin1Char('.'));
    qsizetype expPos = s.skeleton.indexOf(QLatin1Char('E'), 0, Qt::CaseInsensitive);
    int decimals = 0;
    if (point >= 0) {
        for (qsizetype i = point + 1; i < s.skeleton.size(); ++i) {
            QChar c = s.skeleton[i];
            if (c == QLatin1Char('0') || c == QLatin1Char('#'))
                ++decimals;
            else if (c != QLatin1Char(','))
                break;
        }
    }
    QString body;
    if (expPos >= 0) {
        QString e = QString::number(roundSignificant(value), 'E', decimals);
        qsizetype ep = e.indexOf(QLatin1Char('E'));
        QString exp = e.mid(ep + 1);
        QChar sign = exp[0];
        exp = exp.mid(1);
        int expDigits = 0;
        for (qsizetype i = expPos + 1; i < s.skeleton.size(); ++i)
            if (s.skeleton[i] == QLatin1Char('0'))
                ++expDigits;
        while (exp.size() > std::max(expDigits, 1) && exp.startsWith(QLatin1Char('0')))
            exp.remove(0, 1);
        body = e.left(ep) + QLatin1Char('E') + sign + exp;
    } else {
        // Trailing commas scale by thousands ("0.0,," shows millions).
        QString intPart = point >= 0 ? s.skeleton.left(point) : s.skeleton;
        while (intPart.endsWith(QLatin1Char(','))) {
            value /= 1000;
            intPart.chop(1);
        }
        bool thousands = intPart.contains(QLatin1Char(','));
        body = fixedDecimal(value, decimals);
        bool negative = body.startsWith(QLatin1Char('-'));
        if (negative)
            body.remove(0, 1);
        if (thousands) {
            qsizetype dot = body.indexOf(QLatin1Char('.'));
            QString digits = dot >= 0 ? body.left(dot) : body;
            body = groupThousands(digits) + (dot >= 0 ? body.mid(dot) : QString());
        }
        // "#.##" style: optional decimals drop trailing zeros
        if (point >= 0 && !s.skeleton.mid(point + 1).contains(QLatin1Char('0')))
            body = trimFraction(body);
        if (negative && body.contains(QRegularExpression(QStringLiteral("[1-9]"))))
            body.prepend(QLatin1Char('-'));
    }
    if (s.skeleton.contains(QLatin1Char('%')))
        body += QString(s.skeleton.count(QLatin1Char('%')), QLatin1Char('%'));
    return s.prefix + body + s.suffix;
}

} // namespace lexiform
