#include "components/folioform/Folioform.h"

#include "components/safewrite/SafeWrite.h"

#include <QFile>
#include <QFileInfo>
#include <memory>
#include <poppler-document.h>
#include <poppler-global.h>
#include <poppler-page.h>

namespace folioform {

namespace {

// Poppler reports parse trouble of damaged files on stderr by default; the
// result code says all the caller needs.
void quietPoppler()
{
    static const bool once = [] {
        poppler::set_debug_error_function([](const std::string&, void*) {}, nullptr);
        return true;
    }();
    (void)once;
}

std::unique_ptr<poppler::document> load(const QString& source, const std::string& owner, const std::string& user)
{
    // Read through Qt so that paths in any encoding work; poppler takes the
    // bytes over for the lifetime of the document.
    QFile f(source);
    if (!f.open(QIODevice::ReadOnly))
        return nullptr;
    std::vector<char> data(std::size_t(std::max<qint64>(f.size(), 0)));
    if (!data.empty() && f.read(data.data(), qint64(data.size())) != qint64(data.size()))
        return nullptr;
    return std::unique_ptr<poppler::document>(poppler::document::load_from_data(&data, owner, user));
}

} // namespace

int Folioform::extractText(const QString& source, const QString& password, QString& text)
{
    text.clear();
    quietPoppler();
    QFileInfo info(source);
    if (!info.isFile() || !info.isReadable())
        return Unopenable;
    std::unique_ptr<poppler::document> doc = load(source, std::string(), std::string());
    if (!doc)
        return Unopenable;
    if (doc->is_locked()) {
        if (password.isEmpty())
            return PasswordNeeded;
        const std::string pw = password.toStdString();
        // unlock() answers whether the document is still locked.
        if (doc->unlock(pw, pw))
            return PasswordNeeded;
    }
    if (!doc->has_permission(poppler::perm_copy)) {
        // The restriction binds everyone but the holder of the owner password.
        if (password.isEmpty())
            return ExtractionForbidden;
        doc = load(source, password.toStdString(), std::string());
        if (!doc || doc->is_locked() || !doc->has_permission(poppler::perm_copy))
            return ExtractionForbidden;
    }
    const int pages = doc->pages();
    for (int i = 0; i < pages; ++i) {
        std::unique_ptr<poppler::page> page(doc->create_page(i));
        if (!page)
            continue;
        const poppler::byte_array utf8 = page->text(poppler::rectf(), poppler::page::non_raw_non_physical_layout).to_utf8();
        QString pageText = QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
        pageText.remove(QLatin1Char('\f'));
        while (pageText.endsWith(QLatin1Char('\n')))
            pageText.chop(1);
        if (i > 0)
            text += QStringLiteral("\n\n");
        text += pageText;
    }
    if (!text.isEmpty())
        text += QLatin1Char('\n');
    return Ok;
}

int Folioform::ConvertPdfDocument(const QString& source, const QString& target, const QString& password, int conversionType)
{
    if (source.isEmpty() || target.isEmpty() || conversionType != 1)
        return BadArguments;
    if (safewrite::sameFile(QFile::encodeName(source).toStdString(), QFile::encodeName(target).toStdString()))
        return BadArguments;
    QString text;
    int rc = extractText(source, password, text);
    if (rc != Ok)
        return rc;
    const QByteArray bytes = text.toUtf8();
    if (!safewrite::writeWholeFile(QFile::encodeName(target).toStdString(),
                                   std::string_view(bytes.constData(), std::size_t(bytes.size()))))
        return Unopenable;
    return Ok;
}

} // namespace folioform
