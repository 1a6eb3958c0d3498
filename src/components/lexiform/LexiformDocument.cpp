// Word processor and web documents: ConvertDocument of the Lexiform component.

#include "components/lexiform/Lexiform.h"

#include "components/lexiform/DocumentWriters.h"
#include "components/lexiform/DocxReader.h"
#include "components/lexiform/ExternalPrograms.h"
#include "components/lexiform/FileBytes.h"
#include "components/lexiform/HtmlReader.h"
#include "components/lexiform/OdtReader.h"
#include "components/lexiform/PlainTextReader.h"
#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"
#include "components/lexiform/ZipPackage.h"
#include "components/safewrite/SafeWrite.h"

#include <QFile>
#include <QFileInfo>

namespace lexiform {

namespace {

bool looksLikeHtml(const QByteArray& bytes)
{
    const QByteArray head = bytes.left(2048).trimmed().toLower();
    if (!head.startsWith('<') && !head.startsWith("\xef\xbb\xbf<"))
        return false;
    return head.contains("<html") || head.contains("<!doctype html") || head.contains("<body")
           || head.contains("<head");
}

QString extensionOf(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

} // namespace

int Lexiform::readDocument(const QString& source, Document& doc)
{
    lastLimitReason_.clear();
    // A named pipe would block the open below, a device never ends.
    if (const std::string why = safewrite::notRegularFileReason(QFile::encodeName(source).toStdString());
        !why.empty()) {
        lastLimitReason_ = QString::fromStdString(why);
        return SourceInvalid;
    }
    QFile f(source);
    if (!f.open(QIODevice::ReadOnly))
        return SourceInvalid;
    const QByteArray head = f.read(8);
    f.close();
    const QString ext = extensionOf(source);

    if (head.startsWith("PK\x03\x04")) {
        ZipPackage zip(limits_);
        if (!zip.open(source))
            return SourceInvalid;
        if (zip.contains(QStringLiteral("content.xml")) && !zip.contains(QStringLiteral("word/document.xml"))) {
            QByteArray mime;
            zip.read(QStringLiteral("mimetype"), mime);
            if (!mime.isEmpty() && !mime.contains("opendocument.text"))
                return SourceInvalid;
            return readOdt(source, limits_, doc);
        }
        return readDocx(source, limits_, doc);
    }

    QString kind;
    if (head.startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"))
        kind = ext == QLatin1String("wps") ? QStringLiteral("wps") : QStringLiteral("doc");
    else if (head.startsWith("\xFFWPC") || ext == QLatin1String("wpd"))
        kind = QStringLiteral("wpd");
    else if (ext == QLatin1String("wps"))
        kind = QStringLiteral("wps");
    else if (ext == QLatin1String("mcw"))
        kind = QStringLiteral("mcw");
    if (!kind.isEmpty()) {
        QString text;
        int rc = legacyDocumentText(source, kind, externalTimeoutMs_, text);
        if (rc != Ok)
            return rc;
        doc = plainTextToDocument(text);
        return Ok;
    }

    QByteArray bytes;
    if (!readFileBytes(source, bytes, limits_.maxEntryBytes))
        return SourceInvalid;
    if (looksLikeRtf(bytes)) {
        doc = readRtf(bytes);
        return Ok;
    }
    static const QStringList htmlSuffixes = {"htm", "html", "xhtm", "xhtml", "jhtm", "jhtml", "shtml", "mht"};
    if (htmlSuffixes.contains(ext) || looksLikeHtml(bytes)) {
        doc = readHtml(bytes);
        return Ok;
    }
    // .REG, .ANS, .ASC and anything else: text in whatever encoding it is.
    doc = readPlainText(bytes);
    return Ok;
}

int Lexiform::ConvertDocument(const QString& source, const QString& target, int conversionType)
{
    if (source.isEmpty() || target.isEmpty())
        return PathEmpty;
    if (sameFile(source, target))
        return SameFile;
    if (conversionType != TypeWordDocument && conversionType != TypePlainText && conversionType != TypeRichText
        && conversionType != TypeHtml)
        return ConversionFailed;
    QFileInfo info(source);
    if (!info.isFile() || !info.isReadable())
        return SourceInvalid;
    Document doc;
    int rc = readDocument(source, doc);
    if (rc != Ok)
        return rc;
    bool written = false;
    switch (conversionType) {
    case TypeWordDocument: written = writeDocx(doc, target); break;
    case TypePlainText: written = writeFileBytes(target, writePlainText(doc)); break;
    case TypeRichText: written = writeFileBytes(target, writeRtf(doc)); break;
    case TypeHtml: written = writeFileBytes(target, writeHtml(doc)); break;
    default: break;
    }
    return written ? Ok : ConversionFailed;
}

} // namespace lexiform
