#include "foldercompare/FolderCompareSession.h"

#include <QMetaObject>

namespace foldercompare {

namespace {

class EngineControl : public FolderControl {
public:
    void setEvents(skeinmatch::FolderCompareEvents* events) override { engine_.setEvents(events); }
    void Configure(const FolderSettings& s) override
    {
        // The order in which the viewer has always handed them over.
        engine_.setContentCompare(s.contentCompare);
        engine_.setShowOnlyInMaster(s.showOnlyInMaster);
        engine_.setShowOnlyInSource(s.showOnlyInSource);
        engine_.setShowSameInBothPlaces(s.showSameInBothPlaces);
        engine_.setShowDifferentInBothPlaces(s.showDifferentInBothPlaces);
        engine_.setIgnoreDateDifferences(s.ignoreDateDifferences);
        engine_.setDoSubDirectories(s.doSubDirectories);
        engine_.setFolderOriginal(s.folderOriginal);
        engine_.setFolderModified(s.folderModified);
        engine_.setFileFilter(s.fileFilter);
    }
    void StartCompare() override { engine_.StartCompare(); }
    void AbortCompare() override { engine_.AbortCompare(); }
    void ReleaseEngine() override { engine_.ReleaseEngine(); }
    bool InProgress() const override { return engine_.InProgress(); }
    qint32 RecordCount() const override { return engine_.RecordCount(); }
    bool GetRecord(qint32 index, skeinmatch::FolderRecord& record) const override
    {
        return engine_.GetRecord(index, record);
    }
    bool WriteReport(const std::string& path, std::string& error) const override
    {
        if (engine_.WriteReport(path))
            return true;
        error = engine_.LastReportError();
        return false;
    }

private:
    skeinmatch::FolderCompareEngine engine_;
};

} // namespace

std::unique_ptr<FolderControl> MakeEngineControl()
{
    return std::make_unique<EngineControl>();
}

// Runs on the control's threads: it only posts, and Qt drops what is still
// queued for a session that has gone.
class FolderCompareSession::Relay : public skeinmatch::FolderCompareEvents {
public:
    explicit Relay(FolderCompareSession* session) : session_(session) {}
    void CompareStarted() override
    {
        QMetaObject::invokeMethod(session_, [s = session_] { emit s->CompareStarted(); }, Qt::QueuedConnection);
    }
    void CompareError(std::int32_t code, const std::string& message) override
    {
        const QString text = QString::fromStdString(message);
        QMetaObject::invokeMethod(
            session_, [s = session_, code, text] { emit s->CompareError(code, text); }, Qt::QueuedConnection);
    }
    void CompareCompleted() override
    {
        QMetaObject::invokeMethod(session_, [s = session_] { emit s->CompareCompleted(); }, Qt::QueuedConnection);
    }

private:
    FolderCompareSession* session_;
};

FolderCompareSession::FolderCompareSession(QObject* parent)
    : FolderCompareSession(MakeEngineControl(), parent)
{
}

FolderCompareSession::FolderCompareSession(std::unique_ptr<FolderControl> control, QObject* parent)
    : QObject(parent)
    , control_(std::move(control))
    , relay_(std::make_unique<Relay>(this))
{
    control_->setEvents(relay_.get());
}

FolderCompareSession::~FolderCompareSession()
{
    // No event may reach the relay once this object is half destroyed.
    control_->setEvents(nullptr);
    control_->ReleaseEngine();
}

void FolderCompareSession::Start(const FolderSettings& settings)
{
    control_->Configure(settings);
    control_->StartCompare();
}

void FolderCompareSession::Abort()
{
    control_->AbortCompare();
}

void FolderCompareSession::Release()
{
    control_->AbortCompare();
    control_->ReleaseEngine();
}

bool FolderCompareSession::InProgress() const
{
    return control_->InProgress();
}

qint32 FolderCompareSession::RecordCount() const
{
    return control_->RecordCount();
}

bool FolderCompareSession::GetRecord(qint32 index, skeinmatch::FolderRecord& record) const
{
    return control_->GetRecord(index, record);
}

bool FolderCompareSession::WriteReport(const QString& path, QString* error) const
{
    std::string reason;
    const bool ok = control_->WriteReport(path.toStdString(), reason);
    if (!ok && error)
        *error = QString::fromStdString(reason);
    return ok;
}

} // namespace foldercompare
