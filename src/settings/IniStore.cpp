#include "settings/IniStore.h"

#include "components/safewrite/SafeWrite.h"
#include "core/modUtilityString.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QUtf8StringView>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

QByteArray trimBlanks(const QByteArray& s)
{
    qsizetype b = 0, e = s.size();
    while (b < e && isBlank(s[b]))
        ++b;
    while (e > b && isBlank(s[e - 1]))
        --e;
    return s.mid(b, e - b);
}

QString decode(const QByteArray& bytes)
{
    if (QUtf8StringView(bytes.constData(), bytes.size()).isValidUtf8())
        return QString::fromUtf8(bytes);
    return QString::fromLatin1(bytes);
}

bool sameName(const QByteArray& raw, const QString& wanted)
{
    return decode(raw).compare(wanted.trimmed(), Qt::CaseInsensitive) == 0;
}

// The read limit, without splitting a surrogate pair.
QString capped(const QString& s)
{
    if (s.size() <= kIniValueMax)
        return s;
    qsizetype n = kIniValueMax;
    if (s[n - 1].isHighSurrogate())
        --n;
    return s.left(n);
}

// One INI file in memory as its raw lines, so that a change touches only the
// line it is about.
class IniDocument {
public:
    // A missing file is an empty document; one that exists but cannot be read
    // is marked so that it is never overwritten.
    static IniDocument load(const QString& path)
    {
        IniDocument doc;
        QFile f(path);
        if (!f.exists())
            return doc;
        if (!f.open(QIODevice::ReadOnly)) {
            doc.unreadable_ = true;
            return doc;
        }
        const QByteArray data = f.readAll();
        if (f.error() != QFileDevice::NoError) {
            doc.unreadable_ = true;
            return doc;
        }
        doc.parse(data);
        return doc;
    }

    std::optional<QByteArray> value(const QString& section, const QString& key) const
    {
        const qsizetype header = findSection(section);
        if (header < 0)
            return std::nullopt;
        for (qsizetype i = header + 1; i < qsizetype(lines_.size()); ++i) {
            const QByteArray& line = lines_[size_t(i)];
            if (sectionName(line))
                break;
            if (auto k = keyOf(line); k && sameName(*k, key))
                return valueOf(line);
        }
        return std::nullopt;
    }

    void setValue(const QString& section, const QString& key, const QString& value)
    {
        dirty_ = true;
        const QByteArray entry = key.trimmed().toUtf8() + '=' + encodeValue(value);
        const qsizetype header = findSection(section);
        if (header < 0) {
            if (!lines_.empty() && !trimBlanks(stripCR(lines_.back())).isEmpty())
                lines_.push_back(withEnding(QByteArray()));
            lines_.push_back(withEnding('[' + section.trimmed().toUtf8() + ']'));
            lines_.push_back(withEnding(entry));
            terminated_ = true;
            return;
        }
        qsizetype lastContent = header;
        qsizetype i = header + 1;
        for (; i < qsizetype(lines_.size()); ++i) {
            QByteArray& line = lines_[size_t(i)];
            if (sectionName(line))
                break;
            if (auto k = keyOf(line); k && sameName(*k, key)) {
                line = line.endsWith('\r') ? entry + '\r' : entry;
                return;
            }
            if (!trimBlanks(stripCR(line)).isEmpty())
                lastContent = i;
        }
        if (lastContent + 1 >= qsizetype(lines_.size()))
            terminated_ = true;
        lines_.insert(lines_.begin() + (lastContent + 1), withEnding(entry));
    }

    bool save(const QString& path) const
    {
        if (unreadable_)
            return false;
        QDir().mkpath(QFileInfo(path).absolutePath());
        std::string bytes;
        for (size_t i = 0; i < lines_.size(); ++i) {
            bytes.append(lines_[i].constData(), std::size_t(lines_[i].size()));
            if (i + 1 < lines_.size() || terminated_)
                bytes += '\n';
        }
        return safewrite::writeWholeFile(QFile::encodeName(path).toStdString(), bytes);
    }

    bool dirty() const { return dirty_; }

private:
    void parse(const QByteArray& data)
    {
        qsizetype start = 0;
        while (start < data.size()) {
            qsizetype nl = data.indexOf('\n', start);
            if (nl < 0) {
                lines_.push_back(data.mid(start));
                terminated_ = false;
                break;
            }
            lines_.push_back(data.mid(start, nl - start));
            start = nl + 1;
        }
        // New lines follow the file's own line ends, as its first line shows.
        if (!lines_.empty() && (lines_.size() > 1 || terminated_))
            crlf_ = lines_.front().endsWith('\r');
    }

    static QByteArray stripCR(const QByteArray& line)
    {
        return line.endsWith('\r') ? line.left(line.size() - 1) : line;
    }

    QByteArray withEnding(QByteArray line) const
    {
        if (crlf_)
            line += '\r';
        return line;
    }

