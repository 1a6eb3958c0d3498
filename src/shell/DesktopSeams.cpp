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
    QUrl url = QUrl::fromLocalFile(target + QStringLiteral("/index.html"));
    if (!topic.isEmpty())
        url.setFragment(topic);
    return QDesktopServices::openUrl(url);
}

void InstallDesktopSeams(bool hasDisplay)
{
    static DesktopLauncher desktop;
    setLauncher(&desktop);
    if (hasDisplay) {
        setMessagePresenter([](const QString& message) {
            QMessageBox::information(nullptr, QCoreApplication::applicationName(), message);
        });
    }
}
