#pragma once
// Shared by the zip-based fuzz targets: the input either is a zip file as it
// stands, or names the XML members of a package to be zipped up, so that the
// fuzzer reaches the XML readers instead of stopping at checksums.

#include <QByteArray>
#include <QString>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>
#include <zip.h>

namespace fuzzzip {

// A scratch file of this process, in memory when /dev/shm is there.
inline QString scratchPath()
{
    static const QString path = QStringLiteral("%1/tv-fuzz-%2.bin")
                                    .arg(access("/dev/shm", W_OK) == 0 ? QStringLiteral("/dev/shm") : QStringLiteral("/tmp"))
                                    .arg(getpid());
    return path;
}

inline bool writeRaw(const uint8_t* data, size_t size)
{
    FILE* f = fopen(scratchPath().toLocal8Bit().constData(), "wb");
    if (!f)
        return false;
    fwrite(data, 1, size, f);
    fclose(f);
    return true;
}

// Splits the input at "\x01\x02" into parts and stores them (uncompressed)
// under the given names, in order; missing parts are left out.
inline bool writePackage(const uint8_t* data, size_t size, const std::vector<std::string>& names)
{
    std::string all(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> parts;
    size_t start = 0;
    while (parts.size() + 1 < names.size()) {
        size_t sep = all.find("\x01\x02", start);
        if (sep == std::string::npos)
            break;
        parts.push_back(all.substr(start, sep - start));
        start = sep + 2;
    }
    parts.push_back(all.substr(start));
    int err = 0;
    zip_t* z = zip_open(scratchPath().toLocal8Bit().constData(), ZIP_CREATE | ZIP_TRUNCATE, &err);
    if (!z)
        return false;
    for (size_t i = 0; i < parts.size() && i < names.size(); ++i) {
        zip_source_t* src = zip_source_buffer(z, parts[i].data(), parts[i].size(), 0);
        zip_int64_t idx = zip_file_add(z, names[i].c_str(), src, ZIP_FL_OVERWRITE);
        if (idx >= 0)
            zip_set_file_compression(z, zip_uint64_t(idx), ZIP_CM_STORE, 0);
        else
            zip_source_free(src);
    }
    return zip_close(z) == 0;  // parts stay alive until here
}

} // namespace fuzzzip
