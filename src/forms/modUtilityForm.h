#pragma once
// Window routines shared by the frame and the viewers.

#include <QRect>
#include <QtGlobal>

class QComboBox;
class QWidget;
class clsMRU;

// Twips, the unit window measures are stored in, and pixels (96 dpi).
inline constexpr int kTwipsPerPixel = 15;
inline int TwipsToPixels(double twips) { return qRound(twips / kTwipsPerPixel); }
inline double PixelsToTwips(int pixels) { return double(pixels) * kTwipsPerPixel; }

// The frame's placement lives in the per-user settings store ("Tallyvane"),
// in the group named after the window's objectName followed by "Settings":
// Left, Top, Width, Height in twips and WindowState (0 normal, 1 minimised,
// 2 maximised; 2 when nothing is stored). Restore applies the rectangle and
// then the state when it is not 0; values that are no numbers leave the
// window as it is. Save writes the state, and the rectangle only for a
// normal window, so a maximised window keeps the size it returns to.
void RestoreFormPlacement(QWidget* window);
void SaveFormPlacement(QWidget* window);

// True when a rectangle of the window has been saved.
bool HasStoredPlacement(const QWidget* window);

// 0 normal, 1 minimised, 2 maximised.
qint32 WindowStateNumber(const QWidget* window);

// Fills a combo box from a recent list, newest on top, with the newest item
// selected. Handlers of screen controls see gbRefreshingControls set while it
// works and do nothing.
void FillComboFromMRU(QComboBox* combo, const clsMRU& mru);
