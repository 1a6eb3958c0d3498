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
    // The installed manual is opened at the topic's anchor. From a build
    // folder the compiled-in copy under ":/manual" is copied into the
    // process's private folder once and opened there.
    bool OpenManual(const QString& topic) override;
};

// Without a display there is no browser to open: asking for the manual
// prints the usage text and, when the manual is installed, where it is.
class ConsoleLauncher : public DesktopLauncher {
public:
    bool OpenManual(const QString& topic) override;
};

// Installs a DesktopLauncher (a ConsoleLauncher without a display) and, when
// a display exists, a presenter that shows verbose messages in a message box.
// Without a display messages keep going to stderr. Needs a QApplication.
void InstallDesktopSeams(bool hasDisplay);
