#pragma once
// Shows a spreadsheet number the way its cell format asks for, as far as the
// format is a simple one: fixed decimals, thousands separators, percentages,
// scientific notation, literal text around the number. Dates and times come
// out as ISO 8601 whatever the format's own order, so that files from
// different locales compare alike. Anything fancier falls back to the
// general form.

#include <QString>

namespace lexiform {

// Up to 15 significant digits, no exponent for ordinary magnitudes, no
// trailing zeros: 14.6, 13.6666666666667, 1E+20.
QString formatGeneral(double v);

// Date serial (days since the spreadsheet epoch) as "YYYY-MM-DD",
// "HH:MM:SS" or both.
QString formatSerialDate(double serial, bool date1904, bool withDate, bool withTime);

// Builtin format codes of the numFmtId values files may use without
// declaring them; empty for General and unknown ids.
QString builtinNumberFormat(int id);

QString formatNumber(double v, const QString& formatCode, bool date1904);

// True when the code shows dates or times.
bool isDateFormat(const QString& formatCode);

} // namespace lexiform
