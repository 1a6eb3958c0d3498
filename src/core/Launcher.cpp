#include "core/Launcher.h"

Launcher::~Launcher() = default;

namespace {

class NoLauncher final : public Launcher {
public:
    bool OpenDocument(const QString&) override { return false; }
    bool OpenInTextViewer(const QString&) override { return false; }
    bool OpenUrl(const QString&) override { return false; }
    bool OpenManual(const QString&) override { return false; }
};

NoLauncher noLauncher;
Launcher* current = &noLauncher;

} // namespace

Launcher& launcher()
{
    return *current;
}

Launcher* setLauncher(Launcher* l)
{
    Launcher* previous = current == &noLauncher ? nullptr : current;
    current = l ? l : &noLauncher;
    return previous;
}
