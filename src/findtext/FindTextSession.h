#pragma once
// The search of one find viewer, without widgets: it owns the engine, hands
// it the entries, and brings the engine's events, which come on its worker
// threads, to the thread this object lives on through queued signals. The
// viewer reads hits by index while the search goes on.
//
// The reading side is virtual so that tests can stand in a search whose
// hits and progress they set themselves, and so fix the order of ticks.

#include "components/gleanseek/Gleanseek.h"

#include <QObject>
#include <QString>
#include <QtGlobal>

#include <memory>

struct FindTextOptions {
    QString sSearchFolder;
    QString sSearchFileTypes;
    QString sSearchText;
    bool bSupportOfficeDocs = false;
    bool bCaseSensitive = false;
    bool bLookInSubfolders = true;
    bool bWholeWordOnly = false;
    bool bRegularExpression = false;
};

struct FindHit {
    QString sFile;
    qint32 lLine = 0;
    qint32 lCol = 0;
    QString sItem;
};

class FindTextSession : public QObject {
    Q_OBJECT

public:
    explicit FindTextSession(QObject* parent = nullptr);
    ~FindTextSession() override;

    // The options a new session starts with (the engine's defaults).
    virtual FindTextOptions Options() const;
    virtual void SetOptions(const FindTextOptions& options);

    // Returns at once; searchStarted or searchError follows.
    virtual void StartSearch();
    virtual void AbortSearch();

    virtual bool InProgress() const;
    virtual qint32 HitCount() const;
    virtual bool GetHit(qint32 lIndex, FindHit& hit) const;

    virtual bool WriteReport(const QString& path) const;
    // The text of an office document or PDF written to textPath.
    virtual bool ExtractText(const QString& path, const QString& textPath);

signals:
    void searchStarted();
    void searchCompleted();
    void searchError(int code, const QString& message);

private:
    class Relay;
    std::unique_ptr<Relay> relay_;
    std::unique_ptr<gleanseek::Gleanseek> engine_;
};
