#pragma once
// The turning vane: the picture of the About box and the program's icon.
// resources/icons/tallyvane.svg is the same drawing for the desktop's menus;
// change both together.

#include <QIcon>
#include <QPixmap>

// The vane in a square of `size` pixels (for a device pixel ratio), its arrow
// turned `degrees` clockwise from north.
QPixmap VanePicture(qreal degrees, int size, qreal ratio);

// The program's window icon: the installed theme icon when there is one,
// otherwise the vane drawn here, mid-turn as in the installed icon.
QIcon ProgramIcon();
