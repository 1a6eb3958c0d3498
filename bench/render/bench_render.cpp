// Times the file viewer from RefreshDisplay to a finished side-by-side view,
// for document pairs of a given size with about one changed section in a
// hundred paragraphs: mostly a changed word, some deleted, added and
// two-paragraph changed sections. Runs the program's own routines in a shown
// viewer on the offscreen platform.
//
//   bench_render [paragraphs ...]          (default: 10000 100000)
//   bench_render --rtf [paragraphs ...]    the same pairs as RTF files
//   bench_render --aio [paragraphs ...]    the all-in-one view instead
//
// Figures in milliseconds: loading both files, the refresh without reload
// (engine, list, render, panes), the first paint of the viewer after it, and
// a refresh that reloads both files.

#include "components/lexiform/RichTextModel.h"
#include "components/lexiform/RtfWriter.h"
#include "filecompare/frmCompareFiles.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "forms/modMessageBox.h"

#include <QApplication>
#include <QPushButton>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextEdit>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

const char* const kWords[] = {"alpha", "bravo", "charlie", "delta", "echo", "foxtrot", "golf", "hotel"};

QString paragraph(int i)
{
    return QStringLiteral("Paragraph %1 of the sample text: %2 %3 words to compare, and a few more.")
        .arg(i)
        .arg(QLatin1String(kWords[i % 8]))
        .arg(QLatin1String(kWords[(i / 8) % 8]));
}

// The two versions, and how many sections differ.
int makePair(int paragraphs, QStringList& original, QStringList& modified)
{
    int sections = 0;
    for (int i = 0; i < paragraphs; ++i) {
        const QString p = paragraph(i);
        original << p;
        if (i % 100 != 50) {
            modified << p;
            continue;
        }
        ++sections;
        switch ((i / 100) % 10) {
        case 7:  // deleted
            break;
        case 8:  // a new paragraph after this one
            modified << p << QStringLiteral("An inserted paragraph number %1 that the original lacks.").arg(i);
            break;
        case 9:  // this and the next changed
            modified << QString(p).replace(QLatin1String("sample"), QLatin1String("changed"));
            original << paragraph(++i);
            modified << QString(paragraph(i)).replace(QLatin1String("words"), QLatin1String("terms"));
            break;
        default:  // one word changed
            modified << QString(p).replace(QLatin1String("compare"), QLatin1String("contrast"));
        }
    }
    return sections;
}

void writeText(const QString& path, const QStringList& lines)
{
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(lines.join(QLatin1Char('\n')).toUtf8());
}

void writeRtf(const QString& path, const QStringList& lines)
{
    lexiform::Document doc;
    lexiform::CharFormat bold;
    bold.bold = true;
    for (const QString& line : lines) {
        lexiform::Paragraph p;
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        p.runs.push_back({line.left(colon + 1), bold});
        p.runs.push_back({line.mid(colon + 1), lexiform::CharFormat{}});
        doc.paragraphs.push_back(p);
    }
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(lexiform::writeRtf(doc));
}

double ms(const QElapsedTimer& t)
{
    return double(t.nsecsElapsed()) / 1e6;
}

// Processor time of this process, so that figures on a shared machine say
// what the program costs rather than how busy the machine was.
double cpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toLocal8Bit());
    qputenv("XDG_DATA_HOME", (home.path() + QStringLiteral("/data")).toLocal8Bit());
    QApplication app(argc, argv);
    InitProgramPlaces();
    setMessageBoxHandler([](const MessageBoxRequest& r) {
        std::fprintf(stderr, "message: %s\n", qPrintable(r.text));
        return MsgAnswer::No;
    });

    bool rtf = false;
    bool aio = false;
    QList<int> sizes;
    for (int i = 1; i < argc; ++i) {
        if (QByteArray(argv[i]) == "--rtf")
            rtf = true;
        else if (QByteArray(argv[i]) == "--aio")
            aio = true;
        else
            sizes << std::atoi(argv[i]);
    }
    if (sizes.isEmpty())
        sizes = {10000, 100000};

    std::printf("%-10s %-5s %8s %7s %11s %13s %11s %13s\n", "paragraphs", "form", "sections", "records",
                "load ms", "refresh ms", "paint ms", "reload+run ms");
    std::printf("%-10s %-5s %8s %7s %11s %13s %11s %13s\n", "", "", "", "", "wall (cpu)", "wall (cpu)",
                "wall (cpu)", "wall (cpu)");
    for (int n : sizes) {
        QStringList original, modified;
        const int sections = makePair(n, original, modified);
        const QString a = home.path() + (rtf ? QStringLiteral("/a.rtf") : QStringLiteral("/a.txt"));
        const QString b = home.path() + (rtf ? QStringLiteral("/b.rtf") : QStringLiteral("/b.txt"));
        if (rtf) {
            writeRtf(a, original);
            writeRtf(b, modified);
        } else {
            writeText(a, original);
            writeText(b, modified);
        }

        frmCompareFiles viewer;
        viewer.resize(1400, 900);
        viewer.Setup(QStringLiteral("1_CompareFile"), false);
        if (aio)
            viewer.SetViewMode(frmCompareFiles::ViewMode::AllInOne);
        viewer.show();
        QCoreApplication::processEvents();

        QElapsedTimer t;
        double c = cpuMs();
        auto lap = [&](double& wall, double& cpu) {
            wall = ms(t);
            cpu = cpuMs() - c;
            t.restart();
            c = cpuMs();
        };
        double load, loadCpu, refresh, refreshCpu, paint, paintCpu, reload, reloadCpu;
        t.start();
        viewer.LoadOriginalFile(a);
        viewer.LoadModifiedFile(b);
        lap(load, loadCpu);
        viewer.RefreshDisplay(false, true);
        lap(refresh, refreshCpu);
        QCoreApplication::processEvents();
        viewer.grab();
        lap(paint, paintCpu);
        viewer.RefreshDisplay(true, true);
        QCoreApplication::processEvents();
        viewer.grab();
        lap(reload, reloadCpu);

        auto fig = [](double wall, double cpu) { return QStringLiteral("%1 (%2)").arg(wall, 0, 'f', 0).arg(cpu, 0, 'f', 0); };
        std::printf("%-10d %-5s %8d %7d %11s %13s %11s %13s\n", n, rtf ? (aio ? "rtf/1" : "rtf") : (aio ? "txt/1" : "text"), sections,
                    viewer.Result().count(), qPrintable(fig(load, loadCpu)),
                    qPrintable(fig(refresh, refreshCpu)), qPrintable(fig(paint, paintCpu)),
                    qPrintable(fig(reload, reloadCpu)));
        std::fflush(stdout);
        if (viewer.AbortRequested())
            std::fprintf(stderr, "not every record was rendered\n");
    }
    return 0;
}
