#include "components/lexiform/ZipPackage.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <QStringList>
#include <QXmlStreamReader>
#include <zip.h>

namespace lexiform {

namespace {

QString tooLargeText(long long allowance, long long ratio)
{
    return QStringLiteral("it unpacks to more than its size allows (a package may unpack to %1 MB plus %2 "
                          "times its own size)")
        .arg(allowance >> 20)
        .arg(ratio);
}

void sayTooLarge(const ReadLimits& limits)
{
    if (limits.limitReason)
        *limits.limitReason = tooLargeText(limits.packageAllowanceBytes, limits.packageRatio);
}

} // namespace

ZipPackage::ZipPackage(const ReadLimits& limits) : limits_(limits) {}

ZipPackage::~ZipPackage()
{
    if (archive_)
        zip_discard(archive_);
}

bool ZipPackage::open(const QString& path)
{
    if (archive_) {
        zip_discard(archive_);
        archive_ = nullptr;
    }
    int err = 0;
    archive_ = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &err);
    const long long size = QFileInfo(path).size();
    budget_ = std::make_shared<long long>(limits_.packageAllowanceBytes
                                          + std::min(size, (1LL << 40)) * limits_.packageRatio);
    if (!archive_)
        return false;
    // Sizes the package admits to are refused before anything is unpacked;
    // sizes it lies about are caught while reading.
    long long declared = 0;
    const zip_int64_t count = zip_get_num_entries(archive_, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        zip_stat_t st;
        zip_stat_init(&st);
        if (zip_stat_index(archive_, zip_uint64_t(i), 0, &st) == 0 && (st.valid & ZIP_STAT_SIZE))
            declared += (long long)std::min<zip_uint64_t>(st.size, 1ULL << 50);
    }
    if (declared > *budget_) {
        sayTooLarge(limits_);
        zip_discard(archive_);
        archive_ = nullptr;
        return false;
    }
    return true;
}

bool ZipPackage::contains(const QString& name) const
{
    return archive_ && zip_name_locate(archive_, name.toUtf8().constData(), ZIP_FL_NOCASE) >= 0;
}

std::unique_ptr<ZipPackage::Member> ZipPackage::openMember(const QString& name) const
{
    if (!archive_)
        return nullptr;
    zip_int64_t index = zip_name_locate(archive_, name.toUtf8().constData(), ZIP_FL_NOCASE);
    if (index < 0)
        return nullptr;
    zip_file_t* file = zip_fopen_index(archive_, zip_uint64_t(index), 0);
    if (!file)
        return nullptr;
    auto member = std::make_unique<Member>(file, limits_, budget_);
    member->open(QIODevice::ReadOnly);
    return member;
}

bool ZipPackage::read(const QString& name, QByteArray& out) const
{
    out.clear();
    auto member = openMember(name);
    if (!member)
        return false;
    char buffer[65536];
    for (;;) {
        qint64 n = member->read(buffer, sizeof buffer);
        if (n < 0)
            return false;
        if (n == 0)
            break;
        out.append(buffer, n);
    }
    return !member->overLimit() && !member->corrupt();
}

ZipPackage::Member::Member(::zip_file* file, const ReadLimits& limits, std::shared_ptr<long long> budget)
    : file_(file), limit_(limits.maxEntryBytes), budget_(std::move(budget)), limitReason_(limits.limitReason),
      packageAllowance_(limits.packageAllowanceBytes), packageRatio_(limits.packageRatio)
{
}

ZipPackage::Member::~Member()
{
    zip_fclose(file_);
}

qint64 ZipPackage::Member::readData(char* data, qint64 maxSize)
{
    if (overLimit_ || corrupt_)
        return -1;
    if (atEnd_ || maxSize <= 0)
        return 0;
    zip_int64_t n = zip_fread(file_, data, zip_uint64_t(maxSize));
    if (n < 0) {
        corrupt_ = true;
        return -1;
    }
    if (n == 0) {
        atEnd_ = true;
        return 0;
    }
    done_ += n;
    if (budget_)
        *budget_ -= n;
    // Declared sizes in a zip can lie; only the bytes actually produced count.
    if (done_ > limit_ || (budget_ && *budget_ < 0)) {
        overLimit_ = true;
        if (limitReason_)
            *limitReason_ = budget_ && *budget_ < 0 ? tooLargeText(packageAllowance_, packageRatio_)
                                                    : QStringLiteral("one of its parts unpacks to more than %1 bytes")
                                                          .arg(limit_);
        return -1;
    }
    return n;
}

QString resolvePartPath(const QString& baseFolder, const QString& target)
{
    QString t = target;
    t.replace(QLatin1Char('\\'), QLatin1Char('/'));
    QStringList parts;
    if (!t.startsWith(QLatin1Char('/')))
        parts = baseFolder.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& p : t.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (p == QLatin1String(".."))
            parts.isEmpty() ? void() : parts.removeLast();
        else if (p != QLatin1String("."))
            parts.append(p);
    }
    return parts.join(QLatin1Char('/'));
}

QString partFolder(const QString& part)
{
    const qsizetype slash = part.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? QString() : part.left(slash);
}

std::vector<Relationship> readRelationships(const ZipPackage& zip, const QString& relsPath, const QString& baseFolder)
{
    std::vector<Relationship> rels;
    auto member = zip.openMember(relsPath);
    if (!member)
        return rels;
    QXmlStreamReader xml(member.get());
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("Relationship")) {
            const auto a = xml.attributes();
            QString target = a.value(QLatin1String("Target")).toString();
            if (a.value(QLatin1String("TargetMode")) != QLatin1String("External"))
                target = resolvePartPath(baseFolder, target);
            rels.push_back({a.value(QLatin1String("Id")).toString(), a.value(QLatin1String("Type")).toString(), target});
        }
    }
    return rels;
}

QString officeDocumentPath(const ZipPackage& zip, const QString& fallback)
{
    for (const Relationship& rel : readRelationships(zip, QStringLiteral("_rels/.rels"), QString()))
        if (rel.type.endsWith(QLatin1String("/officeDocument")))
            return rel.target;
    return fallback;
}

} // namespace lexiform
