#pragma once
// A launcher that opens nothing and remembers what it was asked to open.
// Install it for the life of a test: RecordingLauncher rec; (restores on exit).

#include "core/Launcher.h"

#include <QStringList>

namespace tvtest {

class RecordingLauncher : public Launcher {
public:
    RecordingLauncher() : previous_(setLauncher(this)) {}
    ~RecordingLauncher() override { setLauncher(previous_); }

    bool OpenDocument(const QString& path) override { return record("document", path); }
    bool OpenInTextViewer(const QString& path) override { return record("text", path); }
    bool OpenUrl(const QString& url) override { return record("url", url); }
    bool OpenManual(const QString& topic) override { return record("manual", topic); }

    // Each request as "kind:argument", in order.
    QStringList requests;
    bool answer = true;

private:
    bool record(const char* kind, const QString& what)
    {
        requests << QString::fromLatin1(kind) + QLatin1Char(':') + what;
        return answer;
    }
    Launcher* previous_;
};

} // namespace tvtest
