#pragma once
// The desktop side of the launcher and message seams of tv_core.

#include "core/Launcher.h"

// Opens things through the desktop's own associations.
class DesktopLauncher : public Launcher {
public:
    bool OpenDocument(const QString& path) override;
    // There is no portable way to name "the text viewer"; the desktop's
    // association for the file is the closest, and for a .txt report it is one.
    bool OpenInTextViewer(const QString& path) override;
    bool OpenUrl(const QString& url) override;
    // The manual is compiled in under ":/manual"; it is copied into the
    // process's private folder once and opened there at the topic's anchor.
    bool OpenManual(const QString& topic) override;
};

// Installs a DesktopLauncher and, when a display exists, a presenter that
// shows verbose messages in a message box. Without a display messages keep
// going to stderr. Needs a QApplication.
void InstallDesktopSeams(bool hasDisplay);
