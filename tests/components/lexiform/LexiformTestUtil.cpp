#include "LexiformTestUtil.h"

#include "support/testsupport.h"

#include <QCryptographicHash>
#include <QFile>
#include <stdexcept>
#include <zip.h>

namespace lexiformtest {

void writeZip(const std::string& path, const Members& members)
{
    int err = 0;
    zip_t* z = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &err);
    if (!z)
        throw std::runtime_error("cannot create zip " + path);
    for (const auto& [name, content] : members) {
        // libzip keeps the buffer until zip_close, so hand it a copy it frees.
        void* copy = malloc(content.size() ? content.size() : 1);
        memcpy(copy, content.data(), content.size());
        zip_source_t* src = zip_source_buffer(z, copy, content.size(), 1);
        zip_int64_t idx = zip_file_add(z, name.c_str(), src, ZIP_FL_OVERWRITE);
        if (idx < 0)
            throw std::runtime_error("cannot add " + name);
        zip_set_file_compression(z, zip_uint64_t(idx), ZIP_CM_DEFLATE, 9);
    }
    if (zip_close(z) != 0)
        throw std::runtime_error("cannot write zip " + path);
}

std::vector<QStringList> cellsOfFile(const std::string& path)
{
    std::vector<QStringList> out;
    for (QStringList r : lexiform::parseCsv(QString::fromStdString(tvtest::readFile(path)))) {
        for (QString& c : r)
            c = c.trimmed();
        out.push_back(r);
    }
    return out;
}

QByteArray fileDigest(const std::string& path)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(tvtest::readFile(path)), QCryptographicHash::Sha256);
}

void writeXlsx(const std::string& path, const std::vector<std::pair<std::string, std::string>>& sheets,
               const std::string& styles)
{
    std::string workbook = R"(<?xml version="1.0" encoding="UTF-8"?>
<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><sheets>)";
    std::string rels = R"(<?xml version="1.0" encoding="UTF-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)";
    Members members;
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        std::string n = std::to_string(i + 1);
        workbook += "<sheet name=\"" + sheets[i].first + "\" sheetId=\"" + n + "\" r:id=\"rId" + n + "\"/>";
        rels += "<Relationship Id=\"rId" + n
                + "\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet\" Target=\"worksheets/sheet"
                + n + ".xml\"/>";
        members.push_back({"xl/worksheets/sheet" + n + ".xml",
                           "<?xml version=\"1.0\"?><worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetData>"
                               + sheets[i].second + "</sheetData></worksheet>"});
    }
    workbook += "</sheets></workbook>";
    if (!styles.empty()) {
        rels += R"(<Relationship Id="rIdS" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" Target="styles.xml"/>)";
        members.push_back({"xl/styles.xml", styles});
    }
    rels += "</Relationships>";
    members.push_back({"xl/workbook.xml", workbook});
    members.push_back({"xl/_rels/workbook.xml.rels", rels});
    members.push_back({"_rels/.rels", R"(<?xml version="1.0"?><Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="xl/workbook.xml"/></Relationships>)"});
    writeZip(path, members);
}

std::vector<std::string> normalisedLines(const std::string& text)
{
    std::vector<std::string> out;
    std::string line;
    auto flush = [&] {
        QString t = QString::fromStdString(line).simplified();
        if (!t.isEmpty())
            out.push_back(t.toStdString());
        line.clear();
    };
    for (char c : text) {
        if (c == '\n' || c == '\f')
            flush();
        else
            line += c;
    }
    flush();
    return out;
}

} // namespace lexiformtest
