#pragma once
// Helpers of the Lexiform tests: building zip packages by hand, reading CSV
// results as cells, fingerprints of source files.

#include "components/lexiform/CsvText.h"

#include <QByteArray>
#include <QString>
#include <string>
#include <utility>
#include <vector>

namespace lexiformtest {

using Members = std::vector<std::pair<std::string, std::string>>;

inline QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

// Writes a zip file holding the given members, deflated.
void writeZip(const std::string& path, const Members& members);

// The cells of a CSV file, blanks at the ends of each cell removed.
std::vector<QStringList> cellsOfFile(const std::string& path);

QByteArray fileDigest(const std::string& path);

// A minimal XLSX package: one sheet per entry, each sheet the XML of its
// <sheetData> content; strings inline.
void writeXlsx(const std::string& path, const std::vector<std::pair<std::string, std::string>>& sheets,
               const std::string& styles = "");

// Lines of a text with blank ones and surrounding blanks removed.
std::vector<std::string> normalisedLines(const std::string& text);

} // namespace lexiformtest

#include "support/qstring_print.h"

#include "components/lexiform/RichTextModel.h"

namespace lexiform {

// Paragraphs and runs with their formats, for failure messages.
inline void PrintTo(const Document& d, std::ostream* os)
{
    for (const Paragraph& p : d.paragraphs) {
        *os << "\n  [";
        for (const Run& r : p.runs) {
            const CharFormat& f = r.format;
            *os << "{\"" << r.text.toStdString() << "\" " << (f.bold ? "b" : "") << (f.italic ? "i" : "")
                << (f.underline ? "u" : "") << (f.strike ? "s" : "");
            if (f.foreColor)
                *os << " fg=" << std::hex << *f.foreColor << std::dec;
            if (f.backColor)
                *os << " bg=" << std::hex << *f.backColor << std::dec;
            if (!f.fontName.isEmpty())
                *os << " font=" << f.fontName.toStdString();
            if (f.fontSize > 0)
                *os << " size=" << f.fontSize;
            *os << "}";
        }
        *os << "]";
    }
}

} // namespace lexiform
