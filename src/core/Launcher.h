#pragma once
// Everything the program hands to the desktop goes through one Launcher:
// documents and reports opened the way the desktop opens them, plain-text
// reports shown in the user's text viewer, web pages, and the manual. The
// program installs the desktop implementation at start-up; tests install one
// that records the requests instead.

#include <QString>

class Launcher {
public:
    virtual ~Launcher();

    // Opens a file with the application the desktop associates with it.
    virtual bool OpenDocument(const QString& path) = 0;

    // Shows a plain-text file (reports, logs) in the user's text viewer.
    virtual bool OpenInTextViewer(const QString& path) = 0;

    // Opens a web address in the user's browser.
    virtual bool OpenUrl(const QString& url) = 0;

    // Opens the manual at a topic (an anchor of the manual, such as
    // "command-line"); an empty topic opens its first page.
    virtual bool OpenManual(const QString& topic) = 0;
};

// The manual's topic for the command line, opened by -?.
inline constexpr const char* kManualTopicCommandLine = "command-line";

// The launcher in use. Until one is installed this is a launcher that opens
// nothing and answers false, so code that runs without a desktop never
// starts programs by accident.
Launcher& launcher();

// Installs a launcher (not owned; it must outlive its use) and returns the
// previous one. nullptr brings back the launcher that opens nothing.
Launcher* setLauncher(Launcher* l);
