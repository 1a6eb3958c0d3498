#pragma once
// A folder viewer of its own INI file, shown offscreen, every dialog
// answered by the test; either over the real engine or over a scripted
// control whose records and end the test decides.

#include "core/modGlobal.h"
#include "foldercompare/frmCompareDir.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"
#include "support/recordinglauncher.h"
#include "support/testsupport.h"

#include <QCoreApplication>
#include <QDir>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tvtest {

// Records appear when the test adds them; the walk ends when it says so.
class ScriptedControl : public foldercompare::FolderControl {
public:
    struct State {
        std::mutex mutex;
        std::vector<skeinmatch::FolderRecord> records;
        std::atomic<bool> inProgress{false};
        skeinmatch::FolderCompareEvents* events = nullptr;
        foldercompare::FolderSettings settings;
        int starts = 0;
        int aborts = 0;
    };

    explicit ScriptedControl(std::shared_ptr<State> state) : state_(std::move(state)) {}
    ~ScriptedControl() override = default;

    void setEvents(skeinmatch::FolderCompareEvents* e) override
    {
        std::lock_guard lock(state_->mutex);
        state_->events = e;
    }
    void Configure(const foldercompare::FolderSettings& s) override { state_->settings = s; }
    void StartCompare() override
    {
        ++state_->starts;
        state_->inProgress = true;
        raise([](skeinmatch::FolderCompareEvents& e) { e.CompareStarted(); });
    }
    void AbortCompare() override
    {
        ++state_->aborts;
        state_->inProgress = false;
    }
    void ReleaseEngine() override {}
    bool InProgress() const override { return state_->inProgress; }
    qint32 RecordCount() const override
    {
        std::lock_guard lock(state_->mutex);
        return qint32(state_->records.size());
    }
    bool GetRecord(qint32 i, skeinmatch::FolderRecord& r) const override
    {
        std::lock_guard lock(state_->mutex);
        if (i < 0 || std::size_t(i) >= state_->records.size())
            return false;
        r = state_->records[std::size_t(i)];
        return true;
    }
    bool WriteReport(const std::string&, std::string& error) const override
    {
        error = "scripted";
        return false;
    }

    // Raises an event on a thread of its own, as the engine does.
    template <class F>
    void raise(F f)
    {
        std::thread([this, f] {
            std::lock_guard lock(state_->mutex);
            if (state_->events)
                f(*state_->events);
        }).join();
    }

private:
    std::shared_ptr<State> state_;
};

class FolderViewerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedIni_ = gsIniFile;
        gsIniFile = dir.qpath() + QStringLiteral("/Tallyvane.INI");
        QDir().mkpath(at("A"));
        QDir().mkpath(at("B"));
    }
    void TearDown() override
    {
        viewer.reset();
        gsIniFile = savedIni_;
    }

    // A viewer over the scripted control, its heartbeat ticked by the test.
    void makeScripted()
    {
        viewer = std::make_unique<frmCompareDir>(std::make_unique<ScriptedControl>(script));
        viewer->setTimer1ClockDriven(false);
        setUpViewer();
    }
    void makeReal()
    {
        viewer = std::make_unique<frmCompareDir>();
        setUpViewer();
    }
    void setUpViewer()
    {
        viewer->resize(1000, 600);
        viewer->Setup(QStringLiteral("1_CompareDir"), false);
        viewer->show();
    }

    // Queued events only: no timer fires in here.
    static void deliverEvents() { QCoreApplication::sendPostedEvents(); }

    void addRecords(int n, bool isFile = true)
    {
        std::lock_guard lock(script->mutex);
        for (int i = 0; i < n; ++i) {
            skeinmatch::FolderRecord r;
            r.sName = "f" + std::to_string(script->records.size()) + ".txt";
            r.sPathOriginal = dir.path() + "/A/";
            r.sPathModified = dir.path() + "/B/";
            r.lIsFile = isFile ? 1 : 0;
            script->records.push_back(r);
        }
    }

    // Starts a run over A and B of the test's folder.
    void start()
    {
        viewer->SetBatchFolders(at("A"), at("B"));
        viewer->RefreshDiffViewer();
        deliverEvents();
    }

    // Runs the real engine to its end and lets the grid take every row.
    void runToEnd()
    {
        start();
        waitToEnd();
    }
    void waitToEnd() { waitForRun(viewer.get()); }
    // Until the completed event and the last tick have both come, whichever
    // comes first.
    static void waitForRun(frmCompareDir* v)
    {
        for (int i = 0; i < 6000 && !(v->PanelText(5).endsWith(QStringLiteral("(Sec)")) && !v->Timer1Active()); ++i) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        ASSERT_FALSE(v->Timer1Active());
        ASSERT_FALSE(v->CompareInProgress());
    }

    QString at(const QString& name) const { return dir.qpath() + QLatin1Char('/') + name; }
    int rows() const { return viewer->Grid().rowCount(); }

    TempDir dir;
    RecordingDialogs dialogs;
    RecordingLauncher launched;
    std::shared_ptr<ScriptedControl::State> script = std::make_shared<ScriptedControl::State>();
    std::unique_ptr<frmCompareDir> viewer;

private:
    QString savedIni_;
};

} // namespace tvtest
