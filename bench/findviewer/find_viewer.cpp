// tv-find-viewer [-i] [-p] [-a] TEXT FOLDER
// Runs a search in a find viewer on the offscreen platform and prints
//   rows N seconds S stall M
// N: hit rows in the grid at the end; S: seconds from the start of the
// search to the last row shown; M: the longest time in milliseconds that the
// window went without handling events, measured by a timer that asks to run
// every 5 ms. -i ignores case, -p TEXT is a pattern, -a shows all findings
// at the end instead of streaming them.

#include "core/modGlobal.h"
#include "findtext/FindHitsModel.h"
#include "findtext/frmFindTextInFiles.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QTemporaryDir home;
    setenv("XDG_CONFIG_HOME", home.path().toLocal8Bit().constData(), 1);
    setenv("XDG_DATA_HOME", home.path().toLocal8Bit().constData(), 1);
    QApplication app(argc, argv);
    gsIniFile = home.path() + "/Tallyvane.INI";

    bool nocase = false, pattern = false, atEnd = false;
    int i = 1;
    for (; i < argc && argv[i][0] == '-'; ++i) {
        if (!std::strcmp(argv[i], "-i"))
            nocase = true;
        else if (!std::strcmp(argv[i], "-p"))
            pattern = true;
        else if (!std::strcmp(argv[i], "-a"))
            atEnd = true;
    }
    if (argc - i != 2) {
        std::fprintf(stderr, "usage: tv-find-viewer [-i] [-p] [-a] TEXT FOLDER\n");
        return 2;
    }
    frmFindTextInFiles form;
    form.Setup("1_FindText", false);
    form.resize(1200, 800);
    form.show();
    form.cbSearchFor->setEditText(QString::fromLocal8Bit(argv[i]));
    form.cbDirectory->setEditText(QString::fromLocal8Bit(argv[i + 1]));
    form.cbFileExt->setEditText("*.*");
    form.cbCaseSensitive->setChecked(!nocase);
    form.cbRegularExpression->setChecked(pattern);
    form.cbDontStreamResults->setChecked(atEnd);
    form.cbLookInSubfolders->setChecked(true);

    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer probe;
    probe.setInterval(5);
    const bool verbose = std::getenv("TV_STALLS") != nullptr;
    QElapsedTimer clock;
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const qint64 gap = sinceTick.restart();
        if (verbose && gap > 50)
            std::fprintf(stderr, "stall %lld ms ending at %.3f s, %d rows, searching %d\n", (long long)gap,
                         double(clock.elapsed()) / 1000, form.Hits().Count(), int(form.Session().InProgress()));
        longest = std::max(longest, gap);
    });

    bool started = false;
    // The search starts once the window has been shown and painted, so the
    // stall measured is the search's and not the first layout's.
    QTimer::singleShot(300, [&] {
        clock.start();
        sinceTick.start();
        probe.start();
        form.SetupAndBeginSearch();
    });
    QTimer watch;
    watch.setInterval(1);
    QObject::connect(&watch, &QTimer::timeout, [&] {
        started = started || form.IsBusy();
        if (started && !form.IsBusy())
            app.quit();
        if (!form.ErrorRows().isEmpty() && !started)
            app.quit();
    });
    watch.start();
    app.exec();
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    std::printf("rows %d seconds %.3f stall %lld\n", form.Hits().Count(), seconds, (long long)longest);
    for (const QString& e : form.ErrorRows())
        std::fprintf(stderr, "%s\n", qPrintable(e));
    return 0;
}