    static std::optional<QByteArray> sectionName(const QByteArray& line)
    {
        qsizetype b = 0;
        while (b < line.size() && isBlank(line[b]))
            ++b;
        if (b >= line.size() || line[b] != '[')
            return std::nullopt;
        qsizetype e = line.indexOf(']', b + 1);
        if (e < 0)
            e = stripCR(line).size();
        return trimBlanks(line.mid(b + 1, e - b - 1));
    }

    static std::optional<QByteArray> keyOf(const QByteArray& line)
    {
        const qsizetype eq = line.indexOf('=');
        if (eq < 0)
            return std::nullopt;
        const QByteArray key = trimBlanks(line.left(eq));
        if (key.startsWith(';'))
            return std::nullopt;
        return key;
    }

    static QByteArray valueOf(const QByteArray& line)
    {
        QByteArray v = stripCR(line.mid(line.indexOf('=') + 1));
        const qsizetype nul = v.indexOf('\0');
        if (nul >= 0)
            v.truncate(nul);
        v = trimBlanks(v);
        if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front())
            v = v.mid(1, v.size() - 2);
        return v;
    }

    static QByteArray encodeValue(QString value)
    {
        for (qsizetype i = 0; i < value.size(); ++i) {
            const QChar c = value[i];
            if (c == QLatin1Char('\r') || c == QLatin1Char('\n') || c == QChar(0)) {
                value.truncate(i);
                break;
            }
        }
        QByteArray v = value.toUtf8();
        const bool padded = !v.isEmpty() && (isBlank(v.front()) || isBlank(v.back()));
        const bool quoted = v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front();
        if (padded || quoted)
            v = '"' + v + '"';
        return v;
    }

    qsizetype findSection(const QString& section) const
    {
        for (qsizetype i = 0; i < qsizetype(lines_.size()); ++i)
            if (auto name = sectionName(lines_[size_t(i)]); name && sameName(*name, section))
                return i;
        return -1;
    }

    std::vector<QByteArray> lines_;
    bool terminated_ = true;
    bool crlf_ = false;
    bool unreadable_ = false;
    bool dirty_ = false;
};

struct OpenBatch {
    IniDocument doc;
    int depth = 0;
};

std::mutex batchMutex;
QHash<QString, std::shared_ptr<OpenBatch>>& openBatches()
{
    static QHash<QString, std::shared_ptr<OpenBatch>> batches;
    return batches;
}

std::shared_ptr<OpenBatch> batchFor(const QString& file)
{
    std::lock_guard<std::mutex> lock(batchMutex);
    return openBatches().value(file);
}

} // namespace

QString IniReadString(const QString& file, const QString& section, const QString& key,
                      const QString& defaultValue)
{
    std::optional<QByteArray> raw;
    if (auto batch = batchFor(file))
        raw = batch->doc.value(section, key);
    else
        raw = IniDocument::load(file).value(section, key);
    return capped(TrimAtNull(raw ? decode(*raw) : defaultValue));
}

quint32 IniReadInt(const QString& file, const QString& section, const QString& key,
                   quint32 defaultValue)
{
    const QString text = IniReadString(file, section, key, QString());
    if (text.isEmpty())
        return defaultValue;
    qsizetype i = 0;
    bool negative = false;
    if (text[0] == QLatin1Char('-') || text[0] == QLatin1Char('+')) {
        negative = text[0] == QLatin1Char('-');
        ++i;
    }
    quint32 n = 0;
    for (; i < text.size() && text[i] >= QLatin1Char('0') && text[i] <= QLatin1Char('9'); ++i)
        n = n * 10 + quint32(text[i].unicode() - '0');
    return negative ? quint32(0) - n : n;
}

bool IniWriteString(const QString& file, const QString& section, const QString& key,
                    const QString& value)
{
    if (auto batch = batchFor(file)) {
        batch->doc.setValue(section, key, value);
        return true;
    }
    IniDocument doc = IniDocument::load(file);
    doc.setValue(section, key, value);
    return doc.save(file);
}

IniBatch::IniBatch(const QString& file)
    : file_(file)
{
    std::lock_guard<std::mutex> lock(batchMutex);
    auto& batches = openBatches();
    auto it = batches.find(file);
    if (it == batches.end()) {
        auto batch = std::make_shared<OpenBatch>();
        batch->doc = IniDocument::load(file);
        it = batches.insert(file, batch);
    }
    ++(*it)->depth;
}

IniBatch::~IniBatch()
{
    std::shared_ptr<OpenBatch> finished;
    {
        std::lock_guard<std::mutex> lock(batchMutex);
        auto& batches = openBatches();
        auto it = batches.find(file_);
        if (it == batches.end() || --(*it)->depth > 0)
            return;
        finished = *it;
        batches.erase(it);
    }
    if (finished->doc.dirty())
        finished->doc.save(file_);
}
