#pragma once
// The run of one folder viewer, without widgets: it hands the settings to the
// comparison control, starts and aborts it, answers for its records, and
// brings the control's events, which arrive on the control's own threads,
// to the thread this object lives on through queued signals.

#include "components/skeinmatch/FolderCompareEngine.h"
#include "components/skeinmatch/FolderRecord.h"

#include <QObject>
#include <QString>

#include <memory>
#include <string>

namespace foldercompare {

using FolderSettings = skeinmatch::FolderCompareEngine::Settings;

// What the session needs of a comparison control. The engine answers it in
// the program; tests put a scripted control in its place to decide exactly
// when records appear and when the walk ends.
class FolderControl {
public:
    virtual ~FolderControl() = default;
    // Not owned; nullptr must stop further calls before it returns.
    virtual void setEvents(skeinmatch::FolderCompareEvents* events) = 0;
    virtual void Configure(const FolderSettings& settings) = 0;
    virtual void StartCompare() = 0;
    virtual void AbortCompare() = 0;
    virtual void ReleaseEngine() = 0;
    virtual bool InProgress() const = 0;
    virtual qint32 RecordCount() const = 0;
    virtual bool GetRecord(qint32 index, skeinmatch::FolderRecord& record) const = 0;
    // False with the reason in `error` when the file could not be written.
    virtual bool WriteReport(const std::string& path, std::string& error) const = 0;
};

// The folder comparison engine behind FolderControl.
std::unique_ptr<FolderControl> MakeEngineControl();

class FolderCompareSession : public QObject {
    Q_OBJECT

public:
    explicit FolderCompareSession(QObject* parent = nullptr);
    FolderCompareSession(std::unique_ptr<FolderControl> control, QObject* parent = nullptr);
    ~FolderCompareSession() override;

    void Start(const FolderSettings& settings);
    void Abort();
    // The last call before the viewer goes: stops the walk and drops records.
    void Release();

    bool InProgress() const;
    qint32 RecordCount() const;
    bool GetRecord(qint32 index, skeinmatch::FolderRecord& record) const;
    bool WriteReport(const QString& path, QString* error = nullptr) const;

signals:
    void CompareStarted();
    void CompareError(qint32 code, const QString& message);
    void CompareCompleted();

private:
    class Relay;
    std::unique_ptr<FolderControl> control_;
    std::unique_ptr<Relay> relay_;
};

} // namespace foldercompare
