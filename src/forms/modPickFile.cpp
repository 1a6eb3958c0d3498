#include "forms/modPickFile.h"

#include <QFileDialog>

namespace {

FilePickResult desktopFilePicker(const FilePickRequest& r)
{
    QFileDialog dialog(r.owner, r.title, r.startFolder);
    dialog.setAcceptMode(r.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(r.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilters(r.nameFilters);
    if (r.filterIndex >= 1 && r.filterIndex <= r.nameFilters.size())
        dialog.selectNameFilter(r.nameFilters.at(r.filterIndex - 1));
    FilePickResult result;
    result.filterIndex = r.filterIndex;
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        result.path = dialog.selectedFiles().constFirst();
    const int chosen = r.nameFilters.indexOf(dialog.selectedNameFilter());
    if (chosen >= 0)
        result.filterIndex = chosen + 1;
    return result;
}

QString desktopFolderPicker(QWidget* owner, const QString& title, const QString& startFolder)
{
    return QFileDialog::getExistingDirectory(owner, title, startFolder);
}

FilePicker& filePicker()
{
    static FilePicker p = desktopFilePicker;
    return p;
}

FolderPicker& folderPicker()
{
    static FolderPicker p = desktopFolderPicker;
    return p;
}

} // namespace

QStringList NameFiltersFromPipeList(const QString& filter)
{
    QStringList result;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns;
        for (const QString& p : parts.at(i + 1).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const QString pattern = p.trimmed();
            if (pattern == QLatin1String("*.*") || pattern == QLatin1String("*")) {
                patterns << QStringLiteral("*");
                continue;
            }
            for (const QString& variant : {pattern, pattern.toLower(), pattern.toUpper()})
                if (!patterns.contains(variant))
                    patterns << variant;
        }
        result << parts.at(i).trimmed() + QStringLiteral(" (") + patterns.join(QLatin1Char(' '))
                + QLatin1Char(')');
    }
    return result;
}

QString PickFile(QWidget* owner, const QString& title, const QString& filter, qint32& filterIndex,
                 const QString& startFolder)
{
    FilePickRequest r;
    r.owner = owner;
    r.title = title;
    r.nameFilters = NameFiltersFromPipeList(filter);
    r.filterIndex = filterIndex;
    r.startFolder = startFolder;
    r.save = title.contains(QLatin1String("save"), Qt::CaseInsensitive);
    const FilePickResult result = filePicker()(r);
    filterIndex = result.filterIndex;
    return result.path;
}

QString PickFolder(QWidget* owner, const QString& startFolder)
{
    QString start = startFolder;
    if (start.size() > 1 && start.endsWith(QLatin1Char('/')))
        start.chop(1);
    return folderPicker()(owner, QString::fromLatin1(kPickFolderTitle), start);
}

FilePicker setFilePicker(FilePicker picker)
{
    FilePicker previous = filePicker();
    filePicker() = picker ? std::move(picker) : FilePicker(desktopFilePicker);
    return previous;
}

FolderPicker setFolderPicker(FolderPicker picker)
{
    FolderPicker previous = folderPicker();
    folderPicker() = picker ? std::move(picker) : FolderPicker(desktopFolderPicker);
    return previous;
}
