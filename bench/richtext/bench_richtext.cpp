// Times what the viewers do with big documents: load a 100,000-paragraph
// text and a 10 MB RTF into a box, copy a box's rich text to another, save
// it as RTF, and colour thousands of ranges as a rendering pass does.
//
//   bench_richtext [paragraphs] [rtf-megabytes]
//
// Each figure is the best of three runs, in milliseconds.

#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"
#include "document/clsRTBDocument.h"
#include "document/RichTextBox.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

namespace {

double bestOf3(const std::function<void()>& f)
{
    double best = 1e18;
    for (int i = 0; i < 3; ++i) {
        QElapsedTimer t;
        t.start();
        f();
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

void report(const char* what, double ms, const QString& extra = {})
{
    std::printf("%-44s %10.1f ms  %s\n", what, ms, qPrintable(extra));
    std::fflush(stdout);
}

QByteArray plainText(int paragraphs)
{
    QByteArray out;
    for (int i = 0; i < paragraphs; ++i)
        out += "Line " + QByteArray::number(i) + " of the sample text, with a few words to compare.\r\n";
    return out;
}

// A word-processor-like RTF of about `megabytes`: mixed runs of bold,
// italic, colours and back colours, accented and non-Latin characters.
lexiform::Paragraph sampleParagraph(int i)
{
    lexiform::Paragraph p;
    lexiform::CharFormat plain;
    lexiform::CharFormat bold;
    bold.bold = true;
    lexiform::CharFormat marked;
    marked.italic = true;
    marked.foreColor = 0xC9211E;
    marked.backColor = 0xFFFF00;
    p.runs.push_back({QStringLiteral("Paragraph %1 begins with plain words, ").arg(i), plain});
    p.runs.push_back({QStringLiteral("then bold ones"), bold});
    p.runs.push_back({QString::fromUtf8(", café au lait for €4, "), plain});
    p.runs.push_back({QString::fromUtf8("Größe und Привет"), marked});
    p.runs.push_back({QStringLiteral(" and an end."), plain});
    return p;
}

QByteArray richText(int megabytes)
{
    lexiform::Document probe;
    for (int i = 0; i < 1000; ++i)
        probe.paragraphs.push_back(sampleParagraph(100000 + i));
    const double perParagraph = lexiform::writeRtf(probe).size() / 1000.0;
    const int count = int(megabytes * 1024.0 * 1024.0 / perParagraph);
    lexiform::Document doc;
    for (int i = 0; i < count; ++i)
        doc.paragraphs.push_back(sampleParagraph(i));
    return lexiform::writeRtf(doc);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int paragraphs = argc > 1 ? std::atoi(argv[1]) : 100000;
    const int megabytes = argc > 2 ? std::atoi(argv[2]) : 10;
    QTemporaryDir dir;
    const QString txtPath = dir.filePath("big.txt");
    const QString rtfPath = dir.filePath("big.rtf");
    const QString outPath = dir.filePath("saved.rtf");
    {
        QFile f(txtPath);
        f.open(QIODevice::WriteOnly);
        f.write(plainText(paragraphs));
    }
    const QByteArray rtf = richText(megabytes);
    {
        QFile f(rtfPath);
        f.open(QIODevice::WriteOnly);
        f.write(rtf);
    }

    RichTextBox box;
    report("load text into a box", bestOf3([&] { box.LoadFile(txtPath); }),
           QStringLiteral("%1 paragraphs, %2 MB").arg(paragraphs).arg(QFileInfo(txtPath).size() / 1e6, 0, 'f', 1));
    clsRTBDocument doc(&box);
    const double indexMs = bestOf3([&] { doc.ParagraphCollectionCreate(); });
    report("index its paragraphs", indexMs, QStringLiteral("%1 entries").arg(doc.ParagraphCount()));

    // A rendering pass: colour every 10th paragraph, last to first.
    report("colour 10,000 paragraph ranges", bestOf3([&] {
               for (int n = doc.ParagraphCount() - 1; n >= 1; n -= 10)
                   doc.ColorizeParagraphs(n, n, 0x0000FF, 0x00FFFF, true, false, false, false);
           }));

    report("parse the RTF (reader alone)", bestOf3([&] { (void)lexiform::readRtf(rtf); }));
    RichTextBox rich;
    const double rtfMs = bestOf3([&] { rich.LoadFile(rtfPath); });
    report("load RTF into a box", rtfMs,
           QStringLiteral("%1 MB, %2 paragraphs").arg(rtf.size() / 1e6, 0, 'f', 1).arg(rich.Text().count('\n') + 1));

    RichTextBox copy;
    report("copy a box's rich text to another (RTF box)", bestOf3([&] { copy.setTextRTF(rich.TextRTF()); }));
    report("copy a box's rich text to another (text box)", bestOf3([&] { copy.setTextRTF(box.TextRTF()); }));
    const double saveRich = bestOf3([&] { rich.SaveFile(outPath); });
    report("save the RTF box as RTF", saveRich,
           QStringLiteral("%1 MB").arg(QFileInfo(outPath).size() / 1e6, 0, 'f', 1));
    const double savePlain = bestOf3([&] { box.SaveFile(outPath); });
    report("save the coloured text box as RTF", savePlain,
           QStringLiteral("%1 MB").arg(QFileInfo(outPath).size() / 1e6, 0, 'f', 1));
    return 0;
}
