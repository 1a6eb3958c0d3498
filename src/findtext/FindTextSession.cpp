#include "findtext/FindTextSession.h"

#include <QMetaObject>
#include <QPointer>

// Receives the engine's events on its threads and posts them to the
// session's thread; the session drops them if it has gone meanwhile.
class FindTextSession::Relay : public gleanseek::GleanseekEvents {
public:
    explicit Relay(FindTextSession* session) : session_(session) {}

    void SearchStarted() override
    {
        QMetaObject::invokeMethod(session_, [s = session_] { emit s->searchStarted(); }, Qt::QueuedConnection);
    }
    void SearchCompleted() override
    {
        QMetaObject::invokeMethod(session_, [s = session_] { emit s->searchCompleted(); }, Qt::QueuedConnection);
    }
    void SearchError(std::int32_t code, const std::string& message) override
    {
        const QString text = QString::fromStdString(message);
        QMetaObject::invokeMethod(
            session_, [s = session_, code, text] { emit s->searchError(int(code), text); }, Qt::QueuedConnection);
    }

private:
    FindTextSession* session_;
};

FindTextSession::FindTextSession(QObject* parent)
    : QObject(parent), relay_(std::make_unique<Relay>(this)), engine_(std::make_unique<gleanseek::Gleanseek>())
{
    engine_->setEngineMode(2);
    engine_->setDocumentTextSource(gleanseek::DefaultDocumentTextSource());
    engine_->setEvents(relay_.get());
}

FindTextSession::~FindTextSession()
{
    // Waits for an event being delivered, so none reaches a dead relay.
    engine_->setEvents(nullptr);
    engine_->AbortSearch();
}

FindTextOptions FindTextSession::Options() const
{
    FindTextOptions o;
    o.sSearchFolder = QString::fromStdString(engine_->SearchFolder());
    o.sSearchFileTypes = QString::fromStdString(engine_->SearchFileTypes());
    o.sSearchText = QString::fromStdString(engine_->SearchText());
    o.bSupportOfficeDocs = engine_->SupportOfficeDocs();
    o.bCaseSensitive = engine_->CaseSensitive();
    o.bLookInSubfolders = engine_->LookInSubfolders();
    o.bWholeWordOnly = engine_->WholeWordOnly();
    o.bRegularExpression = engine_->RegularExpression();
    return o;
}

void FindTextSession::SetOptions(const FindTextOptions& o)
{
    engine_->setSearchFolder(o.sSearchFolder.toStdString());
    engine_->setSearchFileTypes(o.sSearchFileTypes.toStdString());
    engine_->setSearchText(o.sSearchText.toStdString());
    engine_->setSupportOfficeDocs(o.bSupportOfficeDocs);
    engine_->setCaseSensitive(o.bCaseSensitive);
    engine_->setLookInSubfolders(o.bLookInSubfolders);
    engine_->setWholeWordOnly(o.bWholeWordOnly);
    engine_->setRegularExpression(o.bRegularExpression);
}

void FindTextSession::StartSearch() { engine_->StartSearch(); }
void FindTextSession::AbortSearch() { engine_->AbortSearch(); }
bool FindTextSession::InProgress() const { return engine_->InProgress(); }
qint32 FindTextSession::HitCount() const { return engine_->HitCount(); }

bool FindTextSession::GetHit(qint32 lIndex, FindHit& hit) const
{
    gleanseek::Hit h;
    if (!engine_->GetHit(lIndex, h))
        return false;
    hit.sFile = QString::fromStdString(h.sFile);
    hit.lLine = h.lLine;
    hit.lCol = h.lCol;
    hit.sItem = QString::fromStdString(h.sItem);
    return true;
}

bool FindTextSession::WriteReport(const QString& path) const
{
    return engine_->WriteReport(path.toStdString());
}

bool FindTextSession::ExtractText(const QString& path, const QString& textPath)
{
    return engine_->ExtractText(path.toStdString(), textPath.toStdString());
}
