#include "core/modUtilityString.h"

#include <cmath>
#include <limits>

QString TrimAtNull(const QString& text)
{
    const qsizetype nul = text.indexOf(QChar(0));
    return nul < 0 ? text : text.left(nul);
}

std::string TrimAtNull(const std::string& text)
{
    const auto nul = text.find('\0');
    return nul == std::string::npos ? text : text.substr(0, nul);
}

QString TrimBlanks(const QString& text)
{
    qsizetype b = 0, e = text.size();
    while (b < e && text[b] == QLatin1Char(' '))
        ++b;
    while (e > b && text[e - 1] == QLatin1Char(' '))
        --e;
    return text.mid(b, e - b);
}

QString AnimateStatusText(const QString& text)
{
    static int counter = 0;
    if (counter > 30)
        counter = 0;
    const QString shown = text.left(2 * counter);
    ++counter;
    return shown;
}

bool TextToLong(const QString& text, qint32& value)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return false;

    double number = 0;
    if (t.size() > 2 && t[0] == QLatin1Char('&')
        && (t[1].toUpper() == QLatin1Char('H') || t[1].toUpper() == QLatin1Char('O'))) {
        bool ok = false;
        const int base = t[1].toUpper() == QLatin1Char('H') ? 16 : 8;
        const qulonglong bits = t.mid(2).toULongLong(&ok, base);
        if (!ok || bits > 0xFFFFFFFFull)
            return false;
        // Written with up to eight digits the pattern is the 32-bit value itself,
        // so &HFFFFFFFF is -1.
        value = static_cast<qint32>(static_cast<quint32>(bits));
        return true;
    } else {
        // Only plain decimal notation: toDouble would also take "inf" and "nan".
        for (QChar c : t) {
            if (!(c.isDigit() || c == QLatin1Char('+') || c == QLatin1Char('-')
                  || c == QLatin1Char('.') || c == QLatin1Char('e') || c == QLatin1Char('E')))
                return false;
        }
        bool ok = false;
        number = t.toDouble(&ok);
        if (!ok || !std::isfinite(number))
            return false;
    }
    const double rounded = std::nearbyint(number); // the default mode rounds half to even
    if (rounded < static_cast<double>(std::numeric_limits<qint32>::min())
        || rounded > static_cast<double>(std::numeric_limits<qint32>::max()))
        return false;
    value = static_cast<qint32>(rounded);
    return true;
}
