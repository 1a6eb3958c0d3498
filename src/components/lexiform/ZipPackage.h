#pragma once
// Read access to the members of a zip container (DOCX, XLSX, ODT, ODS)
// through libzip, with a cap on how much a member may decompress to.

#include "components/lexiform/LexiformResult.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <memory>
#include <vector>

struct zip;
struct zip_file;

namespace lexiform {

class ZipPackage {
public:
    explicit ZipPackage(const ReadLimits& limits = {});
    ~ZipPackage();
    ZipPackage(const ZipPackage&) = delete;
    ZipPackage& operator=(const ZipPackage&) = delete;

    bool open(const QString& path);
    bool isOpen() const { return archive_ != nullptr; }

    // Member names are matched without regard to case, as office programs
    // are not consistent about it.
    bool contains(const QString& name) const;

    // The whole member; false when it is missing, corrupt or over the cap.
    bool read(const QString& name, QByteArray& out) const;

    // A sequential device over one member, for streaming XML; null when the
    // member is missing. overLimit() tells afterwards whether reading stopped
    // at the cap.
    class Member;
    std::unique_ptr<Member> openMember(const QString& name) const;

    const ReadLimits& limits() const { return limits_; }

private:
    ReadLimits limits_;
    ::zip* archive_ = nullptr;
    // Decompressed bytes the members may still produce, all together.
    std::shared_ptr<long long> budget_;
};

class ZipPackage::Member : public QIODevice {
public:
    Member(::zip_file* file, const ReadLimits& limits, std::shared_ptr<long long> budget);
    ~Member() override;
    bool isSequential() const override { return true; }
    bool overLimit() const { return overLimit_; }
    bool corrupt() const { return corrupt_; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    ::zip_file* file_;
    long long limit_;
    std::shared_ptr<long long> budget_;
    QString* limitReason_;
    long long packageAllowance_, packageRatio_;
    long long done_ = 0;
    bool overLimit_ = false;
    bool corrupt_ = false;
    bool atEnd_ = false;
};

// Resolves a relationship target ("worksheets/sheet1.xml", "/xl/a.xml",
// "../media/x") against the folder of the part that names it.
QString resolvePartPath(const QString& baseFolder, const QString& target);

// The folder of a part: "xl" for "xl/workbook.xml", empty at the top.
QString partFolder(const QString& part);

struct Relationship {
    QString id;
    QString type;
    QString target;  // resolved against the folder given, unless external
};

// The relationships listed in a ".rels" member, in the order they stand;
// none when the member is missing.
std::vector<Relationship> readRelationships(const ZipPackage& zip, const QString& relsPath, const QString& baseFolder);

// The main part of an OOXML package, as its "_rels/.rels" names it;
// `fallback` when it names none.
QString officeDocumentPath(const ZipPackage& zip, const QString& fallback);

} // namespace lexiform
