#include "document/RichTextConvert.h"

#include "document/ColorRef.h"

#include <QHash>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace lexiform {
size_t qHash(const CharFormat& f, size_t seed = 0)
{
    return qHashMulti(seed, f.bold, f.italic, f.underline, f.strike, f.foreColor.value_or(0x1000000),
                      f.backColor.value_or(0x1000000), f.fontName, f.fontSize);
}
} // namespace lexiform

namespace tv {

QTextCharFormat toQtFormat(const lexiform::CharFormat& f)
{
    QTextCharFormat q;
    if (f.bold)
        q.setFontWeight(QFont::Bold);
    if (f.italic)
        q.setFontItalic(true);
    if (f.underline)
        q.setFontUnderline(true);
    if (f.strike)
        q.setFontStrikeOut(true);
    if (f.foreColor)
        q.setForeground(colorFromRgb(*f.foreColor));
    if (f.backColor)
        q.setBackground(colorFromRgb(*f.backColor));
    if (!f.fontName.isEmpty())
        q.setFontFamilies(QStringList{f.fontName});
    if (f.fontSize > 0)
        q.setFontPointSize(f.fontSize);
    return q;
}

lexiform::CharFormat fromQtFormat(const QTextCharFormat& q)
{
    lexiform::CharFormat f;
    f.bold = q.hasProperty(QTextFormat::FontWeight) && q.fontWeight() >= QFont::DemiBold;
    f.italic = q.fontItalic();
    f.underline = q.fontUnderline();
    f.strike = q.fontStrikeOut();
    if (q.hasProperty(QTextFormat::ForegroundBrush) && q.foreground().style() != Qt::NoBrush)
        f.foreColor = rgbFromColor(q.foreground().color());
    if (q.hasProperty(QTextFormat::BackgroundBrush) && q.background().style() != Qt::NoBrush)
        f.backColor = rgbFromColor(q.background().color());
    if (q.hasProperty(QTextFormat::FontFamilies)) {
        const QStringList families = q.fontFamilies().toStringList();
        if (!families.isEmpty())
            f.fontName = families.first();
    } else if (q.hasProperty(QTextFormat::FontFamily)) {
        f.fontName = q.stringProperty(QTextFormat::FontFamily);
    }
    if (q.hasProperty(QTextFormat::FontPointSize))
        f.fontSize = q.fontPointSize();
    return f;
}

void insertModel(QTextCursor& cursor, const lexiform::Document& doc)
{
    // One edit block: the document settles once, not after every run.
    cursor.beginEditBlock();
    // Runs repeat a handful of formats; converting each once saves most of
    // the cost of inserting a run.
    QHash<lexiform::CharFormat, QTextCharFormat> formats;
    bool first = true;
    for (const lexiform::Paragraph& para : doc.paragraphs) {
        if (!first)
            cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        first = false;
        for (const lexiform::Run& run : para.runs) {
            if (run.text.isEmpty())
                continue;
            // A paragraph break inside a run would add a block the model
            // does not have; it can only be a line break.
            QString text = run.text;
            for (QChar& c : text)
                if (c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator)
                    c = QChar::LineSeparator;
            auto it = formats.constFind(run.format);
            if (it == formats.constEnd())
                it = formats.insert(run.format, toQtFormat(run.format));
            cursor.insertText(text, *it);
        }
    }
    cursor.endEditBlock();
}

lexiform::Document modelOfRange(const QTextDocument& doc, int from, int to)
{
    const int end = doc.characterCount() - 1;
    if (to < 0 || to > end)
        to = end;
    from = std::clamp(from, 0, to);
    lexiform::Document out;
    QTextBlock block = doc.findBlock(from);
    while (block.isValid() && block.position() <= to) {
        lexiform::Paragraph para;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            const int a = std::max(frag.position(), from);
            const int b = std::min(frag.position() + frag.length(), to);
            if (a >= b)
                continue;
            QString text = frag.text().mid(a - frag.position(), b - a);
            const lexiform::CharFormat f = fromQtFormat(frag.charFormat());
            if (!para.runs.empty() && para.runs.back().format == f)
                para.runs.back().text += text;
            else
                para.runs.push_back(lexiform::Run{std::move(text), f});
        }
        out.paragraphs.push_back(std::move(para));
        // The separator behind this block is inside the range only if the
        // next block starts at or before `to`.
        const int separator = block.position() + block.length() - 1;
        if (separator >= to)
            break;
        block = block.next();
    }
    if (out.paragraphs.empty())
        out.paragraphs.emplace_back();
    return out;
}

} // namespace tv
