#include "shell/DesktopSeams.h"

#include "core/Places.h"
#include "core/modParseCommandLine.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>

#include <cstdio>

bool DesktopLauncher::OpenDocument(const QString& path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool DesktopLauncher::OpenInTextViewer(const QString& path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool DesktopLauncher::OpenUrl(const QString& url)
{
    return QDesktopServices::openUrl(QUrl(url));
}

bool DesktopLauncher::OpenManual(const QString& topic)
{
    // An installed manual stays where it is; the copy in the private folder
    // goes with the process, perhaps before the browser has read it.
    QString page = installedManualPath();
    if (page.isEmpty()) {
        const QString source = QStringLiteral(":/manual");
        if (!QFileInfo(source + QStringLiteral("/index.html")).exists() || tempFolder().isEmpty())
            return false;
        const QString target = tempFolder() + QStringLiteral("/manual");
        if (!QFileInfo::exists(target + QStringLiteral("/index.html"))) {
            QDirIterator it(source, QDir::Files, QDirIterator::Subdirectories);
            while (it.hasNext()) {
                const QString from = it.next();
                const QString to = target + from.mid(source.size());
                QDir().mkpath(QFileInfo(to).absolutePath());
                QFile::copy(from, to);
            }
        }
        page = target + QStringLiteral("/index.html");
    }
    QUrl url = QUrl::fromLocalFile(page);
    if (!topic.isEmpty())
        url.setFragment(topic);
    return QDesktopServices::openUrl(url);
}

bool ConsoleLauncher::OpenManual(const QString& topic)
{
    std::fputs(UsageText().toLocal8Bit().constData(), stdout);
    const QString page = installedManualPath();
    if (!page.isEmpty()) {
        QUrl url = QUrl::fromLocalFile(page);
        if (!topic.isEmpty())
            url.setFragment(topic);
        std::printf("\nThe manual: %s\n", url.toString(QUrl::FullyEncoded).toLocal8Bit().constData());
    }
    std::fflush(stdout);
    return true;
}

void InstallDesktopSeams(bool hasDisplay)
{
    static DesktopLauncher desktop;
    static ConsoleLauncher console;
    setLauncher(hasDisplay ? &desktop : &console);
    if (hasDisplay) {
        setMessagePresenter([](const QString& message) {
            QMessageBox::information(nullptr, QCoreApplication::applicationName(), message);
        });
    }
}
