#include "forms/modUtilityForm.h"

#include "settings/clsMRU.h"
#include "core/modGlobal.h"

#include <QComboBox>
#include <QSettings>
#include <QWidget>

namespace {

QSettings userStore()
{
    return QSettings(QStringLiteral("Tallyvane"), QStringLiteral("Tallyvane"));
}

QString groupOf(const QWidget* window)
{
    return window->objectName() + QStringLiteral("Settings");
}

bool readNumber(const QSettings& s, const char* key, double defaultValue, double& value)
{
    bool ok = true;
    const QVariant v = s.value(QLatin1String(key));
    value = v.isValid() ? v.toString().trimmed().toDouble(&ok) : defaultValue;
    return ok;
}

} // namespace

bool HasStoredPlacement(const QWidget* window)
{
    QSettings s = userStore();
    s.beginGroup(groupOf(window));
    return s.contains(QStringLiteral("Width")) && s.contains(QStringLiteral("Height"));
}

qint32 WindowStateNumber(const QWidget* window)
{
    const Qt::WindowStates state = window->windowState();
    if (state & Qt::WindowMinimized)
        return 1;
    if (state & Qt::WindowMaximized)
        return 2;
    return 0;
}

void RestoreFormPlacement(QWidget* window)
{
    if (!window)
        return;
    QSettings s = userStore();
    s.beginGroup(groupOf(window));
    double left = 0, top = 0, width = 0, height = 0, state = 0;
    if (!readNumber(s, "Left", 1000, left) || !readNumber(s, "Top", 1000, top)
        || !readNumber(s, "Width", 6500, width) || !readNumber(s, "Height", 6500, height)
        || !readNumber(s, "WindowState", 2, state))
        return;
    window->move(TwipsToPixels(left), TwipsToPixels(top));
    window->resize(qMax(1, TwipsToPixels(width)), qMax(1, TwipsToPixels(height)));
    const int n = int(state);
    if (n == 1)
        window->setWindowState(Qt::WindowMinimized);
    else if (n == 2)
        window->setWindowState(Qt::WindowMaximized);
}

void SaveFormPlacement(QWidget* window)
{
    if (!window)
        return;
    QSettings s = userStore();
    s.beginGroup(groupOf(window));
    const qint32 state = WindowStateNumber(window);
    s.setValue(QStringLiteral("WindowState"), state);
    if (state == 0) {
        s.setValue(QStringLiteral("Left"), PixelsToTwips(window->x()));
        s.setValue(QStringLiteral("Top"), PixelsToTwips(window->y()));
        s.setValue(QStringLiteral("Width"), PixelsToTwips(window->width()));
        s.setValue(QStringLiteral("Height"), PixelsToTwips(window->height()));
    }
}

void FillComboFromMRU(QComboBox* combo, const clsMRU& mru)
{
    gbRefreshingControls = true;
    combo->clear();
    const QStringList& items = mru.Items();
    for (qsizetype i = items.size() - 1; i >= 0; --i)
        combo->addItem(items.at(i));
    if (!items.isEmpty())
        combo->setCurrentIndex(0);
    gbRefreshingControls = false;
}
