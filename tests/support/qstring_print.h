#pragma once
// Lets GoogleTest print QString and QStringList readably in failures.

#include <QString>
#include <QStringList>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

inline void PrintTo(const QStringList& l, std::ostream* os)
{
    *os << "[" << ('"' + l.join("\", \"") + '"').toStdString() << "]";
}
