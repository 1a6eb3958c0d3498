#include "filecompare/WordBounds.h"

#include "document/RichTextBox.h"

#include <QFile>

namespace filecompare {

namespace {

bool isWordDelimiter(QChar c)
{
    const char16_t u = c.unicode();
    return u == 10 || u == 13 || u == 32 || u == 7;
}

} // namespace

QByteArray WordLines(const QString& sText)
{
    // A token ends behind its delimiter. A line-end delimiter is replaced by
    // the line end written behind every token, so the list has exactly one
    // line per word and its line numbers are the word numbers of
    // FindWordBounds; a blank or a bell stays at the end of its word.
    QByteArray out;
    out.reserve(sText.size() + sText.size() / 4 + 16);
    qsizetype start = 0;
    auto emitToken = [&](qsizetype end, bool dropLast) {
        out.append(sText.mid(start, end - start - (dropLast ? 1 : 0)).toUtf8());
        out.append("\r\n");
        start = end;
    };
    for (qsizetype i = 0; i < sText.size(); ++i) {
        const QChar c = sText.at(i);
        if (isWordDelimiter(c))
            emitToken(i + 1, c.unicode() == 10 || c.unicode() == 13);
    }
    if (start < sText.size())
        emitToken(sText.size(), false);
    return out;
}

bool WriteWordLines(const QString& sText, const QString& sFile)
{
    QFile f(sFile);
    if (sFile.isEmpty() || !f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray out = WordLines(sText);
    return f.write(out) == out.size() && f.flush();
}

WordIndex::WordIndex(const QString& text)
    : length_(qint32(text.size()))
{
    for (qsizetype i = 0; i < text.size(); ++i)
        if (isWordDelimiter(text.at(i)))
            delimiters_.push_back(qint32(i + 1));
}

bool WordIndex::bounds(qint32 lWord, qint32& lFirst, qint32& lLast) const
{
    if (lWord == 0) {
        lFirst = 0;
        lLast = 0;
        return true;
    }
    const auto count = qint32(delimiters_.size());
    if (lWord >= 1 && lWord <= count) {
        lLast = delimiters_[size_t(lWord - 1)];
        lFirst = lWord == 1 ? 1 : delimiters_[size_t(lWord - 2)];
    } else {
        // Past the last delimiter: the word runs to the end of the text.
        lFirst = count == 0 ? 1 : delimiters_.back();
        lLast = length_ + 1;
    }
    return true;
}

const WordIndex& WordIndexCache::of(const RichTextBox* box)
{
    const QString text = box->Text();
    if (box_ != box || text_.constData() != text.constData() || text_.size() != text.size()) {
        box_ = box;
        text_ = text;
        index_ = WordIndex(text);
    }
    return index_;
}

bool FindWordBounds(const RichTextBox* rtb, qint32 lWord, qint32& lFirst, qint32& lLast)
{
    return WordIndex(rtb->Text()).bounds(lWord, lFirst, lLast);
}

bool FindWordBounds(WordIndexCache& cache, const RichTextBox* rtb, qint32 lWord, qint32& lFirst, qint32& lLast)
{
    return cache.of(rtb).bounds(lWord, lFirst, lLast);
}

void FormatWordRange(WordIndexCache& cache, RichTextBox* rtb, qint32 lFromWord, qint32 lToWord, const DiffFormat& f)
{
    qint32 lFirst = 0, lLast = 0, unused = 0;
    const WordIndex& index = cache.of(rtb);
    index.bounds(lFromWord, lFirst, unused);
    index.bounds(lToWord, unused, lLast);
    if (lFirst == 0)
        lFirst = 1;
    rtb->setSelStart(lFirst - 1);
    rtb->setSelLength(qMax(0, lLast - lFirst + 1));
    FormatSelection(rtb, f);
}

} // namespace filecompare
