#include "document/SaveRichText.h"

#include "document/RichTextConvert.h"

#include "components/lexiform/DocumentWriters.h"
#include "components/lexiform/LexiformResult.h"
#include "components/lexiform/RtfWriter.h"
#include "components/safewrite/SafeWrite.h"

#include <QFile>
#include <QTextDocument>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace tv {

SaveFormat SaveFormatOfFilterIndex(int index)
{
    switch (index) {
    case 2: return SaveFormat::PlainText;
    case 3: return SaveFormat::Word;
    case 4: return SaveFormat::Html;
    default: return SaveFormat::RichText;
    }
}

bool IsReadOnlyFile(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat st {};
    if (::stat(name.constData(), &st) != 0 || S_ISDIR(st.st_mode))
        return false;
    // The mode bits first: the superuser may write anything, and would
    // otherwise walk straight over a file its owner protected.
    if ((st.st_mode & S_IWUSR) == 0)
        return true;
    return ::access(name.constData(), W_OK) != 0 && errno != ENOENT;
}

SaveOutcome SaveDocumentAs(const QTextDocument& document, const QString& target, SaveFormat format)
{
    if (target.trimmed().isEmpty())
        return {lexiform::PathEmpty, QString()};
    if (IsReadOnlyFile(target))
        return {lexiform::ConversionFailed, QStringLiteral("the file is read-only")};

    const lexiform::Document model = modelOfRange(document);
    QByteArray bytes;
    switch (format) {
    case SaveFormat::RichText: bytes = lexiform::writeRtf(model); break;
    case SaveFormat::PlainText: {
        // The text exactly as the editor holds it, no line end added behind
        // the last paragraph: loaded again, the file gives the same
        // paragraphs, and a comparison against it the same numbers.
        QString text = model.plainText();
        text.replace(QChar::LineSeparator, QLatin1Char('\n'));
        bytes = text.toUtf8();
        break;
    }
    case SaveFormat::Html: bytes = lexiform::writeHtml(model); break;
    case SaveFormat::Word:
        bytes = lexiform::docxBytes(model);
        if (bytes.isEmpty())
            return {lexiform::ConversionFailed, QStringLiteral("the Word document could not be built")};
        break;
    }
    std::string why;
    if (!safewrite::writeWholeFile(QFile::encodeName(target).toStdString(),
                                   std::string_view(bytes.constData(), std::size_t(bytes.size())), &why))
        return {lexiform::ConversionFailed, QString::fromStdString(why)};
    return {};
}

} // namespace tv
